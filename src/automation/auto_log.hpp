// The log of one automation run: messages, commands, and what the tools said.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

// "logs/<name of the script>.log" in the program folder, written as the run goes on, so that one that is
// killed leaves what it did; the report stands at the end. What a tool says beyond the first megabytes is
// left out; lines of the run itself never are.
class AutoLog {
 public:
  AutoLog(const Workspace& workspace, const std::string& script);
  void line(std::string_view text);
  void tool_output(std::string_view text);
  // Adds the report. The error is that of anything that could not be written.
  Status finish(std::string_view report);
  [[nodiscard]] const std::string& path() const { return m_path; }

 private:
  void write(std::string_view text);

  std::string m_path;
  std::ofstream m_file;
  Status m_opened;
  std::size_t m_size = 0;
  bool m_full = false, m_ends_with_cr = false;
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
