// The log of one automation run: messages, commands, and what the tools said.
#pragma once

#include <string>
#include <string_view>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

// Kept in memory until the run is over, then written whole: "logs/<name of the script>.log" in the program
// folder. What a tool says beyond the first megabytes is left out.
class AutoLog {
 public:
  AutoLog(const Workspace& workspace, const std::string& script);
  void line(std::string_view text);
  void tool_output(std::string_view text);
  // Writes the log, with the report in front.
  Status finish(std::string_view report) const;
  [[nodiscard]] const std::string& path() const { return m_path; }

 private:
  std::string m_path, m_text;
  bool m_full = false;
};

// Hands everything on and keeps what belongs into the log.
class LoggedProgress : public Progress {
 public:
  LoggedProgress(Progress& progress, AutoLog& log) : m_progress(progress), m_log(log) {}
  void fraction(double done) override { m_progress.fraction(done); }
  void status(std::string_view text) override;
  void elapsed(double seconds) override { m_progress.elapsed(seconds); }
  void output(std::string_view text) override;
  void command(std::string_view text) override;
  void process_events() override { m_progress.process_events(); }
  [[nodiscard]] bool stop_requested() override { return m_progress.stop_requested(); }

 private:
  Progress& m_progress;
  AutoLog& m_log;
};

}  // namespace ferrowen
