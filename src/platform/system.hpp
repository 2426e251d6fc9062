// Facts about the machine and the running process.
#pragma once

#include <cstdint>
#include <string>

namespace ferrowen::platform {

// A 64-bit system: told by the pointer size, or (32-bit program) by IsWow64Process.
bool is_64bit_system();
// Speed of the first processor in MHz; 0 when the system does not tell.
int processor_mhz();
// Memory of the machine in megabytes; 0 when unknown.
std::uint64_t memory_megabytes();
// Processor time of this process alone, in seconds.
double processor_seconds();

// A file that says "this program folder is in use". Held while the object lives; the system releases it
// when the process ends, however it ends.
class InstanceLock {
 public:
  InstanceLock() = default;
  ~InstanceLock();
  InstanceLock(const InstanceLock&) = delete;
  InstanceLock& operator=(const InstanceLock&) = delete;
  enum class Result : std::uint8_t { held, taken_by_other, failed };
  Result acquire(const std::string& path);
  [[nodiscard]] const std::string& error() const { return m_error; }

 private:
  std::intptr_t m_handle = -1;
  std::string m_error;
};

// From now on an interrupt (Ctrl-C, SIGTERM, SIGHUP, closing the console) does not end the process but makes
// interrupted() true. A second interrupt changes nothing: the stages end what they started and return.
void catch_interrupts();
bool interrupted();

}  // namespace ferrowen::platform
