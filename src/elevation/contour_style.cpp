#include "elevation/contour_style.hpp"

#include <algorithm>
#include <array>
#include <compare>
#include <set>
#include <vector>

#include "app/style_info.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
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
  auto operator<=>(const RuleFile&) const = default;
};

// Words of a statement, each perhaps in quotes of either kind.
std::vector<std::string> words_of(std::string_view text) {
  std::vector<std::string> words;
  while (!(text = trim(text)).empty()) {
    const bool quoted = text[0] == '"' || text[0] == '\'';
    const std::size_t begin = quoted ? 1 : 0;
    const std::size_t end = quoted ? text.find(text[0], begin) : text.find_first_of(" \t");
    words.emplace_back(text.substr(begin, end == std::string_view::npos ? end : end - begin));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + begin);
  }
  return words;
}

// What `include 'inc/roads';` and `include lines from default;` name.
std::vector<RuleFile> includes_of(const std::string& text, const std::string& style) {
  std::vector<RuleFile> files;
  for (const std::string& line : split_lines(text)) {
    const std::string_view statement = trim(std::string_view(line).substr(0, line.find_first_of("#;")));
    const std::vector<std::string> words = words_of(statement);
    if (words.size() < 2 || words[0] != "include") continue;
    files.push_back({words.size() > 3 && words[2] == "from" ? words[3] : style, words[1]});
  }
  return files;
}

class StyleSearch {
 public:
  explicit StyleSearch(std::string folder) : m_folder(std::move(folder)) {}

  bool style_draws(const std::string& style) {
    if (!m_styles.insert(style).second) return false;
    const auto draws = [&](std::string_view name) { return file_draws({style, std::string(name)}); };
    if (std::any_of(rule_files.begin(), rule_files.end(), draws)) return true;
    const std::string info = platform::join(platform::join(m_folder, style), "info");
    const std::vector<BaseStyle> bases = base_styles(read_whole_file(info));
    return std::any_of(bases.begin(), bases.end(),
                       [&](const BaseStyle& base) { return style_draws(base.name); });
  }

 private:
  bool file_draws(const RuleFile& file) {
    if (file.style == built_in) return file.name == "lines" || contains(file.name, "contour");
    if (!m_files.insert(file).second) return false;
    const std::string path = platform::join(platform::join(m_folder, file.style), file.name);
    const std::string text = decode_tool_text(read_whole_file(path));
    if (speaks_of_contours(text)) return true;
    const std::vector<RuleFile> further = includes_of(text, file.style);
    return std::any_of(further.begin(), further.end(), [&](const RuleFile& one) { return file_draws(one); });
  }

  std::string m_folder;
  std::set<std::string> m_styles;
  std::set<RuleFile> m_files;
};

}  // namespace

bool draws_contours(const Settings& settings) {
  return StyleSearch(settings.styles_folder).style_draws(settings.style);
}

}  // namespace ferrowen
