// Progress for tests: remembers what it was shown and can ask for a stop at a chosen moment.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/prompts.hpp"

namespace ferrowen::test {

class FakeProgress : public Progress {
 public:
  std::vector<double> fractions;
  std::vector<std::string> statuses;
  std::vector<double> elapsed_seconds;
  std::vector<std::string> outputs;  // piece by piece; output_text() joins them
  std::vector<std::string> commands;
  int events_processed = 0;
  bool stop = false;                // what stop_requested() answers
  std::function<void()> on_events;  // called by process_events(): a click that comes meanwhile
  std::function<bool()> stop_when;  // asked by stop_requested() in addition to `stop`

  void fraction(double done) override { fractions.push_back(done); }
  void status(std::string_view text) override { statuses.emplace_back(text); }
  void elapsed(double seconds) override { elapsed_seconds.push_back(seconds); }
  void output(std::string_view text) override { outputs.emplace_back(text); }
  void command(std::string_view text) override { commands.emplace_back(text); }
  void process_events() override {
    ++events_processed;
    if (on_events) on_events();
  }
  [[nodiscard]] bool stop_requested() override { return stop || (stop_when && stop_when()); }

  [[nodiscard]] std::string output_text() const {
    std::string text;
    for (const std::string& piece : outputs)
      text += piece;
    return text;
  }
};

}  // namespace ferrowen::test
