#include "platform/win32/launch.hpp"

#include <algorithm>
#include <array>
#include <vector>

#include "platform/error_text.hpp"
#include "platform/win32/command_line.hpp"

namespace ferrowen::platform {
namespace {

// A list in the start-up information of the handles that the child inherits, and no others.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::array<HANDLE, 2> handles) : m_handles(handles) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    m_buffer.resize(size);
    m_made = InitializeProcThreadAttributeList(list(), 1, 0, &size) != 0;
    m_complete =
        m_made && UpdateProcThreadAttribute(list(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_handles.data(),
                                            sizeof m_handles, nullptr, nullptr) != 0;
  }
  ~InheritedHandles() {
    if (m_made) DeleteProcThreadAttributeList(list());
  }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;

  [[nodiscard]] bool is_complete() const { return m_complete; }
  LPPROC_THREAD_ATTRIBUTE_LIST list() {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_buffer.data());
  }

 private:
  std::array<HANDLE, 2> m_handles;
  std::vector<unsigned char> m_buffer;
  bool m_made = false;
  bool m_complete = false;
};

Handle open_empty_input() {
  SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
  return Handle(CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                            OPEN_EXISTING, 0, nullptr));
}

DWORD priority_class(int priority) {
  constexpr std::array<DWORD, 7> classes = {IDLE_PRIORITY_CLASS,         BELOW_NORMAL_PRIORITY_CLASS,
                                            BELOW_NORMAL_PRIORITY_CLASS, NORMAL_PRIORITY_CLASS,
                                            ABOVE_NORMAL_PRIORITY_CLASS, ABOVE_NORMAL_PRIORITY_CLASS,
                                            HIGH_PRIORITY_CLASS};
  return classes.at(static_cast<std::size_t>(std::clamp(priority, -3, 3) + 3));
}

bool create(const ProcessRequest& request, Command& command, DWORD flags, STARTUPINFOA* start,
            PROCESS_INFORMATION& information) {
  std::wstring block;
  if (!request.environment.empty()) block = environment_block(request.environment);
  return CreateProcessA(
             command.application.empty() ? nullptr : command.application.c_str(), command.line.data(),
             nullptr, nullptr, (flags & EXTENDED_STARTUPINFO_PRESENT) != 0,
             flags | CREATE_SUSPENDED | CREATE_UNICODE_ENVIRONMENT | priority_class(request.priority),
             block.empty() ? nullptr : block.data(),
             request.folder.empty() ? nullptr : request.folder.c_str(), start, &information) != 0;
}

bool create_with_console(const ProcessRequest& request, Command& command, PROCESS_INFORMATION& information) {
  std::string title = request.console_title;
  STARTUPINFOA start = {};
  start.cb = sizeof start;
  start.lpTitle = title.empty() ? nullptr : title.data();
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_SHOWNORMAL;
  return create(request, command, CREATE_NEW_CONSOLE, &start, information);
}

bool create_captured(const ProcessRequest& request, Command& command, HANDLE output,
                     PROCESS_INFORMATION& information) {
  const Handle input = open_empty_input();
  if (!input.is_open()) return false;
  InheritedHandles inherited({input.get(), output});
  if (!inherited.is_complete()) return false;
  STARTUPINFOEXA start = {};
  start.StartupInfo.cb = sizeof start;
  start.StartupInfo.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
  start.StartupInfo.wShowWindow = SW_HIDE;
  start.StartupInfo.hStdInput = input.get();
  start.StartupInfo.hStdOutput = output;
  start.StartupInfo.hStdError = output;
  start.lpAttributeList = inherited.list();
  return create(request, command, CREATE_NEW_PROCESS_GROUP | EXTENDED_STARTUPINFO_PRESENT, &start.StartupInfo,
                information);
}

}  // namespace

Launched launch(const ProcessRequest& request, HANDLE output) {
  Launched result;
  Command command = make_command(request);
  if (!command.error.empty()) {
    result.error = command.error;
    return result;
  }
  PROCESS_INFORMATION information = {};
  const bool created = output == nullptr ? create_with_console(request, command, information)
                                         : create_captured(request, command, output, information);
  if (!created) {
    result.error = last_error_text();
    return result;
  }
  Handle process(information.hProcess);
  const Handle thread(information.hThread);
  // Put into its job before its first instruction, so that nothing it starts stays outside.
  result.job.reset(CreateJobObjectA(nullptr, nullptr));
  if (result.job.is_open() && AssignProcessToJobObject(result.job.get(), process.get()) == 0)
    result.job.reset();
  if (ResumeThread(thread.get()) == static_cast<DWORD>(-1)) {
    result.error = last_error_text();
    TerminateProcess(process.get(), 1);
    return result;
  }
  result.process = std::move(process);
  result.id = information.dwProcessId;
  return result;
}

}  // namespace ferrowen::platform
