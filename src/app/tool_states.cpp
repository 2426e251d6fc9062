#include "app/tool_states.hpp"

#include <algorithm>

#include "app/start_up.hpp"
#include "app/tool_query.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_locate_mkgmap = 46, message_cannot_find = 89, message_locate_splitter = 90,
              message_no_java = 109, message_locate = 129;

enum class Kind : std::uint8_t { jar, program, not_asked };

// How a tool is asked, and the word that its version line begins with.
struct Question {
  std::string_view field;
  Kind kind = Kind::not_asked;
  std::string_view file_name_part;  // a program whose name does not hold it is not started
  std::string_view argument;
  std::string_view version_word;
};

constexpr Question questions[] = {
    {"java", Kind::program, "java", "-version", ""},
    {"mkgmap", Kind::jar, "", "--version", "Mkgmap version"},
    {"splitter", Kind::jar, "", "--version", "splitter"},
    {"osmconvert", Kind::program, "osmconvert", "--help", "osmconvert"},
    {"7z", Kind::program, "7z", "", "7-Zip"},
    {"makensis", Kind::program, "makensis", "-VERSION", "v"},
};

Question question_for(std::string_view field) {
  for (const Question& each : questions)
    if (each.field == field) return each;
  return {field, Kind::not_asked, "", "", ""};
}

std::string set_path(const Settings& settings, std::string_view field) {
  std::string path(trim(stored_text(settings, *find_field(field))));
  return path.empty() && field == "java" ? platform::find_program("java") : path;
}

std::string not_set_text(const Workspace& workspace, const ToolAdvice& advice) {
  if (advice.field == "java") return workspace.message(message_no_java);
  if (advice.field == "mkgmap") return workspace.message(message_locate_mkgmap);
  if (advice.field == "splitter") return workspace.message(message_locate_splitter);
  return workspace.message(message_locate) + std::string(advice.label);
}

bool is_named_like(const std::string& path, std::string_view part) {
  return contains_ignoring_case(platform::name_of(path), part);
}

Result<std::string> answer_of(Workspace& workspace, Prompts& prompts, Progress& progress,
                              const Question& question, const std::string& path) {
  std::vector<std::string> arguments;
  if (!question.argument.empty()) arguments.emplace_back(question.argument);
  if (question.kind == Kind::jar) return ask_jar(workspace, prompts, progress, path, arguments);
  arguments.insert(arguments.begin(), path);
  return ask_tool(workspace, prompts, progress, arguments);
}

std::string version_in(const Question& question, const std::string& output) {
  if (question.field != "java") return version_line(output, question.version_word);
  const std::string version = java_version_text(output);
  return version == java_not_installed ? "" : version;
}

void ask_version(Workspace& workspace, Prompts& prompts, Progress& progress, const Question& question,
                 ToolReport& report) {
  const std::string wrong = "You have selected:\r\n" + platform::name_of(report.path);
  report.state = ToolState::wrong_program;
  report.problem = wrong;
  if (!is_named_like(report.path, question.file_name_part)) return;
  if (question.kind == Kind::jar && !has_java(workspace.settings)) {
    report.state = ToolState::found;
    report.problem = workspace.message(message_no_java);
    return;
  }
  const Result<std::string> answer = answer_of(workspace, prompts, progress, question, report.path);
  report.version = version_in(question, answer.value);
  if (!report.version.empty()) {
    report.state = ToolState::found;
    report.problem.clear();
  } else if (!answer.ok()) {
    report.problem = answer.error;
  }
}

}  // namespace

const std::vector<ToolAdvice>& tool_advice() {
  static const std::vector<ToolAdvice> advice = {
      {"java", "Java", true, "default-jre", "Install the package default-jre.",
       "Download the installer of a Java runtime, version 17 or newer, from Eclipse Temurin and run it.",
       "https://adoptium.net/"},
      {"mkgmap", "mkgmap.jar", true, "mkgmap", "Install the package mkgmap.",
       "Download mkgmap, unpack it into a folder of its own and choose mkgmap.jar there.",
       "https://www.mkgmap.org.uk/"},
      {"splitter", "splitter.jar", true, "mkgmap-splitter", "Install the package mkgmap-splitter.",
       "Download splitter from the mkgmap project, unpack it and choose splitter.jar there.",
       "https://www.mkgmap.org.uk/"},
      {"osmconvert", "osmconvert", false, "osmctools", "Install the package osmctools.",
       "Download osmconvert and choose osmconvert.exe; the program is a single file.",
       "https://wiki.openstreetmap.org/wiki/Osmconvert"},
      {"7z", "7-Zip", false, "p7zip-full", "Install the package p7zip-full.",
       "Download the installer of 7-Zip, run it and choose 7z.exe in its folder.", "https://www.7-zip.org/"},
      {"makensis", "makensis", false, "nsis", "Install the package nsis.",
       "Download the installer of NSIS, run it and choose makensis.exe in its folder.",
       "https://nsis.sourceforge.io/"},
      {"contour-tool", "the contour tool", false, "", "It is a part of Ferrowen: ferrowen-contours.",
       "It is a part of Ferrowen: ferrowen-contours.exe.", ""},
      {"basecamp", "BaseCamp", false, "", "Install Garmin BaseCamp with Wine.",
       "Download the installer of Garmin BaseCamp and run it.", "https://www.garmin.com/"},
      {"mapsource", "MapSource", false, "", "Install Garmin MapSource with Wine.",
       "MapSource came with older Garmin maps and devices; BaseCamp does the same today.",
       "https://www.garmin.com/"},
      {"editor", "a text editor", false, "", "Any text editor; blank: the desktop's own.",
       "Any text editor; blank: Notepad.", ""},
      {"typ-editor", "a TYP editor", false, "", "Any editor for TYP files, with Wine when it needs Windows.",
       "Any editor for TYP files.", ""},
  };
  return advice;
}

const ToolAdvice* find_tool_advice(std::string_view field) {
  const auto found = std::find_if(tool_advice().begin(), tool_advice().end(),
                                  [&](const ToolAdvice& advice) { return advice.field == field; });
  return found == tool_advice().end() ? nullptr : &*found;
}

ToolReport tool_state(Workspace& workspace, Prompts& prompts, Progress& progress, std::string_view field) {
  ToolReport report;
  report.advice = find_tool_advice(field);
  if (report.advice == nullptr) return report;
  report.path = set_path(workspace.settings, field);
  if (report.path.empty()) {
    report.problem = not_set_text(workspace, *report.advice);
    return report;
  }
  if (!file_exists(report.path)) {
    report.state = ToolState::missing;
    report.problem = workspace.message(message_cannot_find) + report.path;
    return report;
  }
  const Question question = question_for(field);
  if (folder_exists(report.path)) {
    report.state = ToolState::wrong_program;
    report.problem = "You have selected:\r\n" + platform::name_of(report.path);
  } else if (question.kind == Kind::not_asked) {
    report.state = ToolState::found;
  } else {
    ask_version(workspace, prompts, progress, question, report);
  }
  return report;
}

std::vector<ToolReport> tool_states(Workspace& workspace, Prompts& prompts, Progress& progress) {
  std::vector<ToolReport> reports;
  for (const ToolAdvice& advice : tool_advice())
    reports.push_back(tool_state(workspace, prompts, progress, advice.field));
  return reports;
}

}  // namespace ferrowen
