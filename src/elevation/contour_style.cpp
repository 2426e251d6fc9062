#include "elevation/contour_style.hpp"

#include <algorithm>
#include <set>
#include <vector>

#include "app/style_info.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view built_in = "default";
constexpr int deepest_folder = 5;

std::vector<std::string> rule_files(const std::string& folder, int depth = 0) {
  std::vector<std::string> paths;
  for (const std::string& name : list_files(folder, {""}))
    paths.push_back(platform::join(folder, name));
  if (depth >= deepest_folder) return paths;
  for (const std::string& name : list_folders(folder)) {
    const std::string path = platform::join(folder, name);
    if (platform::is_link(path)) continue;
    const std::vector<std::string> below = rule_files(path, depth + 1);
    paths.insert(paths.end(), below.begin(), below.end());
  }
  return paths;
}

bool speaks_of_contours(const std::string& text) {
  const std::vector<std::string> lines = split_lines(text);
  return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
    return contains_ignoring_case(line.substr(0, line.find('#')), "contour");
  });
}

bool style_draws(const std::string& styles_folder, const std::string& style, std::set<std::string>& seen) {
  if (style == built_in) return true;
  if (!seen.insert(style).second) return false;
  const std::string folder = platform::join(styles_folder, style);
  for (const std::string& path : rule_files(folder)) {
    const std::string text = decode_tool_text(read_whole_file(path));
    if (speaks_of_contours(text)) return true;
  }
  const std::vector<BaseStyle> bases = base_styles(read_whole_file(platform::join(folder, "info")));
  return std::any_of(bases.begin(), bases.end(),
                     [&](const BaseStyle& base) { return style_draws(styles_folder, base.name, seen); });
}

}  // namespace

bool draws_contours(const Settings& settings) {
  std::set<std::string> seen;
  return style_draws(settings.styles_folder, settings.style, seen);
}

}  // namespace ferrowen
