// Reports of automation runs as text.
#include <algorithm>
#include <string_view>

#include "automation/auto_run.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/result_word.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

std::string_view word_of(const AutoReport& report) {
  return report.problems.empty() ? result_word(report.result) : "not started";
}

// What a run has left: its files, and the copy of its image.
bool has_made(const AutoReport& report, const std::string& path) {
  const std::vector<MadeFile>& files = report.build.files;
  return !path.empty() &&
         (path == report.build.image ||
          std::any_of(files.begin(), files.end(), [&](const MadeFile& file) { return file.path == path; }));
}

bool replaces(const AutoReport& later, const AutoReport& earlier) {
  const std::vector<MadeFile>& files = earlier.build.files;
  return has_made(later, earlier.build.image) ||
         std::any_of(files.begin(), files.end(),
                     [&](const MadeFile& file) { return has_made(later, file.path); });
}

std::string seconds_text(double seconds) { return fixed_text(seconds, 1) + " s"; }

}  // namespace

std::string report_text(const AutoReport& report) {
  std::string text =
      report.script + ": " + std::string(word_of(report)) + ", " + seconds_text(report.seconds) + "\n";
  for (const std::string& problem : report.problems)
    text += "  " + problem + "\n";
  for (const StageTime& stage : report.stages)
    text += "  " + stage.stage + ": " + seconds_text(stage.seconds) + "\n";
  for (const MadeFile& file : report.build.files)
    text += "  " + file.path + " (" + std::to_string(file.size) + " bytes)\n";
  if (!report.build.image.empty()) text += "  device image: " + report.build.image + "\n";
  if (!report.build.registered_folder.empty())
    text += "  registered: " + report.build.registered_folder + "\n";
  for (const QuietMessage& message : report.messages)
    text += "  " + message_line(message) + "\n";
  return text;
}

std::string replaced_by(const std::vector<AutoReport>& reports, std::size_t number) {
  for (std::size_t later = reports.size(); later > number + 1; --later) {
    if (replaces(reports[later - 1], reports[number])) return reports[later - 1].script;
  }
  return "";
}

std::string summary_text(const std::vector<AutoReport>& reports) {
  std::string text;
  std::size_t good = 0;
  for (std::size_t number = 0; number < reports.size(); ++number) {
    const AutoReport& report = reports[number];
    if (report.result == StageResult::done && report.problems.empty()) ++good;
    text += std::string(word_of(report)) + "  " + seconds_text(report.seconds) + "  " + report.script;
    if (!report.problems.empty()) text += "  (" + report.problems.front() + ")";
    const std::string later = replaced_by(reports, number);
    if (!later.empty()) text += "  (replaced by " + platform::name_of(later) + ")";
    text += "\n";
  }
  return text + std::to_string(good) + " of " + std::to_string(reports.size()) + " maps were made.\n";
}

}  // namespace ferrowen
