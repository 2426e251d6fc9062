// Child processes: started in a process group of their own, output joined into one pipe, ended as a group.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ferrowen::platform {

struct ProcessRequest {
  // Either a command line that the system's own rules take apart (the program is searched in PATH) ...
  std::string command_line;
  // ... or, when `program` is not empty, the program and its arguments, passed on unchanged.
  std::string program;
  std::vector<std::string> arguments;
  std::string folder;                                            // working folder; empty: this process's own
  std::vector<std::pair<std::string, std::string>> environment;  // set in addition to what is inherited
  bool own_console = false;   // Windows: a console window of its own, output not captured; elsewhere ignored
  std::string console_title;  // title of that window
  int priority = 0;           // -3 (lowest) to 3 (highest); above 0 only as far as the system allows it
};

enum class StartResult : std::uint8_t { started, no_pipe, not_started };

// One child. Its standard output and error arrive joined through read(); its standard input is empty.
// Every child gets LC_ALL=C.UTF-8 (not on Windows), unless the request's environment sets it.
// Destroying the object closes the handles and leaves the child alone; end_group() is what ends it.
class ChildProcess {
 public:
  ChildProcess();
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ChildProcess(ChildProcess&&) noexcept;
  ChildProcess& operator=(ChildProcess&&) noexcept;

  StartResult start(const ProcessRequest& request);
  // The system's reason for the last start that failed, in its own words.
  [[nodiscard]] const std::string& error() const;

  // True when read() will not block: bytes are there or the end is reached. Waits at most `milliseconds`.
  bool wait_readable(int milliseconds);
  // Up to `size` bytes; 0 at the end of the output (or when nothing is captured).
  std::size_t read(char* buffer, std::size_t size);
  // Stops listening; a child that writes on gets a broken pipe.
  void close_output();

  // Exit status when the child has ended (128 + signal number when a signal ended it), without waiting.
  std::optional<int> poll_exit();
  int wait();
  // Asks the whole group to end, waits up to `grace_milliseconds`, then kills it. Safe to call twice, and
  // after the child itself has ended (stragglers of its group are ended too).
  void end_group(int grace_milliseconds = 3000);
  [[nodiscard]] std::int64_t id() const;

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

// This process's own number.
std::int64_t own_process_id();
// Ends the group of a child that `parent`, a process of this program that was killed, has left behind, by the
// rules of end_group(). Nothing is touched, and the answer is false, unless `leader` still runs with
// `argument` as one of its arguments, leads a group of its own, and has another parent by now. Where the
// system cannot tell (it has no /proc), or ends children with their parent (Windows), nothing is done.
bool end_orphaned_group(std::int64_t leader, std::int64_t parent, std::string_view argument,
                        int grace_milliseconds = 3000);

// The words of a command line by the system's rules: blanks separate, quotes hold together.
std::vector<std::string> split_command_line(std::string_view line);

}  // namespace ferrowen::platform
