#include "platform/error_text.hpp"

#include <windows.h>

#include <array>

#include "platform/win32/wide.hpp"

namespace ferrowen::platform {

std::string error_text(unsigned long code) {
  std::array<wchar_t, 1024> buffer = {};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      code, 0, buffer.data(), buffer.size(), nullptr);
  std::string text = narrow(std::wstring_view(buffer.data(), length));
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
    text.pop_back();
  return text.empty() ? "System error " + std::to_string(code) : text;
}

std::string last_error_text() { return error_text(GetLastError()); }

}  // namespace ferrowen::platform
