// Captured runs: a short command whose whole output the program reads while the interface stays alive.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/prompts.hpp"
#include "platform/process.hpp"
#include "runner/utf8_pieces.hpp"

namespace ferrowen {

// Shared between the runner and its users; both belong to the Workspace.
struct RunFlags {
  bool cancel = false;    // stops the reading after the current chunk
  bool finished = false;  // set when ExecuteCommand has returned, whether or not the command ran
};

// Reads in pieces of at most 256 bytes. Never kills the child: a cancelled run only stops reading.
class DOSOutputs {
 public:
  DOSOutputs(RunFlags& flags, Prompts& prompts, Progress& progress);

  std::string CommandLine;
  // Called once per piece read, in order; the pieces joined are Outputs().
  std::function<void(std::string_view)> ReceiveOutputs;
  // Set for the child in addition to the inherited environment.
  std::vector<std::pair<std::string, std::string>> environment;

  // All output read so far.
  [[nodiscard]] const std::string& Outputs() const { return m_outputs; }
  // Runs the command line (or CommandLine when none is given) to its end and returns Outputs(). A program
  // that cannot be started is told by an output that stays as it was; no message is shown. A stop request of
  // the person sets the cancel flag.
  const std::string& ExecuteCommand(const std::optional<std::string>& command_line = std::nullopt);

 private:
  void run();
  void read_until_end(platform::ChildProcess& child);
  void hand_on(std::string_view chunk);

  RunFlags& m_flags;
  Prompts& m_prompts;
  Progress& m_progress;
  std::string m_outputs;
};

// What happens to each piece of a captured run on its way to the output box.
class OutputHandler {
 public:
  OutputHandler(RunFlags& flags, Progress& progress) : m_flags(flags), m_progress(progress) {}
  bool show_all_output = false;  // also show pieces that name an ".osm" file
  bool abort_test = true;        // off for help queries, whose text holds the abort words

  void objDOS_ReceiveOutputs(std::string_view chunk);
  // Shows what is left of a character that was split between two pieces.
  void flush();

 private:
  void show(const std::string& text);

  RunFlags& m_flags;
  Progress& m_progress;
  Utf8Pieces m_pieces;
  bool m_ended_with_cr = false;  // its LF may come with the next piece
};

}  // namespace ferrowen
