#include "styletools/typ_compiler.hpp"

#include <charconv>
#include <filesystem>
#include <random>
#include <system_error>

#include "app/tool_query.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr const char* compiler_class = "uk.me.parabola.mkgmap.main.TypCompiler";
constexpr std::string_view error_word = "Error: (";
constexpr std::string_view warning_word = "Warning: ";
constexpr int message_locate_mkgmap = 46, message_cannot_find = 89, message_no_java = 109;

// The section that a line of a TYP text stands in, with its type.
std::string section_of(std::string_view text, std::size_t line) {
  const std::vector<std::string> all = split_lines(text);
  std::size_t begin = std::min(line, all.size());
  while (begin > 0 && !trim(all[begin - 1]).starts_with("[_"))
    --begin;
  if (begin == 0) return "";
  std::string section(trim(all[begin - 1]));
  for (std::size_t at = begin; at < all.size() && !trim(all[at]).starts_with("["); ++at)
    if (trim(all[at]).starts_with("Type=")) return section + " " + std::string(trim(all[at]));
  return section;
}

// "Error: (name.txt:16): text"; a name may hold brackets and colons, so the last "):" before the text counts.
void read_error(TypCheck& check, std::string_view line, std::string_view text) {
  check.message = trim(line);
  const std::size_t end = line.find("): ");
  const std::size_t colon = end == std::string_view::npos ? end : line.rfind(':', end);
  if (end == std::string_view::npos || colon == std::string_view::npos) return;
  const std::string_view digits = line.substr(colon + 1, end - colon - 1);
  if (std::from_chars(digits.data(), digits.data() + digits.size(), check.line).ec != std::errc()) return;
  check.message = trim(line.substr(end + 3));
  check.section = section_of(text, check.line);
}

std::string missing_part(Workspace& workspace) {
  const std::string& jar = workspace.settings.mkgmap_jar;
  if (!has_java(workspace.settings)) return workspace.message(message_no_java);
  if (trim(jar).empty()) return workspace.message(message_locate_mkgmap);
  if (!file_exists(jar)) return workspace.message(message_cannot_find) + jar;
  return "";
}

}  // namespace

TypCheck read_typ_compiler_output(std::string_view output, std::string_view text, bool compiled) {
  TypCheck check;
  std::string first_line;
  for (const std::string& line : split_lines(output)) {
    if (line.starts_with(warning_word)) check.warnings.push_back(line.substr(warning_word.size()));
    if (line.starts_with(error_word) && check.message.empty()) read_error(check, line, text);
    if (first_line.empty() && !line.starts_with(warning_word)) first_line = trim(line);
  }
  check.accepted = compiled && check.message.empty();
  if (!check.accepted && check.message.empty())
    check.message =
        first_line.empty() ? "mkgmap has not compiled the text and says nothing about it" : first_line;
  return check;
}

Result<std::string> scratch_path(const std::string& ending) {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) return failed<std::string>("There is no folder for scratch files: " + error.message());
  std::random_device random;
  std::string path;
  do {
    path = platform::join(platform::path_text(folder),
                          "ferrowen-" + std::to_string(random()) + std::to_string(random()) + ending);
  } while (file_exists(path));
  return {path, ""};
}

TypCheck check_typ_text(Workspace& workspace, Prompts& prompts, Progress& progress, const std::string& path) {
  TypCheck check;
  check.not_checked = missing_part(workspace);
  if (!check.not_checked.empty()) return check;
  const Result<std::string> scratch = scratch_path(".typ");
  if (!scratch.ok()) {
    check.not_checked = scratch.error;
    return check;
  }
  const std::string& compiled = scratch.value;
  const Result<std::string> output =
      ask_tool(workspace, prompts, progress,
               {"java", "-cp", platform::absolute(workspace.settings.mkgmap_jar), compiler_class,
                platform::absolute(path), platform::absolute(compiled)});
  // A text that is accepted leaves a file and no output at all.
  const bool made = file_has_content(compiled);
  check = read_typ_compiler_output(output.value, read_whole_file(path), made);
  if (!output.ok() && !made) check.message = output.error;
  if (const Status removed = remove_file(compiled); !removed.ok()) check.warnings.push_back(removed.error);
  return check;
}

std::string check_text(const TypCheck& check) {
  std::string place = check.line > 0 ? "Line " + std::to_string(check.line) : "";
  if (!check.section.empty()) place += (place.empty() ? "" : ", ") + check.section;
  return place.empty() ? check.message : place + ": " + check.message;
}

}  // namespace ferrowen
