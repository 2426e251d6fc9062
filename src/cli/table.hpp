// A plain text table: columns as wide as their widest cell, two blanks between them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

class Table {
 public:
  enum class Align : unsigned char { left, right };
  struct Column {
    std::string heading;
    Align align = Align::left;
  };
  explicit Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}
  // One cell per column; missing ones are blank.
  void add(std::vector<std::string> cells);
  // Headings (when one is not blank) and rows, each ended by LF and without blanks at its end.
  [[nodiscard]] std::string text() const;

 private:
  [[nodiscard]] std::vector<std::size_t> widths() const;
  [[nodiscard]] std::string line(const std::vector<std::string>& cells,
                                 const std::vector<std::size_t>& widths) const;

  std::vector<Column> m_columns;
  std::vector<std::vector<std::string>> m_rows;
};

// "1.4 MB", "812 bytes"; decimal units, as file managers show them.
std::string size_text(unsigned long long bytes);

}  // namespace ferrowen
