#include "pipeline/build_run.hpp"

#include <algorithm>

#include "app/tool_words.hpp"
#include "base/text.hpp"
#include "pipeline/mkgmap_command.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view error_mark = "parabola";
constexpr std::size_t most_complaints = 12;

std::string all_text(const VisibleRunEnd& run) { return run.output + "\n" + run.error_text; }

template <typename Test>
std::vector<std::string> lines_that(std::string_view text, Test test) {
  std::vector<std::string> found;
  for (const std::string& line : split_lines(text)) {
    if (test(line) && std::find(found.begin(), found.end(), line) == found.end()) found.push_back(line);
  }
  return found;
}

void add_file_reasons(Judgement& judgement, const std::vector<ResultFile>& expected) {
  for (const ResultFile& file : expected) {
    if (file.size > 0 && file.newer_than_start) continue;
    judgement.reasons.push_back((file.size == 0 ? "not made: " : "not made anew: ") + file.path);
  }
  if (judgement.reasons.empty()) return;
  judgement.verdict = judgement.reasons.size() < expected.size() ? Verdict::incomplete : Verdict::nothing;
}

void add_tool_reasons(Judgement& judgement, const std::string& text, int exit_status) {
  const std::vector<std::string> tool = lines_that(
      text, [](std::string_view line) { return is_level_line(line) || is_failure_counter_above_zero(line); });
  judgement.reasons.insert(judgement.reasons.end(), tool.begin(), tool.end());
  if (exit_status != 0) judgement.reasons.push_back("exit status " + std::to_string(exit_status));
  if (contains(text, error_mark)) judgement.reasons.emplace_back("a Java stack trace was printed");
}

}  // namespace

Judgement judge_build(const std::vector<ResultFile>& expected, const VisibleRunEnd& run,
                      std::string_view java_log) {
  Judgement judgement;
  judgement.verdict = Verdict::good;
  add_file_reasons(judgement, expected);
  const std::size_t file_reasons = judgement.reasons.size();
  add_tool_reasons(judgement, all_text(run), run.exit_status);
  // mkgmap's own log holds the error mark in every line's class name, so only its level words count.
  for (const std::string& line : lines_that(java_log, is_level_line)) {
    const auto& known = judgement.reasons;
    if (std::find(known.begin(), known.end(), line) == known.end()) judgement.reasons.push_back(line);
  }
  if (judgement.reasons.size() > file_reasons && judgement.verdict == Verdict::good)
    judgement.verdict = Verdict::doubtful;
  return judgement;
}

std::vector<std::string> complaints(std::string_view output) {
  std::vector<std::string> found = lines_that(output, names_a_failure);
  if (found.size() > most_complaints) found.resize(most_complaints);
  return found;
}

std::string failure_explanation(const Judgement& judgement, const Settings& settings) {
  const std::string jobs = settings.use_max_jobs ? std::to_string(settings.max_jobs) : "";
  std::vector<std::string> lines = {
      judgement.verdict == Verdict::nothing ? "This has been unsuccessful."
                                            : "This may be have unsuccessful.",
      "1) There may be an error in one of your style files,points,lines or polygons.",
      "2) The size of your osm could also be large:",
      "Max Jobs:" + jobs,
      "Memory:" + memory_of_java_options(settings.java_options),
      "Max Nodes:" + settings.max_nodes,
      "3) Tick/untick 'add java' option",
      "4) there is an error in the script",
      "Check you have latest version of mkgmap.jar",
  };
  if (!judgement.reasons.empty()) lines.emplace_back("");
  lines.insert(lines.end(), judgement.reasons.begin(), judgement.reasons.end());
  return join_texts(lines, crlf);
}

std::vector<std::string> expected_files(const Settings& settings, const BuildPlan& plan,
                                        const std::string& output_folder) {
  std::vector<std::string> files;
  for (const std::string& name : plan.map_names)
    files.push_back(platform::join(output_folder, name + ".img"));
  if (settings.device_image) files.push_back(platform::join(output_folder, "gmapsupp.img"));
  return files;
}

std::vector<std::string> further_files(const Settings& settings, const BuildPlan& plan,
                                       const std::string& output_folder) {
  const std::string overview = overview_name(settings);
  std::vector<std::string> names;
  for (const std::string& name : plan.map_names)
    names.push_back("ovm_" + name + ".img");
  for (const char* ending : {".img", ".tdb", ".mdx", "_mdr.img", ".nsi", "_license.txt"})
    names.push_back(overview + ending);
  // A TYP that already lies in the output folder is the user's own file and stays where it is.
  if (!plan.typ_copy.empty()) {
    const std::string typ = platform::name_of(plan.typ_copy);
    if (plan.typ_copy != plan.typ_source) names.push_back(typ);
    names.push_back("x" + typ);
    if (ends_with_ignoring_case(typ, ".txt")) {
      names.push_back(typ.substr(0, typ.size() - 4) + ".typ");
      names.push_back("x" + typ.substr(0, typ.size() - 4) + ".typ");
    }
  }
  std::vector<std::string> files;
  files.reserve(names.size());
  for (const std::string& name : names)
    files.push_back(platform::join(output_folder, name));
  return files;
}

double build_fraction(std::size_t expected, std::size_t found) {
  // The last tenth is the work on the set-wide files, which mkgmap fills at the end.
  constexpr double tiles_share = 0.9;
  if (expected == 0) return 0;
  return tiles_share * static_cast<double>(std::min(found, expected)) / static_cast<double>(expected);
}

}  // namespace ferrowen
