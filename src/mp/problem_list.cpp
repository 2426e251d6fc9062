#include "mp/problem_list.hpp"

#include <algorithm>

namespace ferrowen {

namespace {

constexpr std::size_t most_lines = 20;

}  // namespace

bool ProblemList::is_full() {
  ++m_count;
  return m_lines.size() >= most_lines;
}

void ProblemList::add_at(std::size_t offset, std::string_view problem) {
  if (is_full()) return;
  const std::size_t end = std::clamp(offset, m_counted_to, m_text.size());
  const std::string_view passed = m_text.substr(m_counted_to, end - m_counted_to);
  m_line += static_cast<std::size_t>(std::count(passed.begin(), passed.end(), '\n'));
  m_counted_to = end;
  m_lines.push_back("line " + std::to_string(m_line) + ": " + std::string(problem));
}

void ProblemList::add(std::string_view problem) {
  if (!is_full()) m_lines.emplace_back(problem);
}

std::vector<std::string> ProblemList::lines() const {
  std::vector<std::string> lines = m_lines;
  if (m_count > lines.size()) lines.push_back("and " + std::to_string(m_count - lines.size()) + " more");
  return lines;
}

}  // namespace ferrowen
