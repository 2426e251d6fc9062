#include "styletools/typ_generator.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/other_programs.hpp"
#include "platform/paths.hpp"
#include "styletools/typ_text.hpp"

namespace ferrowen {

namespace {

constexpr const char* no_style = "No style selected.";
constexpr const char* no_files = "No files found.";
constexpr const char* invalid_family_id = "Invalid FID. (1 - 65000)";
constexpr const char* locate_editor = "Locate Tyvask in Settings to load file.";

// In the order in which they have always been named.
std::vector<RuleKind> missing_kinds(const StyleLocation& style) {
  std::vector<RuleKind> missing;
  for (const RuleKind kind : {RuleKind::lines, RuleKind::points, RuleKind::polygons})
    if (!has_rule_file(style, kind)) missing.push_back(kind);
  return missing;
}

bool rule_files_suffice(const SheetRequest& request, Prompts& prompts) {
  const std::vector<RuleKind> missing = missing_kinds(request.style);
  for (const RuleKind kind : missing)
    prompts.tell("missing " + std::string(rule_file_name(kind)), Icon::warning);
  return missing.empty() || (request.complete && missing.size() < rule_kinds.size());
}

void add_problems(const StyleText& text, const std::vector<StyleProblem>& problems,
                  std::vector<std::string>& lines) {
  for (const StyleProblem& problem : problems) {
    const bool known = problem.place.file < text.files.size();
    const std::string place = !problem.path.empty() ? problem.path
                              : known               ? text.files[problem.place.file].name
                                                    : std::string(rule_file_name(text.kind));
    lines.push_back(place + (problem.place.line > 0 ? ":" + std::to_string(problem.place.line) : "") + ": " +
                    problem.text);
  }
}

// What was wrong does not stop the generation, and is no secret either: one message, however much it is.
void tell_problems(std::vector<std::string> lines, Prompts& prompts) {
  constexpr std::size_t most_lines = 20;
  if (lines.empty()) return;
  const std::size_t left_out = lines.size() - std::min(lines.size(), most_lines);
  lines.resize(lines.size() - left_out);
  if (left_out > 0) lines.push_back(std::to_string(left_out) + " more");
  prompts.tell(join_texts(lines, crlf), Icon::warning);
}

Sheet read_sheet_telling(const SheetRequest& request, Prompts* prompts) {
  Sheet sheet;
  std::vector<std::string> problems;
  sheet.family_id = valid_family_id(request.family_id).value_or(0);
  sheet.complete = request.complete;
  add_problems({}, style_problems(request.style), problems);
  for (const RuleKind kind : rule_kinds) {
    const StyleText text = chknodata(request.style, kind);
    const StyleRules rules = get_styletypes(text);
    sheet.types.at(static_cast<std::size_t>(kind)) = get_types(rules);
    add_problems(text, text.problems, problems);
    add_problems(text, rules.problems, problems);
  }
  IconFolder icons = bmp(request.icon_folder);
  sheet.icons = std::move(icons.icons);
  problems.insert(problems.end(), icons.problems.begin(), icons.problems.end());
  if (prompts != nullptr) tell_problems(std::move(problems), *prompts);
  return sheet;
}

}  // namespace

std::optional<int> valid_family_id(const std::string& text) {
  const std::string_view digits = trim(text);
  const auto number = is_digits(digits) ? exact_whole_number(digits) : std::nullopt;
  if (!number || *number < smallest_family_id || *number > largest_family_id) return std::nullopt;
  return static_cast<int>(*number);
}

std::string kinds_present(const StyleLocation& style) {
  std::string present;
  if (has_rule_file(style, RuleKind::points)) present += "p";
  if (has_rule_file(style, RuleKind::lines)) present += "l";
  if (has_rule_file(style, RuleKind::polygons)) present += "g";
  return present;
}

Sheet read_sheet(const SheetRequest& request) { return read_sheet_telling(request, nullptr); }

std::optional<Sheet> create_sheet(const SheetRequest& request, Prompts& prompts) {
  const std::string& folder = request.style.folder;
  if (folder.empty()) {
    prompts.tell(no_style, Icon::warning);
    return std::nullopt;
  }
  if (!folder_exists(folder) || list_files(folder, {""}).empty()) {
    prompts.tell(no_files, Icon::warning);
    return std::nullopt;
  }
  if (!rule_files_suffice(request, prompts)) return std::nullopt;
  if (!valid_family_id(request.family_id)) {
    prompts.tell(invalid_family_id, Icon::warning);
    return std::nullopt;
  }
  return read_sheet_telling(request, &prompts);
}

Status append_(const std::string& path, const Sheet& sheet) {
  const Result<std::string> bytes = encode_typ_text(sheet_text(sheet), sheet_code_page);
  if (!bytes.ok()) return {path + ": " + bytes.error};
  return safe_write(path, bytes.value);
}

void open_in_typ_editor(const Workspace& workspace, const std::string& path, Prompts& prompts) {
  const std::string& editor = workspace.settings.typ_editor;
  if (trim(editor).empty() || !file_exists(editor)) {
    prompts.tell(locate_editor + std::string(crlf) + std::string(crlf) + path);
    return;
  }
  const std::string error = platform::start_detached({editor, path}, platform::folder_of(path), {});
  if (!error.empty()) prompts.tell(editor + ": " + error, Icon::critical);
}

}  // namespace ferrowen
