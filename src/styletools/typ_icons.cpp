// Icons that users keep as files.
#include <algorithm>
#include <charconv>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "styletools/style_rules.hpp"
#include "styletools/typ_drawings.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view icon_header = "16 16 2 1";
constexpr std::size_t icon_size = 16;
constexpr std::uint64_t largest_icon_file = 1ULL << 16;

// What stands between the quotes of an XPM line, or the line itself.
std::string_view without_quotes(std::string_view line) {
  const std::size_t from = line.find('"');
  if (from == std::string_view::npos) return trim(line);
  line.remove_prefix(from + 1);
  return line.substr(0, line.find('"'));
}

// "0 c #1CA9DE": the character of the pixels, and the colour.
struct ColourLine {
  char pixel = ' ';
  std::string colour;
};

std::optional<ColourLine> parse_colour_line(std::string_view line) {
  constexpr std::string_view separator = " c ";
  if (line.size() < 1 + separator.size() || line.substr(1, separator.size()) != separator)
    return std::nullopt;
  const std::string_view colour = trim(line.substr(1 + separator.size()));
  const bool is_colour =
      colour.size() == 7 && colour.front() == '#' &&
      std::all_of(colour.begin() + 1, colour.end(), [](char digit) {
        return std::string_view("0123456789abcdefABCDEF").find(digit) != std::string_view::npos;
      });
  if (!is_colour && !equal_ignoring_case(colour, "none")) return std::nullopt;
  return ColourLine{line.front(), is_colour ? std::string(colour) : "none"};
}

std::optional<std::string> type_of_name(std::string_view name) {
  name = name.substr(0, name.rfind('.'));
  if (name.starts_with("0x") || name.starts_with("0X")) name.remove_prefix(2);
  std::uint32_t type = 0;
  const auto end = std::from_chars(name.data(), name.data() + name.size(), type, 16);
  if (end.ec != std::errc() || end.ptr != name.data() + name.size() || type == 0) return std::nullopt;
  return written_type_key(type);
}

}  // namespace

std::optional<SheetPattern> parse_icon(std::string_view text) {
  std::vector<std::string> lines;
  for (const std::string& line : split_lines(text))
    if (const std::string_view part = without_quotes(line); !part.empty() && part.front() != ';')
      lines.emplace_back(part);
  if (lines.size() < 3 + icon_size || lines[0] != icon_header) return std::nullopt;
  const auto first = parse_colour_line(lines[1]);
  const auto second = parse_colour_line(lines[2]);
  if (!first || !second || first->pixel == second->pixel) return std::nullopt;
  SheetPattern icon{static_cast<int>(icon_size), {first->colour, second->colour}, {}};
  for (std::size_t row = 0; row < icon_size; ++row) {
    std::string pixels = lines[3 + row];
    if (pixels.size() != icon_size) return std::nullopt;
    for (char& pixel : pixels) {
      if (pixel != first->pixel && pixel != second->pixel) return std::nullopt;
      pixel = pixel == first->pixel ? '0' : '1';
    }
    icon.rows.push_back(std::move(pixels));
  }
  return icon;
}

IconFolder bmp(const std::string& folder) {
  IconFolder found;
  if (!folder_exists(folder)) return found;
  for (const std::string& name : list_files(folder, {".txt"})) {
    const std::optional<std::string> key = type_of_name(name);
    const Result<std::string> text = read_file(platform::join(folder, name), largest_icon_file);
    const std::optional<SheetPattern> icon = text.ok() ? parse_icon(text.value) : std::nullopt;
    if (!text.ok())
      found.problems.push_back(text.error);
    else if (!key)
      found.problems.push_back(name + ": its name is no type");
    else if (!icon)
      found.problems.push_back(name + ": no icon of 16 x 16 pixels in two colours");
    else
      found.icons[*key] = *icon;
  }
  return found;
}

}  // namespace ferrowen
