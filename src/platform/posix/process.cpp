#include "platform/process.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

#include "platform/error_text.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/spawn.hpp"

namespace ferrowen::platform {
namespace {

constexpr int after_kill_milliseconds = 2000;
constexpr auto group_check_pause = std::chrono::milliseconds(5);

std::vector<std::string> child_environment(const ProcessRequest& request) {
  std::vector<std::pair<std::string, std::string>> changes = {{"LC_ALL", "C.UTF-8"}};
  changes.insert(changes.end(), request.environment.begin(), request.environment.end());
  return changed_environment(changes);
}

std::vector<std::string> words_of(const ProcessRequest& request) {
  if (request.program.empty()) return split_command_line(request.command_line);
  std::vector<std::string> words = {request.program};
  words.insert(words.end(), request.arguments.begin(), request.arguments.end());
  return words;
}

std::string process_file(pid_t process, const char* name) {
  std::ifstream file("/proc/" + std::to_string(process) + "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// "PID (name) state parent group ...": the name may hold blanks and parentheses.
bool is_orphaned_leader(pid_t process, std::int64_t parent) {
  const std::string text = process_file(process, "stat");
  const std::size_t name_end = text.rfind(')');
  if (name_end == std::string::npos) return false;
  std::istringstream fields(text.substr(name_end + 1));
  std::string state;
  std::int64_t parent_now = 0, group = 0;
  if (!(fields >> state >> parent_now >> group) || state == "Z") return false;
  return parent_now != parent && group == process;
}

bool has_argument(pid_t process, std::string_view argument) {
  std::istringstream words(process_file(process, "cmdline"));
  for (std::string word; std::getline(words, word, '\0');) {
    if (word == argument) return true;
  }
  return false;
}

bool group_ends_within(pid_t group, int milliseconds) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (::kill(-group, 0) == 0) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(group_check_pause);
  }
  return true;
}

}  // namespace

std::int64_t own_process_id() { return ::getpid(); }

bool end_orphaned_group(std::int64_t leader, std::int64_t parent, std::string_view argument,
                        int grace_milliseconds) {
  const auto group = static_cast<pid_t>(leader);
  if (group <= 1 || group != leader || group == ::getpgrp() || argument.empty()) return false;
  if (!is_orphaned_leader(group, parent) || !has_argument(group, argument)) return false;
  ::kill(-group, SIGTERM);
  if (!group_ends_within(group, grace_milliseconds)) {
    ::kill(-group, SIGKILL);
    static_cast<void>(group_ends_within(group, after_kill_milliseconds));
  }
  return true;
}

// A child that has ended is left as a zombie until its group is ended or this object goes: so long its
// number, which is also the group's, cannot come to mean somebody else's processes.
struct ChildProcess::State {
  State() = default;
  ~State() { reap_if_ended(); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  pid_t process = -1;
  Descriptor output;
  std::string error;
  std::optional<int> exit_status;
  bool reaped = false;
  bool group_gone = false;

  void look_at_exit(int flags);
  void reap_if_ended();
  void signal_group(int number) const;
  bool group_alive();
  bool wait_for_group(int milliseconds);
};

void ChildProcess::State::look_at_exit(int flags) {
  if (exit_status || process < 0) return;
  siginfo_t info{};
  int result = 0;
  do {
    result = ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT | flags);
  } while (result != 0 && errno == EINTR);
  if (result != 0) {
    exit_status = -1;  // somebody else has taken the status
    reaped = true;
  } else if (info.si_pid == process) {
    exit_status = info.si_code == CLD_EXITED ? info.si_status : 128 + info.si_status;
  }
}

void ChildProcess::State::reap_if_ended() {
  look_at_exit(WNOHANG);
  if (!exit_status || reaped) return;
  while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
  reaped = true;
}

void ChildProcess::State::signal_group(int number) const {
  ::kill(-process, number);
  if (!reaped) ::kill(process, number);
}

bool ChildProcess::State::group_alive() {
  reap_if_ended();
  return !reaped || ::kill(-process, 0) == 0 || errno == EPERM;
}

bool ChildProcess::State::wait_for_group(int milliseconds) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (group_alive()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(group_check_pause);
  }
  group_gone = true;
  return true;
}

ChildProcess::ChildProcess() : m_state(std::make_unique<State>()) {}
ChildProcess::~ChildProcess() = default;
ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&&) noexcept = default;

StartResult ChildProcess::start(const ProcessRequest& request) {
  m_state = std::make_unique<State>();
  std::array<int, 2> ends = {-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    m_state->error = last_error_text();
    return StartResult::no_pipe;
  }
  Descriptor read_end(ends[0]);
  const Descriptor write_end(ends[1]);
  SpawnPlan plan;
  plan.words = words_of(request);
  plan.environment = child_environment(request);
  plan.folder = request.folder;
  constexpr int niceness_per_step = -5;
  plan.niceness = request.priority * niceness_per_step;
  plan.output = write_end.get();
  SpawnResult result = spawn(plan);
  if (result.process < 0) {
    m_state->error = std::move(result.error);
    return StartResult::not_started;
  }
  m_state->process = result.process;
  m_state->output = std::move(read_end);
  return StartResult::started;
}

const std::string& ChildProcess::error() const { return m_state->error; }

bool ChildProcess::wait_readable(int milliseconds) {
  if (!m_state->output.is_open()) return true;
  pollfd watched = {m_state->output.get(), POLLIN, 0};
  // A signal ends the wait early: the caller then sees at once that it was interrupted.
  return ::poll(&watched, 1, milliseconds) > 0;
}

std::size_t ChildProcess::read(char* buffer, std::size_t size) {
  if (!m_state->output.is_open()) return 0;
  ssize_t count = 0;
  do {
    count = ::read(m_state->output.get(), buffer, size);
  } while (count < 0 && errno == EINTR);
  return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
}

void ChildProcess::close_output() { m_state->output.reset(); }

std::optional<int> ChildProcess::poll_exit() {
  m_state->look_at_exit(WNOHANG);
  return m_state->exit_status;
}

int ChildProcess::wait() {
  m_state->look_at_exit(0);
  return m_state->exit_status.value_or(-1);
}

void ChildProcess::end_group(int grace_milliseconds) {
  if (m_state->process <= 1 || m_state->group_gone) return;
  m_state->signal_group(SIGTERM);
  m_state->signal_group(SIGCONT);  // a stopped process acts on nothing else
  if (m_state->wait_for_group(grace_milliseconds)) return;
  m_state->signal_group(SIGKILL);
  m_state->wait_for_group(after_kill_milliseconds);
}

std::int64_t ChildProcess::id() const { return std::max<std::int64_t>(m_state->process, 0); }

}  // namespace ferrowen::platform
