// What was wrong in a file, for a person: the first few findings with their place, and how many more there
// were.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

class ProblemList {
 public:
  // `text` is the file that the offsets belong to; it must outlive the list.
  explicit ProblemList(std::string_view text = {}) : m_text(text) {}

  // Offsets must not decrease from call to call: lines are counted only once.
  void add_at(std::size_t offset, std::string_view problem);
  void add(std::string_view problem);
  [[nodiscard]] std::size_t count() const { return m_count; }
  // One line per finding; the last one says how many were not listed.
  [[nodiscard]] std::vector<std::string> lines() const;

 private:
  bool is_full();

  std::string_view m_text;
  std::vector<std::string> m_lines;
  std::size_t m_count = 0, m_counted_to = 0, m_line = 1;
};

}  // namespace ferrowen
