// One command from start to end: the workspace, the person's side of it, and the result that is printed last.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "app/workspace.hpp"
#include "cli/command_line.hpp"
#include "cli/exit_status.hpp"
#include "cli/streams.hpp"
#include "cli/terminal_progress.hpp"
#include "cli/terminal_prompts.hpp"
#include "platform/system.hpp"

namespace ferrowen {

using Json = nlohmann::ordered_json;

class Session {
 public:
  enum class Access : unsigned char { read, write };  // what the command does to the program folder
  enum class Notes : unsigned char { show, drop };    // what is done with the notes of the start-up

  Session(const GlobalOptions& options, Streams& streams);

  // The start-up; a writing command takes the lock of the program folder first. Anything but `done`: the
  // reason has been told, and the command must end with this status.
  ExitStatus open(Access access, Notes notes);
  // Tells an error and returns the status, for the last line of a command.
  ExitStatus fail(std::string_view text, ExitStatus status = ExitStatus::wrong_usage);
  // A part of the result for a person; with --json it is left out.
  void show(std::string_view text);
  // Prints the JSON object; a result that could not be written makes the run fail.
  ExitStatus finish(ExitStatus status);

  GlobalOptions options;
  Workspace workspace;
  Terminal terminal;
  TerminalPrompts prompts;
  TerminalProgress progress;
  Json json;           // the command's own part of the object
  std::string result;  // its word for the result, when the exit status says less

 private:
  ExitStatus take_lock();

  Streams& m_streams;
  platform::InstanceLock m_lock;
};

// The object of --json.
Json json_object(std::string_view result, ExitStatus status, const MessageLog& messages);
// Valid UTF-8 whatever the values hold, with a line end.
std::string json_text(const Json& object);

}  // namespace ferrowen
