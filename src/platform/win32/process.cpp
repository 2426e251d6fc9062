#include "platform/process.hpp"

#include <algorithm>

#include "platform/error_text.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/launch.hpp"

namespace ferrowen::platform {
namespace {

constexpr int after_kill_milliseconds = 2000;
constexpr DWORD check_pause_milliseconds = 5;
constexpr UINT killed_status = 128 + 9;  // as on the other systems

}  // namespace

struct ChildProcess::State {
  Handle process;
  Handle job;
  Handle output;
  DWORD id = 0;
  bool has_own_console = false;
  std::string error;

  [[nodiscard]] bool process_alive() const;
  [[nodiscard]] bool group_alive() const;
  [[nodiscard]] bool wait_for_group(int milliseconds) const;
  [[nodiscard]] bool ask_to_end() const;
  void kill_group() const;
};

bool ChildProcess::State::process_alive() const {
  return process.is_open() && WaitForSingleObject(process.get(), 0) == WAIT_TIMEOUT;
}

bool ChildProcess::State::group_alive() const {
  JOBOBJECT_BASIC_ACCOUNTING_INFORMATION counts = {};
  if (job.is_open() && QueryInformationJobObject(job.get(), JobObjectBasicAccountingInformation, &counts,
                                                 sizeof counts, nullptr) != 0)
    return counts.ActiveProcesses > 0;
  return process_alive();
}

bool ChildProcess::State::wait_for_group(int milliseconds) const {
  const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(std::max(milliseconds, 0));
  while (group_alive()) {
    if (GetTickCount64() >= deadline) return false;
    Sleep(check_pause_milliseconds);
  }
  return true;
}

// Only while the leader lives: its number is the group's, and could by now be somebody else's. It fails
// where the group has no console in common with this program.
bool ChildProcess::State::ask_to_end() const {
  return !has_own_console && process_alive() && GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, id) != 0;
}

void ChildProcess::State::kill_group() const {
  if (!job.is_open() || TerminateJobObject(job.get(), killed_status) == 0)
    TerminateProcess(process.get(), killed_status);
}

ChildProcess::ChildProcess() : m_state(std::make_unique<State>()) {}
ChildProcess::~ChildProcess() = default;
ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&&) noexcept = default;

StartResult ChildProcess::start(const ProcessRequest& request) {
  m_state = std::make_unique<State>();
  m_state->has_own_console = request.own_console;
  Handle write_end;
  if (!request.own_console) {
    HANDLE read_side = nullptr;
    HANDLE write_side = nullptr;
    const bool made = CreatePipe(&read_side, &write_side, nullptr, 0) != 0;
    m_state->output.reset(read_side);
    write_end.reset(write_side);
    if (!made || SetHandleInformation(write_side, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) == 0) {
      m_state->error = last_error_text();
      return StartResult::no_pipe;
    }
  }
  Launched launched = launch(request, write_end.get());
  if (!launched.process.is_open()) {
    m_state->output.reset();
    m_state->error = std::move(launched.error);
    return StartResult::not_started;
  }
  m_state->process = std::move(launched.process);
  m_state->job = std::move(launched.job);
  m_state->id = launched.id;
  return StartResult::started;
}

const std::string& ChildProcess::error() const { return m_state->error; }

bool ChildProcess::wait_readable(int milliseconds) {
  const bool forever = milliseconds < 0;
  const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(std::max(milliseconds, 0));
  while (m_state->output.is_open()) {
    DWORD available = 0;
    // A pipe that cannot be looked into has come to its end.
    if (PeekNamedPipe(m_state->output.get(), nullptr, 0, nullptr, &available, nullptr) == 0) return true;
    if (available > 0) return true;
    if (!forever && GetTickCount64() >= deadline) return false;
    Sleep(check_pause_milliseconds);
  }
  return true;
}

std::size_t ChildProcess::read(char* buffer, std::size_t size) {
  constexpr std::size_t most_at_once = 1 << 20;
  const auto wanted = static_cast<DWORD>(std::min(size, most_at_once));
  while (m_state->output.is_open() && wanted > 0) {
    DWORD count = 0;
    if (ReadFile(m_state->output.get(), buffer, wanted, &count, nullptr) == 0) return 0;
    // A child that writes nothing at all to the pipe (zero bytes) has not ended it.
    if (count > 0) return count;
  }
  return 0;
}

void ChildProcess::close_output() { m_state->output.reset(); }

std::optional<int> ChildProcess::poll_exit() {
  if (!m_state->process.is_open() || m_state->process_alive()) return std::nullopt;
  DWORD status = 0;
  if (GetExitCodeProcess(m_state->process.get(), &status) == 0) return -1;
  return static_cast<int>(status);
}

int ChildProcess::wait() {
  if (!m_state->process.is_open()) return -1;
  WaitForSingleObject(m_state->process.get(), INFINITE);
  return poll_exit().value_or(-1);
}

void ChildProcess::end_group(int grace_milliseconds) {
  if (!m_state->process.is_open() || !m_state->group_alive()) return;
  if (m_state->ask_to_end() && m_state->wait_for_group(grace_milliseconds)) return;
  m_state->kill_group();
  // Termination goes on after the call; what still holds files open is gone only then.
  static_cast<void>(m_state->wait_for_group(after_kill_milliseconds));
}

std::int64_t ChildProcess::id() const { return m_state->id; }

std::int64_t own_process_id() { return GetCurrentProcessId(); }

// The job object has ended them.
bool end_orphaned_group(std::int64_t /*leader*/, std::int64_t /*parent*/, std::string_view /*argument*/,
                        int /*grace_milliseconds*/) {
  return false;
}

}  // namespace ferrowen::platform
