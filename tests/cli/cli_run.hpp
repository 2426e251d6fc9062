// Runs command lines in-process on streams in memory.
#pragma once

#include <doctest/doctest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/run_ferrowen.hpp"

namespace ferrowen::test {

struct CliResult {
  int status = -1;
  std::string output, error;
  [[nodiscard]] nlohmann::json json() const { return nlohmann::json::parse(output); }
};

// Without a terminal, unless `answers` are given: what a person types at the questions.
inline CliResult run_cli(const std::vector<std::string>& arguments, const std::string& answers = "") {
  std::istringstream input(answers);
  std::ostringstream output;
  std::ostringstream error;
  Streams streams{input, output, error, !answers.empty(), false};
  CliResult result;
  result.status = run_ferrowen(arguments, streams);
  result.output = output.str();
  result.error = error.str();
  return result;
}

// The same in a program folder; --home stands behind the command, as it may.
inline CliResult run_cli_in(const std::string& home, std::vector<std::string> arguments,
                            const std::string& answers = "") {
  arguments.insert(arguments.end(), {"--home", home});
  return run_cli(arguments, answers);
}

inline std::string setting(const std::string& home, const std::string& name) {
  const CliResult result = run_cli_in(home, {"settings", "get", name, "--json"});
  REQUIRE(result.status == 0);
  const nlohmann::json value = result.json().at("value");
  return value.is_string() ? value.get<std::string>() : value.dump();
}

}  // namespace ferrowen::test
