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

char kind_letter(RuleKind kind) {
  switch (kind) {
    case RuleKind::points:
      return 'p';
    case RuleKind::lines:
      return 'l';
    case RuleKind::polygons:
      break;
  }
  return 'g';
}

bool rule_files_suffice(const SheetRequest& request, Prompts& prompts) {
  const std::vector<std::string> missing = missing_files(kinds_present(request.style));
  for (const std::string& text : missing)
    prompts.tell(text, Icon::warning);
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

}  // namespace

std::optional<int> valid_family_id(const std::string& text) {
  const std::string_view digits = trim(text);
  const auto number = is_digits(digits) ? exact_whole_number(digits) : std::nullopt;
  if (!number || *number < smallest_family_id || *number > largest_family_id) return std::nullopt;
  return static_cast<int>(*number);
}

std::string kinds_present(const StyleLocation& style) {
  std::string present;
  for (const RuleKind kind : {RuleKind::points, RuleKind::lines, RuleKind::polygons})
    if (has_rule_file(style, kind)) present += kind_letter(kind);
  return present;
}

std::vector<std::string> missing_files(const std::string& kinds) {
  std::vector<std::string> missing;
  for (const RuleKind kind : {RuleKind::lines, RuleKind::points, RuleKind::polygons})
    if (!contains(kinds, std::string(1, kind_letter(kind))))
      missing.push_back("missing " + std::string(rule_file_name(kind)));
  return missing;
}

SheetSource read_sheet_source(const SheetRequest& request) {
  SheetSource source;
  source.kinds = kinds_present(request.style);
  add_problems({}, style_problems(request.style), source.problems);
  for (const RuleKind kind : rule_kinds) {
    const StyleText text = chknodata(request.style, kind);
    const StyleRules rules = get_styletypes(text);
    source.types.at(static_cast<std::size_t>(kind)) = get_types(rules);
    add_problems(text, text.problems, source.problems);
    add_problems(text, rules.problems, source.problems);
    for (const StyleFile& file : text.files)
      source.files.push_back(file.path);
  }
  IconFolder icons = bmp(request.icon_folder);
  source.icons = std::move(icons.icons);
  source.problems.insert(source.problems.end(), icons.problems.begin(), icons.problems.end());
  return source;
}

Sheet make_sheet(const SheetSource& source, const SheetRequest& request) {
  Sheet sheet;
  sheet.family_id = valid_family_id(request.family_id).value_or(0);
  sheet.complete = request.complete;
  sheet.types = source.types;
  sheet.icons = source.icons;
  return sheet;
}

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
  SheetSource source = read_sheet_source(request);
  tell_problems(std::move(source.problems), prompts);
  return make_sheet(source, request);
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
