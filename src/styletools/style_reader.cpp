#include "styletools/style_reader.hpp"

#include <algorithm>

#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr const char* style_missing =
    "Cannot locate style.\r\n\r\nSelect a style or Check 'Download Essentials' on HELP menu";
constexpr const char* no_style_data = "No style data";
constexpr std::uint64_t largest_style_file = 64ULL << 20;

// Styles are written with either separator, whatever the system.
std::string path_below(const std::string& folder, std::string name) {
  std::replace(name.begin(), name.end(), '\\', platform::separator);
  std::replace(name.begin(), name.end(), '/', platform::separator);
  return platform::join(folder, name);
}

// One spelling for each file, so that "inc/a" and "./inc/../inc/a" are known to be the same.
std::string plain_path(const std::string& path) {
  return platform::path_text(platform::file_system_path(path).lexically_normal());
}

bool is_file(const std::string& path) { return file_exists(path) && !folder_exists(path); }

// The style's own folder first, then the styles folder; with "from" the folder of that style.
std::string find_included(const StyleInclude& include, const std::string& own_folder,
                          const std::string& styles_folder, std::string& folder) {
  folder = own_folder;
  if (!include.style.empty()) {
    folder = path_below(styles_folder, include.style);
    if (!folder_exists(folder)) folder = path_below(platform::folder_of(own_folder), include.style);
    const std::string path = plain_path(path_below(folder, include.name));
    return is_file(path) ? path : "";
  }
  for (const std::string& place : {own_folder, styles_folder}) {
    const std::string path = plain_path(path_below(place, include.name));
    if (!place.empty() && is_file(path)) return path;
  }
  return "";
}

StyleText read_rule_file(const StyleLocation& style, RuleKind kind, std::string_view name) {
  std::vector<StyleProblem> unread;
  const IncludeSource source = [&](const StyleInclude& include,
                                   const std::string& own_folder) -> std::optional<StyleFileBytes> {
    StyleFileBytes found;
    found.path = find_included(include, own_folder, style.styles_folder, found.folder);
    if (found.path.empty()) return std::nullopt;
    Result<std::string> bytes = read_file(found.path, largest_style_file);
    if (!bytes.ok()) unread.push_back({include.place, bytes.error});
    found.bytes = std::move(bytes.value);
    return found;
  };
  StyleFileBytes rule_file{plain_path(path_below(style.folder, std::string(name))), style.folder, ""};
  if (style.folder.empty() || !is_file(rule_file.path)) {
    StyleText none;
    none.kind = kind;
    return none;
  }
  Result<std::string> bytes = read_file(rule_file.path, largest_style_file);
  if (!bytes.ok()) unread.push_back({{}, bytes.error});
  rule_file.bytes = std::move(bytes.value);
  StyleText text = read_style_text(kind, rule_file, source);
  for (StyleProblem& problem : unread) {
    text.unread.push_back(problem.text);
    text.problems.push_back(std::move(problem));
  }
  return text;
}

}  // namespace

std::vector<std::string> get_styles(const Settings& settings) { return style_names(settings); }

StyleLocation locate_style(const Settings& settings, const std::string& name_or_path) {
  const std::string in_folder = path_below(settings.styles_folder, name_or_path);
  const bool is_path = name_or_path.find_first_of("/\\") != std::string::npos;
  if (!is_path && !name_or_path.empty() && folder_exists(in_folder))
    return {in_folder, settings.styles_folder};
  if (name_or_path.empty()) return {"", settings.styles_folder};
  return style_in_folder(name_or_path);
}

StyleLocation style_in_folder(const std::string& path) {
  std::string folder = platform::absolute(path);
  while (folder.size() > 1 && (folder.ends_with('/') || folder.ends_with(platform::separator)))
    folder.pop_back();
  return {folder, platform::folder_of(folder)};
}

StyleText chknodata(const StyleLocation& style, RuleKind kind) {
  return read_rule_file(style, kind, rule_file_name(kind));
}

StyleText read_relations(const StyleLocation& style) {
  return read_rule_file(style, RuleKind::lines, "relations");
}

void tell_unread(const StyleText& text, Prompts& prompts) {
  if (!text.unread.empty()) prompts.tell(join_texts(text.unread, crlf), Icon::warning);
}

void nodata(const StyleLocation& style, Prompts& prompts) {
  const bool is_there = !style.folder.empty() && folder_exists(style.folder);
  prompts.tell(is_there ? no_style_data : style_missing, Icon::warning);
}

}  // namespace ferrowen
