#include "platform/desktop.hpp"

#include <windows.h>
// windows.h comes first.
#include <objbase.h>
#include <shellapi.h>

#include "platform/error_text.hpp"

namespace ferrowen::platform {

std::string open_with_desktop(const std::string& path_or_address) {
  constexpr INT_PTR largest_failure = 32;
  // Some of the shell's handlers are COM objects.
  const HRESULT prepared = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  SetLastError(ERROR_SUCCESS);
  const HINSTANCE outcome =
      ShellExecuteA(nullptr, nullptr, path_or_address.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  const DWORD reason = GetLastError();
  if (SUCCEEDED(prepared)) CoUninitialize();
  const auto code = reinterpret_cast<INT_PTR>(outcome);
  if (code > largest_failure) return "";
  // The old result codes are error numbers up to 31; the newer error number says more when there is one.
  return error_text(reason != ERROR_SUCCESS ? reason : static_cast<unsigned long>(code));
}

void let_others_come_forward() { AllowSetForegroundWindow(ASFW_ANY); }

}  // namespace ferrowen::platform
