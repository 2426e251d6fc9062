#include "cli/run_ferrowen.hpp"

#include <algorithm>
#include <exception>
#include <ostream>

#include "cli/commands.hpp"

namespace ferrowen {

namespace {

ExitStatus show_wrong_usage(const std::string& error, bool json, Streams& streams) {
  Terminal(streams).print_line(error);
  if (json) {
    streams.output << json_text(json_object(result_word(ExitStatus::wrong_usage), ExitStatus::wrong_usage,
                                            {{error, Icon::critical, std::nullopt, ""}}));
  }
  return ExitStatus::wrong_usage;
}

ExitStatus show_help(const std::string& help, Streams& streams) {
  streams.output << terminal_text(help) << '\n' << std::flush;
  return streams.output ? ExitStatus::done : ExitStatus::run_failed;
}

ExitStatus run_line(const CommandLine& line, Streams& streams) {
  Session session(line.global, streams);
  ExitStatus status = ExitStatus::run_failed;
  try {
    status = std::visit([&](const auto& arguments) { return run_command(session, arguments); }, line.command);
  } catch (const std::exception& error) {
    status = session.fail(error.what(), ExitStatus::run_failed);
  }
  return session.finish(status);
}

}  // namespace

int run_ferrowen(const std::vector<std::string>& arguments, Streams& streams) {
  const ParsedCommandLine parsed = parse_command_line(arguments);
  const bool json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
  if (parsed.line) return static_cast<int>(run_line(*parsed.line, streams));
  if (!parsed.error.empty()) return static_cast<int>(show_wrong_usage(parsed.error, json, streams));
  return static_cast<int>(show_help(parsed.help, streams));
}

}  // namespace ferrowen
