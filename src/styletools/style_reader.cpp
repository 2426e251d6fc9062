#include "styletools/style_reader.hpp"

#include <algorithm>

#include "app/start_up.hpp"
#include "app/style_info.hpp"
#include "app/style_source.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "styletools/style_rules.hpp"

namespace ferrowen {

namespace {

constexpr const char* style_missing =
    "Cannot locate style.\r\n\r\nSelect a style or Check 'Download Essentials' on HELP menu";
constexpr const char* no_style_data = "No style data";

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

// Finds what the files of one style name.
class StyleFinder {
 public:
  explicit StyleFinder(const StyleLocation& style)
      : m_style(style),
        m_source(style.mkgmap_jar.empty() ? "" : plain_path(platform::absolute(style.mkgmap_jar))) {
    add_with_bases(style.folder, {});
  }

  // The rule files of that name, the style's own first.
  std::vector<StyleFileBytes> rule_files(std::string_view name, std::vector<StyleProblem>& unread) {
    std::vector<StyleFileBytes> files;
    for (std::size_t at = 0; at < m_folders.size(); ++at) {
      StyleFileBytes file{plain_path(path_below(m_folders[at], std::string(name))), m_folders[at], ""};
      if (m_folders[at].empty() || !m_source.has_file(file.path)) continue;
      if (at > 0) file.name = platform::name_of(m_folders[at]) + "/" + std::string(name);
      Result<std::string> bytes = m_source.read(file.path);
      if (!bytes.ok()) unread.push_back({{}, bytes.error, file.path});
      file.bytes = std::move(bytes.value);
      files.push_back(std::move(file));
    }
    return files;
  }

  std::optional<StyleFileBytes> included(const StyleInclude& include, const std::string& own_folder,
                                         std::vector<StyleProblem>& unread) {
    StyleFileBytes found;
    found.path = path_of(include, own_folder, found.folder);
    if (found.path.empty() && m_source.is_closed_book(include.style)) {
      found.note = not_read(include.name, include.style);
      found.is_broken = !m_source.problem().empty();
      return found;
    }
    if (found.path.empty()) return std::nullopt;
    Result<std::string> bytes = m_source.read(found.path);
    if (!bytes.ok()) unread.push_back({include.place, bytes.error});
    found.bytes = std::move(bytes.value);
    return found;
  }

  [[nodiscard]] bool has_any(std::string_view name) {
    return std::any_of(m_folders.begin(), m_folders.end(), [&](const std::string& folder) {
      return !folder.empty() && m_source.has_file(plain_path(path_below(folder, std::string(name))));
    });
  }

  std::vector<StyleProblem> problems;  // of the styles that it is based on

 private:
  [[nodiscard]] std::string not_read(const std::string& what, const std::string& style) const {
    const std::string& problem = m_source.problem();
    return "'" + what + "' is taken from mkgmap's own style '" + style +
           "'; it is not read, because mkgmap.jar is " +
           (problem.empty() ? "not known." : "broken: " + problem);
  }

  // The style's own folder first, then the styles folder; with "from" the folder of that style.
  std::string path_of(const StyleInclude& include, const std::string& own_folder, std::string& folder) {
    folder = own_folder;
    if (!include.style.empty()) {
      folder = style_folder(include.style, own_folder);
      std::string path = folder.empty() ? "" : plain_path(path_below(folder, include.name));
      return !path.empty() && m_source.has_file(path) ? path : "";
    }
    for (const std::string& place : {own_folder, m_style.styles_folder}) {
      std::string path = plain_path(path_below(place, include.name));
      if (!place.empty() && m_source.has_file(path)) return path;
    }
    return "";
  }

  // In the styles folder, beside the style that names it, among mkgmap's own styles.
  std::string style_folder(const std::string& name, const std::string& own_folder) {
    for (const std::string& styles : {m_style.styles_folder, platform::folder_of(own_folder)}) {
      std::string folder = path_below(styles, name);
      if (!styles.empty() && m_source.has_folder(folder)) return folder;
    }
    return m_source.built_in(name);
  }

  // mkgmap reads the rules of the bases behind those of the style, the base that is named last first.
  void add_with_bases(const std::string& folder, const StyleProblem& named) {
    constexpr std::size_t most_styles = 32;
    if (std::find(m_open.begin(), m_open.end(), folder) != m_open.end()) {
      StyleProblem again = named;
      again.text = "The style is based on itself.";
      return problems.push_back(std::move(again));
    }
    const bool is_known = std::find(m_folders.begin(), m_folders.end(), folder) != m_folders.end();
    if (is_known || m_folders.size() >= most_styles) return;
    m_folders.push_back(folder);
    m_open.push_back(folder);
    follow_bases(folder);
    m_open.pop_back();
  }

  void follow_bases(const std::string& folder) {
    const std::string info = path_below(folder, "info");
    if (folder.empty() || !m_source.has_file(info)) return;
    const Result<std::string> text = m_source.read(info);
    if (!text.ok()) problems.push_back({{}, text.error, info});
    std::vector<BaseStyle> bases = base_styles(text.value);
    std::reverse(bases.begin(), bases.end());
    for (const BaseStyle& base : bases) {
      const std::string below = style_folder(base.name, folder);
      StyleProblem problem{{0, base.line}, "The base style '" + base.name + "' is missing.", info};
      if (below.empty() && m_source.is_closed_book(base.name))
        problems.push_back(
            {problem.place, not_read("base-style", base.name), info, m_source.problem().empty()});
      else if (below.empty())
        problems.push_back(std::move(problem));
      else
        add_with_bases(below, problem);
    }
  }

  const StyleLocation& m_style;
  StyleSource m_source;
  std::vector<std::string> m_open;     // styles whose bases are being followed
  std::vector<std::string> m_folders;  // of the style and of those that it is based on
};

StyleText read_rules(const StyleLocation& style, RuleKind kind, std::string_view name) {
  StyleFinder finder(style);
  std::vector<StyleProblem> unread;
  const IncludeSource source = [&](const StyleInclude& include, const std::string& own_folder) {
    return finder.included(include, own_folder, unread);
  };
  StyleText text = read_style_text(kind, finder.rule_files(name, unread), source);
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
  StyleLocation style{"", settings.styles_folder};
  if (!is_path && !name_or_path.empty() && folder_exists(in_folder))
    style.folder = in_folder;
  else if (!name_or_path.empty())
    style = style_in_folder(name_or_path);
  style.mkgmap_jar = settings.mkgmap_jar;
  return style;
}

StyleLocation style_in_folder(const std::string& path) {
  std::string folder = platform::absolute(path);
  while (folder.size() > 1 && (folder.ends_with('/') || folder.ends_with(platform::separator)))
    folder.pop_back();
  return {folder, platform::folder_of(folder)};
}

StyleText chknodata(const StyleLocation& style, RuleKind kind) {
  return read_rules(style, kind, rule_file_name(kind));
}

StyleText read_relations(const StyleLocation& style) {
  return read_rules(style, RuleKind::lines, "relations");
}

std::vector<StyleProblem> style_problems(const StyleLocation& style) {
  std::vector<StyleProblem> problems = StyleFinder(style).problems;
  const StyleText relations = read_relations(style);
  const StyleRules rules = get_styletypes(relations);
  for (const auto* found : {&relations.problems, &rules.problems}) {
    for (StyleProblem problem : *found) {
      if (problem.path.empty() && problem.place.file < relations.files.size())
        problem.path = relations.files[problem.place.file].path;
      problems.push_back(std::move(problem));
    }
  }
  return problems;
}

bool has_rule_file(const StyleLocation& style, RuleKind kind) {
  return StyleFinder(style).has_any(rule_file_name(kind));
}

void tell_unread(const StyleText& text, Prompts& prompts) {
  if (!text.unread.empty()) prompts.tell(join_texts(text.unread, crlf), Icon::warning);
}

void nodata(const StyleLocation& style, Prompts& prompts) {
  const bool is_there = !style.folder.empty() && folder_exists(style.folder);
  prompts.tell(is_there ? no_style_data : style_missing, Icon::warning);
}

}  // namespace ferrowen
