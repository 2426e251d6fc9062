#include "platform/other_programs.hpp"

#include <windows.h>
// windows.h comes first.
#include <objbase.h>
#include <shellapi.h>

#include <algorithm>

#include "platform/error_text.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/wide.hpp"

namespace ferrowen::platform {
namespace {

constexpr DWORD wait_milliseconds = 100;

std::string lower_case_title(HWND window) {
  const int length = GetWindowTextLengthW(window);
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), length + 1)));
  std::string title = narrow(text);
  for (char& character : title) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return title;
}

// The shell's way of starting programs uses COM.
class ShellCalls {
 public:
  ShellCalls() : m_result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
  ~ShellCalls() {
    if (SUCCEEDED(m_result)) CoUninitialize();
  }
  ShellCalls(const ShellCalls&) = delete;
  ShellCalls& operator=(const ShellCalls&) = delete;

 private:
  HRESULT m_result;
};

}  // namespace

bool is_held_by_other(const std::string& path) {
  const HANDLE file = CreateFileW(wide(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    CloseHandle(file);
    return false;
  }
  return GetLastError() == ERROR_SHARING_VIOLATION || GetLastError() == ERROR_LOCK_VIOLATION;
}

int close_windows_titled(const std::vector<std::string>& parts) {
  int asked = 0;
  for (HWND window = GetWindow(GetDesktopWindow(), GW_CHILD); window != nullptr;
       window = GetWindow(window, GW_HWNDNEXT)) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == GetCurrentProcessId() || IsWindowVisible(window) == FALSE) continue;
    const std::string title = lower_case_title(window);
    const bool named = std::any_of(parts.begin(), parts.end(), [&](const std::string& part) {
      return title.find(part) != std::string::npos;
    });
    // The polite message: a program with unsaved work asks its user.
    if (named && PostMessageW(window, WM_CLOSE, 0, 0) != FALSE) ++asked;
  }
  return asked;
}

bool wine_server_runs(const std::string& /*prefix*/) { return false; }

std::string run_elevated(const std::string& program, const std::string& parameters, const std::string& folder,
                         const std::function<void()>& tick) {
  const ShellCalls shell;
  const std::wstring wide_program = wide(program);
  const std::wstring wide_parameters = wide(parameters);
  const std::wstring wide_folder = wide(folder);
  SHELLEXECUTEINFOW request = {};
  request.cbSize = sizeof request;
  request.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
  request.lpVerb = L"runas";
  request.lpFile = wide_program.c_str();
  request.lpParameters = wide_parameters.c_str();
  request.lpDirectory = folder.empty() ? nullptr : wide_folder.c_str();
  request.nShow = SW_SHOWNORMAL;
  if (ShellExecuteExW(&request) == FALSE) return last_error_text();
  const Handle process(request.hProcess);
  while (process.is_open() && WaitForSingleObject(process.get(), wait_milliseconds) == WAIT_TIMEOUT) {
    if (tick) tick();
  }
  return "";
}

std::string start_detached(const std::vector<std::string>& words, const std::string& folder,
                           const std::vector<std::pair<std::string, std::string>>& /*environment*/) {
  const ShellCalls shell;
  std::wstring parameters;
  for (std::size_t i = 1; i < words.size(); ++i)
    parameters += (i > 1 ? L" \"" : L"\"") + wide(words[i]) + L"\"";
  const HINSTANCE outcome = ShellExecuteW(nullptr, nullptr, wide(words.at(0)).c_str(), parameters.c_str(),
                                          folder.empty() ? nullptr : wide(folder).c_str(), SW_SHOWNORMAL);
  constexpr INT_PTR largest_failure = 32;
  const auto code = reinterpret_cast<INT_PTR>(outcome);
  return code > largest_failure ? "" : error_text(static_cast<unsigned long>(code));
}

}  // namespace ferrowen::platform
