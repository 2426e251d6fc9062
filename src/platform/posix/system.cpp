#include "platform/system.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <ctime>
#include <fstream>
#include <string_view>

#include "platform/error_text.hpp"
#include "platform/posix/descriptor.hpp"

namespace ferrowen::platform {
namespace {

// A signal handler can reach nothing else.
std::atomic<bool> interrupt_seen = false;
static_assert(std::atomic<bool>::is_always_lock_free);

void note_interrupt(int /*signal*/) { interrupt_seen.store(true); }

double number_behind(std::string_view line, std::string_view before) {
  const std::size_t start = line.find_first_not_of(" \t:", before.size());
  if (start == std::string_view::npos) return 0;
  double value = 0;
  std::from_chars(line.data() + start, line.data() + line.size(), value);
  return value;
}

// Machines without "cpu MHz" lines (ARM) tell the highest clock here, in kHz.
int highest_mhz() {
  std::ifstream file("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
  std::string line;
  std::getline(file, line);
  return static_cast<int>(number_behind(line, "") / 1000);
}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  ::sigemptyset(&action.sa_mask);
  // No SA_RESTART: a question at the terminal must not wait on after an interrupt.
  ::sigaction(signal, &action, nullptr);
}

bool is_ignored(int signal) {
  struct sigaction action {};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

bool is_64bit_system() {
  if (sizeof(void*) == 8) return true;
  utsname names{};
  return ::uname(&names) == 0 && std::string_view(names.machine).find("64") != std::string_view::npos;
}

int processor_mhz() {
  constexpr std::string_view name = "cpu MHz";
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);)
    if (line.starts_with(name)) return static_cast<int>(number_behind(line, name));
  return highest_mhz();
}

std::uint64_t memory_megabytes() {
  constexpr std::uint64_t bytes_per_megabyte = 1024ULL * 1024;
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long page_size = ::sysconf(_SC_PAGE_SIZE);
  if (pages <= 0 || page_size <= 0) return 0;
  return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(page_size) / bytes_per_megabyte;
}

double processor_seconds() {
  timespec used{};
  if (::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used) != 0) return 0;
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

InstanceLock::~InstanceLock() { const Descriptor held(static_cast<int>(m_handle)); }

InstanceLock::Result InstanceLock::acquire(const std::string& path) {
  if (m_handle >= 0) return Result::held;
  constexpr mode_t readable_by_all = 0666;
  Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, readable_by_all));
  const bool locked = file.is_open() && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
  if (!locked) {
    const int reason = errno;
    m_error = error_text(static_cast<unsigned long>(reason));
    return file.is_open() && reason == EWOULDBLOCK ? Result::taken_by_other : Result::failed;
  }
  m_error.clear();
  m_handle = file.release();
  return Result::held;
}

void catch_interrupts() {
  handle(SIGINT, note_interrupt);
  handle(SIGTERM, note_interrupt);
  // Under "nohup" the end of the terminal is none of our business.
  if (!is_ignored(SIGHUP)) handle(SIGHUP, note_interrupt);
  // A reader of our output that goes away is a failed write, not our death.
  handle(SIGPIPE, SIG_IGN);
}

bool interrupted() { return interrupt_seen.load(); }

}  // namespace ferrowen::platform
