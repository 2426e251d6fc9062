#include "cli/table.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "cli/terminal.hpp"

namespace ferrowen {

namespace {

std::string padded(const std::string& cell, std::size_t width, Table::Align align) {
  const std::string blanks(width - std::min(width, text_width(cell)), ' ');
  return align == Table::Align::right ? blanks + cell : cell + blanks;
}

}  // namespace

void Table::add(std::vector<std::string> cells) {
  cells.resize(m_columns.size());
  for (std::string& cell : cells)
    cell = replace_all(terminal_text(cell), "\n", " ");
  m_rows.push_back(std::move(cells));
}

std::string Table::text() const {
  const std::vector<std::size_t> wide = widths();
  std::vector<std::string> headings;
  for (const Column& column : m_columns)
    headings.push_back(column.heading);
  const bool headed = std::any_of(headings.begin(), headings.end(),
                                  [](const std::string& heading) { return !heading.empty(); });
  std::string text = headed ? line(headings, wide) : "";
  for (const auto& row : m_rows)
    text += line(row, wide);
  return text;
}

std::vector<std::size_t> Table::widths() const {
  std::vector<std::size_t> wide;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    wide.push_back(text_width(m_columns[i].heading));
    for (const auto& row : m_rows)
      wide.back() = std::max(wide.back(), text_width(row[i]));
  }
  return wide;
}

std::string Table::line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const {
  std::string text;
  for (std::size_t i = 0; i < cells.size(); ++i)
    text += (i == 0 ? "" : "  ") + padded(cells[i], widths[i], m_columns[i].align);
  text.erase(text.find_last_not_of(' ') + 1);
  return text + "\n";
}

std::string size_text(unsigned long long bytes) {
  constexpr double step = 1000;
  if (static_cast<double>(bytes) < step) return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
  double size = static_cast<double>(bytes) / step;
  for (const char* unit : {"kB", "MB", "GB"}) {
    // 999.95 would be shown as 1000.0 of this unit.
    if (size < step - 0.05) return fixed_text(size, 1) + " " + unit;
    size /= step;
  }
  return fixed_text(size, 1) + " TB";
}

}  // namespace ferrowen
