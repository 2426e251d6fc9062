#include "platform/system.hpp"

#include <windows.h>

#include <atomic>
#include <utility>

#include "platform/error_text.hpp"
#include "platform/registry.hpp"
#include "platform/win32/handle.hpp"

namespace ferrowen::platform {
namespace {

// The handler, which runs in a thread of the system's own, can reach nothing else.
std::atomic<bool> interrupt_seen = false;

BOOL WINAPI note_interrupt(DWORD event) {
  interrupt_seen.store(true);
  // After these the process is ended as soon as the handler returns; waiting here gives it the few
  // seconds that the system grants.
  if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT)
    Sleep(INFINITE);
  return TRUE;
}

double seconds(const FILETIME& time) {
  const std::uint64_t ticks = (std::uint64_t{time.dwHighDateTime} << 32U) | time.dwLowDateTime;
  return static_cast<double>(ticks) * 1e-7;
}

}  // namespace

bool is_64bit_system() {
  BOOL emulated = FALSE;
  return sizeof(void*) == 8 || (IsWow64Process(GetCurrentProcess(), &emulated) != 0 && emulated != FALSE);
}

int processor_mhz() {
  const auto speed = registry_number(RegistryRoot::local_machine,
                                     "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", "~MHz");
  return static_cast<int>(speed.value_or(0));
}

std::uint64_t memory_megabytes() {
  MEMORYSTATUSEX memory = {};
  memory.dwLength = sizeof memory;
  if (GlobalMemoryStatusEx(&memory) == 0) return 0;
  return memory.ullTotalPhys / (1024ULL * 1024);
}

double processor_seconds() {
  FILETIME created = {};
  FILETIME ended = {};
  FILETIME kernel = {};
  FILETIME user = {};
  if (GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user) == 0) return 0;
  return seconds(kernel) + seconds(user);
}

InstanceLock::~InstanceLock() {
  if (m_handle != -1) CloseHandle(reinterpret_cast<HANDLE>(m_handle));
}

InstanceLock::Result InstanceLock::acquire(const std::string& path) {
  if (m_handle != -1) return Result::held;
  // Shared with nobody for as long as it is open.
  Handle file(CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.is_open()) {
    const DWORD reason = GetLastError();
    m_error = error_text(reason);
    return reason == ERROR_SHARING_VIOLATION ? Result::taken_by_other : Result::failed;
  }
  m_error.clear();
  m_handle = reinterpret_cast<std::intptr_t>(file.release());
  return Result::held;
}

void catch_interrupts() { SetConsoleCtrlHandler(note_interrupt, TRUE); }

bool interrupted() { return interrupt_seen.load(); }

}  // namespace ferrowen::platform
