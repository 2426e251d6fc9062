// Runs command lines in-process on streams in memory.
#pragma once

#include <doctest/doctest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "base/text.hpp"
#include "cli/run_ferrowen.hpp"

namespace ferrowen::test {

using Arguments = std::vector<std::string>;

struct CliResult {
  int status = -1;
  std::string output, error;
  [[nodiscard]] nlohmann::json json() const { return nlohmann::json::parse(output); }
  // Ended with this status, and its error stream holds the text.
  [[nodiscard]] bool told(int wanted_status, std::string_view text = "") const {
    return status == wanted_status && contains(error, text);
  }
};

// Without a terminal, unless `answers` are given: what a person types at the questions.
inline CliResult run_cli(const Arguments& arguments, const std::string& answers = "") {
  std::istringstream input(answers);
  std::ostringstream output;
  std::ostringstream error;
  Streams streams{input, output, error, !answers.empty(), false};
  const int status = run_ferrowen(arguments, streams);
  return {status, output.str(), error.str()};
}

// The same in a program folder; --home stands behind the command, as it may.
inline CliResult run_cli_in(const std::string& home, Arguments arguments, const std::string& answers = "") {
  arguments.insert(arguments.end(), {"--home", home});
  return run_cli(arguments, answers);
}

// A command line without quotes.
inline Arguments words(std::string_view line) { return split(line, " "); }

inline std::string setting(const std::string& home, const std::string& name) {
  const nlohmann::json value = run_cli_in(home, {"settings", "get", name, "--json"}).json().at("value");
  return value.is_string() ? value.get<std::string>() : value.dump();
}

}  // namespace ferrowen::test
