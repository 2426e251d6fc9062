// Running the tests' child program.
#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "platform/paths.hpp"
#include "platform/process.hpp"

namespace ferrowen::platform::testing {

inline constexpr bool on_windows = separator == '\\';

inline std::string child_path() { return join(folder_of(executable_path()), FERROWEN_TEST_CHILD); }

inline ProcessRequest request_for(std::string program, std::vector<std::string> arguments = {},
                                  std::string folder = "") {
  ProcessRequest request;
  request.program = std::move(program);
  request.arguments = std::move(arguments);
  request.folder = std::move(folder);
  return request;
}

inline ProcessRequest child_request(std::vector<std::string> arguments) {
  return request_for(child_path(), std::move(arguments));
}

inline ProcessRequest line_request(std::string command_line) {
  ProcessRequest request;
  request.command_line = std::move(command_line);
  return request;
}

// All output up to its end; a test that would wait for ever ends with what there is by then.
inline std::string read_all(ChildProcess& child, int limit_milliseconds = 20000) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(limit_milliseconds);
  std::string output;
  char buffer[256];
  while (std::chrono::steady_clock::now() < deadline) {
    if (!child.wait_readable(50)) continue;
    const std::size_t count = child.read(buffer, sizeof buffer);
    if (count == 0) return output;
    output.append(buffer, count);
  }
  return output + "(no end)";
}

// Waits for exactly this text at the start of the output.
inline bool reads(ChildProcess& child, const std::string& expected) {
  std::string output;
  for (char byte = 0; output.size() < expected.size(); output += byte)
    if (!child.wait_readable(10000) || child.read(&byte, 1) == 0) return false;
  return output == expected;
}

struct Outcome {
  StartResult started = StartResult::not_started;
  std::string output;
  int status = -1;
};

inline Outcome run(const ProcessRequest& request) {
  ChildProcess child;
  if (const StartResult result = child.start(request); result != StartResult::started)
    return {result, "", -1};
  std::string output = read_all(child);
  return {StartResult::started, std::move(output), child.wait()};
}

}  // namespace ferrowen::platform::testing
