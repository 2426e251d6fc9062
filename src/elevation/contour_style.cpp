#include "elevation/contour_style.hpp"

#include <algorithm>
#include <array>
#include <compare>
#include <set>
#include <vector>

#include "app/style_info.hpp"
#include "app/style_source.hpp"
#include "base/encoding.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view built_in = "default";
// The files that the map compiler reads; it reads others where these include them.
constexpr std::array<std::string_view, 4> rule_files = {"lines", "relations", "polygons", "points"};

bool speaks_of_contours(const std::string& text) {
  const std::vector<std::string> lines = split_lines(text);
  return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
    const std::string_view rule = trim(std::string_view(line).substr(0, line.find('#')));
    return !rule.starts_with("include") && contains_ignoring_case(rule, "contour");
  });
}

// A file of rules in a style.
struct RuleFile {
  std::string style, name;
  // NOLINTNEXTLINE(modernize-use-nullptr): the 0 that the compiler compares with is no pointer.
  auto operator<=>(const RuleFile&) const = default;
};

std::vector<RuleFile> includes_of(const std::string& text, const std::string& style) {
  std::vector<RuleFile> files;
  for (const std::string& line : split_lines(text)) {
    const IncludeWords words = include_words(line);
    if (!words.name.empty())
      files.push_back({std::string(words.style.empty() ? style : words.style), std::string(words.name)});
  }
  return files;
}

class StyleSearch {
 public:
  explicit StyleSearch(const Settings& settings)
      : m_folder(settings.styles_folder), m_source(settings.mkgmap_jar) {}

  bool style_draws(const std::string& style) {
    if (!m_styles.insert(style).second) return false;
    const auto draws = [&](std::string_view name) { return file_draws({style, std::string(name)}); };
    if (std::any_of(rule_files.begin(), rule_files.end(), draws)) return true;
    const std::vector<BaseStyle> bases = base_styles(text_of({style, "info"}));
    return std::any_of(bases.begin(), bases.end(),
                       [&](const BaseStyle& base) { return style_draws(base.name); });
  }

 private:
  bool file_draws(const RuleFile& file) {
    // Without the archive of the map compiler.
    const bool is_unread = file.style == built_in && folder_of(file.style).empty();
    if (is_unread) return file.name == "lines" || contains(file.name, "contour");
    if (!m_files.insert(file).second) return false;
    const std::string text = text_of(file);
    if (speaks_of_contours(text)) return true;
    const std::vector<RuleFile> further = includes_of(text, file.style);
    return std::any_of(further.begin(), further.end(), [&](const RuleFile& one) { return file_draws(one); });
  }

  std::string folder_of(const std::string& style) {
    std::string folder = platform::join(m_folder, style);
    return m_source.has_folder(folder) ? folder : m_source.built_in(style);
  }

  // Names are written with either separator, whatever the system. What cannot be read is told by the map
  // compiler.
  std::string text_of(const RuleFile& file) {
    const std::string folder = folder_of(file.style);
    std::string name = file.name;
    std::replace(name.begin(), name.end(), '\\', platform::separator);
    std::replace(name.begin(), name.end(), '/', platform::separator);
    return folder.empty() ? "" : decode_tool_text(m_source.read(platform::join(folder, name)).value);
  }

  std::string m_folder;
  StyleSource m_source;
  std::set<std::string> m_styles;
  std::set<RuleFile> m_files;
};

}  // namespace

bool draws_contours(const Settings& settings) { return StyleSearch(settings).style_draws(settings.style); }

}  // namespace ferrowen
