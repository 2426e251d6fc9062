// Running the tests' child program.
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/paths.hpp"
#include "platform/process.hpp"

namespace ferrowen::platform::testing {

inline std::string child_path() { return join(folder_of(executable_path()), FERROWEN_TEST_CHILD); }

inline ProcessRequest child_request(std::vector<std::string> arguments) {
  ProcessRequest request;
  request.program = child_path();
  request.arguments = std::move(arguments);
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
  std::string output(expected.size(), '\0');
  std::size_t count = 0;
  while (count < output.size() && child.wait_readable(10000)) {
    const std::size_t got = child.read(output.data() + count, output.size() - count);
    if (got == 0) break;
    count += got;
  }
  return output == expected;
}

struct Outcome {
  StartResult started = StartResult::not_started;
  std::string output;
  int status = -1;
};

inline Outcome run(const ProcessRequest& request) {
  ChildProcess child;
  Outcome outcome;
  outcome.started = child.start(request);
  if (outcome.started != StartResult::started) return outcome;
  outcome.output = read_all(child);
  outcome.status = child.wait();
  return outcome;
}

// An empty folder of its own for one test, with a blank and a letter beyond ASCII in its name.
class TestFolder {
 public:
  explicit TestFolder(const std::string& name)
      : m_path(join(path_text(std::filesystem::temp_directory_path()),
                    "ferrowen \u00fc " + std::to_string(std::random_device{}()) + " " + name)) {
    std::filesystem::create_directories(file_system_path(m_path));
  }
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(file_system_path(m_path), ignored);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return m_path; }
  [[nodiscard]] std::string file(const std::string& name) const { return join(m_path, name); }
  [[nodiscard]] std::filesystem::path at(const std::string& name) const {
    return file_system_path(file(name));
  }

 private:
  std::string m_path;
};

inline std::string content_of(const std::string& path) {
  std::ifstream file(file_system_path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace ferrowen::platform::testing
