#include "platform/posix/spawn.hpp"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

#include "platform/error_text.hpp"
#include "platform/posix/descriptor.hpp"

namespace ferrowen::platform {
namespace {

enum class Step : int { other, folder };

struct Failure {
  int code = 0;
  Step step = Step::other;
};

// What the child needs, ready for use: between fork and exec nothing may allocate or lock.
struct Prepared {
  std::string program;
  std::vector<char*> arguments;
  std::vector<char*> environment;
  const char* folder = nullptr;
  int input = -1;
  int output = -1;
  int failures = -1;
  int descriptor_limit = 0;
  int niceness = 0;
  bool detached = false;
};

std::vector<char*> pointers_to(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (const std::string& text : texts)
    pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

// A process that was started with closed standard streams gets their numbers for its pipes; the child's
// dup2 calls would then run over each other.
Descriptor above_standard_streams(int number) {
  if (number < 0 || number > STDERR_FILENO) return Descriptor(number);
  const Descriptor low(number);
  return Descriptor(::fcntl(low.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

// "nohup" works by handing an ignored SIGHUP down; every other signal starts with its default meaning.
void reset_signals() {
  struct sigaction inherited {};
  const bool keep_hangup = ::sigaction(SIGHUP, nullptr, &inherited) == 0 && inherited.sa_handler == SIG_IGN;
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  for (int number = 1; number < NSIG; ++number)
    if (number != SIGHUP || !keep_hangup) ::sigaction(number, &standard, nullptr);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Nothing but the standard streams goes to the child, also what a library opened without close-on-exec.
void close_on_exec_from(int first, int limit) {
  if (::close_range(static_cast<unsigned>(first), ~0U, CLOSE_RANGE_CLOEXEC) == 0) return;
  for (int number = first; number < limit; ++number)
    ::fcntl(number, F_SETFD, FD_CLOEXEC);
}

[[noreturn]] void fail(const Prepared& prepared, Step step) {
  const Failure failure{errno, step};
  // The exit status is all that is left to tell of a failure to report the failure.
  if (::write(prepared.failures, &failure, sizeof failure) < 0) ::_exit(126);
  ::_exit(127);
}

[[noreturn]] void become_program(const Prepared& prepared) {
  if (prepared.detached) {
    const pid_t second = ::_Fork();
    if (second < 0) fail(prepared, Step::other);
    if (second > 0) ::_exit(0);
    ::setsid();
  } else {
    ::setpgid(0, 0);
  }
  reset_signals();
  // A higher priority than normal is refused to ordinary users: the run goes on with the normal one.
  if (prepared.niceness != 0) ::setpriority(PRIO_PROCESS, 0, prepared.niceness);
  if (::dup2(prepared.input, STDIN_FILENO) < 0 || ::dup2(prepared.output, STDOUT_FILENO) < 0 ||
      ::dup2(prepared.output, STDERR_FILENO) < 0)
    fail(prepared, Step::other);
  if (prepared.folder != nullptr && ::chdir(prepared.folder) != 0) fail(prepared, Step::folder);
  close_on_exec_from(STDERR_FILENO + 1, prepared.descriptor_limit);
  ::execve(prepared.program.c_str(), prepared.arguments.data(), prepared.environment.data());
  fail(prepared, Step::other);
}

// With all signals held back, so that none of this process's handlers runs in the child.
pid_t fork_with_signals_held(const Prepared& prepared) {
  sigset_t all;
  sigset_t before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  const pid_t process = ::fork();
  if (process == 0) become_program(prepared);
  const int reason = errno;
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  errno = reason;
  return process;
}

// Returns at the exec, which closes the other end, or with the reason why there was none.
Failure read_failure(const Descriptor& reports) {
  Failure failure;
  ssize_t count = 0;
  do {
    count = ::read(reports.get(), &failure, sizeof failure);
  } while (count < 0 && errno == EINTR);
  return count == static_cast<ssize_t>(sizeof failure) ? failure : Failure{};
}

void reap(pid_t process) {
  while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

// Where the parent of this process ignored SIGCHLD, the system would throw exit statuses away.
void keep_exit_statuses() {
  struct sigaction current {};
  if (::sigaction(SIGCHLD, nullptr, &current) != 0 || current.sa_handler != SIG_IGN) return;
  current.sa_handler = SIG_DFL;
  ::sigaction(SIGCHLD, &current, nullptr);
}

bool holds_nul(const std::vector<std::string>& texts) {
  return std::any_of(texts.begin(), texts.end(),
                     [](const std::string& text) { return text.find('\0') != std::string::npos; });
}

std::string describe(const Failure& failure, const SpawnPlan& plan) {
  const std::string reason = error_text(static_cast<unsigned long>(failure.code));
  return failure.step == Step::folder ? plan.folder + ": " + reason : reason;
}

}  // namespace

SpawnResult spawn(const SpawnPlan& plan) {
  if (plan.words.empty() || plan.words.front().empty()) return {-1, error_text(ENOENT)};
  if (holds_nul(plan.words) || holds_nul(plan.environment)) return {-1, error_text(EINVAL)};
  Prepared prepared;
  prepared.program = locate_program(plan.words.front(), search_path_of(plan.environment), plan.folder);
  if (prepared.program.empty()) return {-1, last_error_text()};
  prepared.arguments = pointers_to(plan.words);
  prepared.environment = pointers_to(plan.environment);
  prepared.folder = plan.folder.empty() ? nullptr : plan.folder.c_str();
  prepared.niceness = plan.niceness;
  prepared.detached = plan.detached;
  prepared.descriptor_limit = static_cast<int>(std::min(::sysconf(_SC_OPEN_MAX), 65536L));

  const Descriptor input = above_standard_streams(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  const Descriptor output = above_standard_streams(::fcntl(plan.output, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  std::array<int, 2> ends = {-1, -1};
  if (!input.is_open() || !output.is_open() || ::pipe2(ends.data(), O_CLOEXEC) != 0)
    return {-1, last_error_text()};
  const Descriptor reports = above_standard_streams(ends[0]);
  Descriptor failures = above_standard_streams(ends[1]);
  prepared.input = input.get();
  prepared.output = output.get();
  prepared.failures = failures.get();

  keep_exit_statuses();
  const pid_t process = fork_with_signals_held(prepared);
  if (process < 0) return {-1, last_error_text()};
  // Done on both sides: whoever comes first, the group exists before anybody uses it.
  if (!plan.detached) ::setpgid(process, process);
  failures.reset();
  const Failure failure = read_failure(reports);
  if (plan.detached || failure.code != 0) reap(process);
  if (failure.code != 0) return {-1, describe(failure, plan)};
  return {plan.detached ? -1 : process, ""};
}

}  // namespace ferrowen::platform
