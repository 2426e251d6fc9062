// What registry texts of every kind share: lines, quoted texts with escapes, lists of bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ferrowen::registry_lines {

// Walks a text line by line; a line that ends with a backslash goes on in the next one.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : m_rest(text) {}
  // The next line without its line end and the blanks around it; false at the end of the text.
  bool next(std::string& line);
  // Joins what follows while the line ends with a backslash (lists of bytes alone are written so).
  void join_continued(std::string& line);
  // Says what is wrong with the line that was read last: "line 3: ...".
  void report(std::string_view problem);
  [[nodiscard]] std::vector<std::string> take_problems() { return std::move(m_problems); }

 private:
  std::string_view take();
  std::string_view m_rest;
  std::size_t m_number = 0;
  std::vector<std::string> m_problems;
};

// Where the text that starts with a double quote at the front of `text` ends: the offset of the closing one.
std::optional<std::size_t> closing_quote(std::string_view text);
// Texts end with a character of value 0; what stands behind it is none of theirs.
std::string up_to_nul(std::string text);
// "e8,03" with blanks between; nothing when one of them is no byte of two hexadecimal digits at most.
std::optional<std::string> bytes_of_list(std::string_view list);
// A hexadecimal number of one to eight digits.
std::optional<std::uint32_t> hex_number(std::string_view digits);
// Four bytes, the lowest first.
std::string number_bytes(std::uint32_t number);
// "hex(2):41,00" or "hex:41": the type and the list behind the colon; nothing for anything else.
struct TypedList {
  std::uint32_t type = 0;
  std::string_view list;
};
std::optional<TypedList> typed_list(std::string_view text, std::string_view word);

}  // namespace ferrowen::registry_lines
