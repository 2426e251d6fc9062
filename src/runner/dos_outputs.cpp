#include "runner/dos_outputs.hpp"

#include <array>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t chunk_size = 256;
constexpr int wait_milliseconds = 50;

// Callers wait for the flag: it must be set on every way out.
class FinishedGuard {
 public:
  explicit FinishedGuard(RunFlags& flags) : m_flags(flags) { m_flags.finished = false; }
  ~FinishedGuard() { m_flags.finished = true; }
  FinishedGuard(const FinishedGuard&) = delete;
  FinishedGuard& operator=(const FinishedGuard&) = delete;

 private:
  RunFlags& m_flags;
};

}  // namespace

DOSOutputs::DOSOutputs(RunFlags& flags, Prompts& prompts, Progress& progress)
    : m_flags(flags), m_prompts(prompts), m_progress(progress) {}

const std::string& DOSOutputs::ExecuteCommand(const std::optional<std::string>& command_line) {
  const FinishedGuard guard(m_flags);
  if (command_line && !command_line->empty()) CommandLine = *command_line;
  if (CommandLine.empty())
    m_prompts.tell("Command Line empty", Icon::critical);
  else
    run();
  return m_outputs;
}

void DOSOutputs::run() {
  platform::ProcessRequest request;
  request.command_line = CommandLine;
  request.environment = environment;
  platform::ChildProcess child;
  const platform::StartResult result = child.start(request);
  // 0 is the result of the failed call, which is what people are used to see here.
  if (result == platform::StartResult::no_pipe) m_prompts.tell("Error with run.bat 0", Icon::critical);
  if (result != platform::StartResult::started) return;
  m_outputs.clear();
  m_flags.cancel = false;
  read_until_end(child);
}

void DOSOutputs::read_until_end(platform::ChildProcess& child) {
  std::array<char, chunk_size> buffer{};
  while (!m_flags.cancel) {
    // A silent child must not stop the interface: events are processed while nothing comes, too.
    if (child.wait_readable(wait_milliseconds)) {
      const std::size_t size = child.read(buffer.data(), buffer.size());
      if (size == 0) return;
      hand_on({buffer.data(), size});
    }
    m_progress.process_events();
    if (m_progress.stop_requested()) m_flags.cancel = true;
  }
}

void DOSOutputs::hand_on(std::string_view chunk) {
  m_outputs += chunk;
  if (ReceiveOutputs) ReceiveOutputs(chunk);
}

void OutputHandler::objDOS_ReceiveOutputs(std::string_view chunk) {
  constexpr int event_rounds = 3;
  // The first letter of "could" is left out so that both spellings are found.
  const bool wants_abort =
      contains(chunk, ".java") || contains(chunk, "ould not") || contains(chunk, "reduce");
  if (abort_test && wants_abort) m_flags.cancel = true;
  const std::string text = m_pieces.take(chunk);
  if (show_all_output || !contains(chunk, ".osm")) show(text);
  if (!text.empty()) m_ended_with_cr = text.ends_with('\r');
  for (int round = 0; round < event_rounds; ++round)
    m_progress.process_events();
}

void OutputHandler::flush() { show(m_pieces.rest()); }

void OutputHandler::show(const std::string& text) {
  if (text.empty()) return;
  const bool lf_of_earlier_cr = m_ended_with_cr && text.starts_with('\n');
  m_progress.output(lf_of_earlier_cr ? "\n" + with_crlf(std::string_view(text).substr(1)) : with_crlf(text));
}

}  // namespace ferrowen
