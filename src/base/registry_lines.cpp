#include "base/registry_lines.hpp"

#include <algorithm>
#include <charconv>

#include "base/text.hpp"
#include "platform/registry.hpp"

namespace ferrowen::registry_lines {

std::string_view LineReader::take() {
  const std::size_t end = m_rest.find('\n');
  const std::string_view line = m_rest.substr(0, end);
  m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
  ++m_number;
  return trim(line);
}

bool LineReader::next(std::string& line) {
  if (m_rest.empty()) return false;
  line = take();
  return true;
}

void LineReader::join_continued(std::string& line) {
  while (line.ends_with('\\') && !m_rest.empty()) {
    line.pop_back();
    line += take();
  }
  if (line.ends_with('\\')) line.pop_back();
}

void LineReader::report(std::string_view problem) {
  m_problems.push_back("line " + std::to_string(m_number) + ": " + std::string(problem));
}

std::string up_to_nul(std::string text) {
  text.resize(std::min(text.size(), text.find('\0')));
  return text;
}

std::optional<std::size_t> closing_quote(std::string_view text) {
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') return i;
    if (text[i] == '\\') ++i;
  }
  return std::nullopt;
}

std::optional<std::uint32_t> hex_number(std::string_view digits) {
  constexpr std::size_t most_digits = 8;
  std::uint32_t number = 0;
  if (digits.empty() || digits.size() > most_digits) return std::nullopt;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

std::optional<std::string> bytes_of_list(std::string_view list) {
  std::string bytes;
  list = trim(list);
  while (!list.empty()) {
    const std::size_t comma = list.find(',');
    const std::string_view one = trim(list.substr(0, comma));
    const std::optional<std::uint32_t> number = one.size() <= 2 ? hex_number(one) : std::nullopt;
    if (!number) return std::nullopt;
    bytes += static_cast<char>(*number);
    if (comma == std::string_view::npos) break;
    list = trim(list.substr(comma + 1));
  }
  return bytes;
}

std::string number_bytes(std::uint32_t number) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8)
    bytes += static_cast<char>((number >> shift) & 0xFF);
  return bytes;
}

std::optional<TypedList> typed_list(std::string_view text, std::string_view word) {
  if (!text.starts_with(word)) return std::nullopt;
  text.remove_prefix(word.size());
  if (text.starts_with(':')) return TypedList{platform::registry_type::binary, text.substr(1)};
  const std::size_t close = text.find("):");
  if (!text.starts_with('(') || close == std::string_view::npos) return std::nullopt;
  const std::optional<std::uint32_t> type = hex_number(text.substr(1, close - 1));
  if (!type) return std::nullopt;
  return TypedList{*type, text.substr(close + 2)};
}

}  // namespace ferrowen::registry_lines
