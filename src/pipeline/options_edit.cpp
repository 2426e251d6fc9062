#include "pipeline/options_edit.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "pipeline/options_text.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t nowhere = std::string_view::npos;

// Lines of the first <dem> block and of the end mark; nowhere when the text has none.
struct Marks {
  std::size_t open = nowhere, close = nowhere, end = nowhere;
};

Marks marks_of(const std::vector<std::string>& lines) {
  Marks marks;
  for (std::size_t i = 0; i < lines.size() && marks.end == nowhere; ++i) {
    const DemMark mark = dem_mark(lines[i]);
    if (contains(lines[i], "##")) marks.end = i;
    if (mark == DemMark::opens && marks.open == nowhere) marks.open = i;
    if (mark == DemMark::closes && marks.open != nowhere && marks.close == nowhere) marks.close = i;
  }
  return marks;
}

// The line that a new option goes in front of.
std::size_t free_line(const std::vector<std::string>& lines, std::size_t cursor_line, const Marks& marks) {
  std::size_t line = std::min(cursor_line, lines.size());
  if (line < lines.size() && !trim(lines[line]).empty()) ++line;
  if (marks.open != nowhere && line > marks.open) {
    if (marks.close == nowhere) line = marks.open;  // everything behind it would be in the block
    if (marks.close != nowhere && line <= marks.close) line = marks.close + 1;
  }
  return marks.end == nowhere ? line : std::min(line, marks.end);
}

// Behind the last line of the block that holds something.
std::size_t end_of_block(const std::vector<std::string>& lines, const Marks& marks) {
  std::size_t line = std::min({marks.close, marks.end, lines.size()});
  while (line > marks.open + 1 && trim(lines[line - 1]).empty())
    --line;
  return line;
}

std::string option_text(const CatalogueOption& option) {
  if (option.kind == OptionKind::flag) return option.name;
  return option.name + "=" + option.hint;
}

bool holds_option(const std::string& line) {
  const std::size_t begin = line.find_first_not_of("# \t");
  return begin != std::string::npos && line[begin] == '-';
}

}  // namespace

bool is_dem_option(const CatalogueOption& option) {
  return option.name.starts_with("--dem") || contains(option.section, "DEM");
}

OptionInsertion option_insertion(std::string_view text, std::size_t cursor_line,
                                 const CatalogueOption& option, bool in_dem_block) {
  const std::vector<std::string> lines = split_lines(text);
  const Marks marks = marks_of(lines);
  const bool has_block = marks.open != nowhere && (marks.end == nowhere || marks.open < marks.end);
  OptionInsertion insertion;
  const bool into_block = in_dem_block && has_block;
  insertion.line = into_block ? end_of_block(lines, marks) : free_line(lines, cursor_line, marks);
  insertion.lines = {option_text(option)};
  if (in_dem_block && !has_block) insertion.lines = {"<dem>", option_text(option), "</dem>"};
  insertion.instead = !into_block && insertion.line == cursor_line && cursor_line < lines.size() &&
                      trim(lines[cursor_line]).empty();
  const std::size_t value = option.kind == OptionKind::flag ? option.name.size() : option.name.size() + 1;
  insertion.selected = {insertion.line + insertion.lines.size() / 2, value,
                        option_text(option).size() - value};
  return insertion;
}

std::vector<std::string> toggled_comments(const std::vector<std::string>& lines) {
  const auto is_off = [](const std::string& line) { return trim(line).starts_with('#'); };
  const auto is_blank_or_off = [&](const std::string& line) { return trim(line).empty() || is_off(line); };
  const bool switch_on = std::all_of(lines.begin(), lines.end(), is_blank_or_off);
  const bool options_only = std::any_of(lines.begin(), lines.end(), holds_option);
  std::vector<std::string> toggled = lines;
  for (std::string& line : toggled) {
    if (switch_on && is_off(line) && (!options_only || holds_option(line)))
      line.erase(line.find('#'), 1);
    else if (!switch_on && !is_blank_or_off(line))
      line.insert(0, "#");
  }
  return toggled;
}

}  // namespace ferrowen
