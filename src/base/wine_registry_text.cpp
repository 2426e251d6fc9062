// Wine's own registry files: ASCII text, "[Key\\Subkey] time" and "name"=data lines; everything beyond ASCII
// is escaped.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "base/registry_lines.hpp"
#include "base/registry_text.hpp"
#include "base/text.hpp"
#include "base/utf16.hpp"

namespace ferrowen {

namespace {

using platform::RegistryValue;
namespace type = platform::registry_type;

constexpr std::string_view root_line = ";; All keys relative to ";
constexpr std::size_t most_hex_digits = 4, most_octal_digits = 3;

int digit_value(char c, int base) {
  int value = -1;
  if (c >= '0' && c <= '9') value = c - '0';
  if (c >= 'a' && c <= 'f') value = c - 'a' + 10;
  if (c >= 'A' && c <= 'F') value = c - 'A' + 10;
  return value < base ? value : -1;
}

// Takes up to `most` digits from the front of the text.
std::uint32_t take_number(std::string_view& text, std::size_t most, int base) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < most && !text.empty() && digit_value(text[0], base) >= 0; ++i) {
    number =
        number * static_cast<std::uint32_t>(base) + static_cast<std::uint32_t>(digit_value(text[0], base));
    text.remove_prefix(1);
  }
  return number;
}

// The character that follows a backslash at the front of the text.
std::uint32_t take_escaped(std::string_view& text) {
  constexpr std::string_view letters = "abefnrtv";
  constexpr std::string_view meanings = "\a\b\x1b\f\n\r\t\v";
  const char character = text[0];
  if (digit_value(character, 8) >= 0) return take_number(text, most_octal_digits, 8);
  text.remove_prefix(1);
  if (character == 'x' && !text.empty() && digit_value(text[0], 16) >= 0)
    return take_number(text, most_hex_digits, 16);
  const std::size_t found = letters.find(character);
  return static_cast<unsigned char>(found == std::string_view::npos ? character : meanings[found]);
}

// The bytes in UTF-16, as pairs are written as two escapes.
std::string utf16_of_escaped(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    std::uint32_t unit = static_cast<unsigned char>(text[0]);
    text.remove_prefix(1);
    if (unit == '\\' && !text.empty()) unit = take_escaped(text);
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>((unit >> 8) & 0xFF);
  }
  return bytes;
}

// Nearly every text has no other escapes than of backslashes and quotes; nothing for one that has.
std::optional<std::string> simply_unescaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && (++i == text.size() || (text[i] != '\\' && text[i] != '"'))) return std::nullopt;
    result += text[i];
  }
  if (!is_valid_utf8(result)) return std::nullopt;
  return result;
}

std::string unescaped(std::string_view text) {
  std::optional<std::string> simple = simply_unescaped(text);
  return simple ? std::move(*simple) : utf8_of_utf16(utf16_of_escaped(text));
}

std::optional<RegistryValue> text_value(std::uint32_t kind, std::string_view quoted) {
  const std::optional<std::size_t> close =
      quoted.starts_with('"') ? registry_lines::closing_quote(quoted) : std::nullopt;
  if (!close) return std::nullopt;
  const std::string_view inside = quoted.substr(1, *close - 1);
  if (kind == type::text || kind == type::expanding_text)
    return RegistryValue{"", kind, registry_lines::up_to_nul(unescaped(inside))};
  return RegistryValue{"", kind, utf16_of_escaped(inside) + std::string(2, '\0')};
}

std::optional<RegistryValue> data_of(std::string_view text) {
  if (text.starts_with('"')) return text_value(type::text, text);
  if (const auto typed = registry_lines::typed_list(text, "str"))
    return text_value(text.starts_with("str:") ? type::text : typed->type, typed->list);
  if (text.starts_with("dword:")) {
    const std::optional<std::uint32_t> number = registry_lines::hex_number(text.substr(6));
    if (!number) return std::nullopt;
    return RegistryValue{"", type::number, registry_lines::number_bytes(*number)};
  }
  const auto typed = registry_lines::typed_list(text, "hex");
  const std::optional<std::string> bytes = typed ? registry_lines::bytes_of_list(typed->list) : std::nullopt;
  if (!bytes) return std::nullopt;
  const bool is_text = typed->type == type::text || typed->type == type::expanding_text;
  return RegistryValue{"", typed->type, is_text ? registry_lines::up_to_nul(utf8_of_utf16(*bytes)) : *bytes};
}

class Parser {
 public:
  Parser(std::string_view text, const std::string& root, const std::function<bool(std::string_view)>& wanted)
      : m_lines(text), m_root(root), m_wanted(wanted) {}

  WineRegistryText parse() {
    std::string line;
    if (m_lines.next(line) && line.starts_with("WINE REGISTRY Version")) {
      while (m_lines.next(line))
        read_line(line);
    } else {
      m_lines.report("not a registry file of Wine");
    }
    m_result.problems = m_lines.take_problems();
    return std::move(m_result);
  }

 private:
  void read_line(std::string& line) {
    if (line.empty()) return;
    if (line[0] == '[') return read_key(line);
    if (line.starts_with(root_line))
      m_result.root = unescaped(std::string_view(line).substr(root_line.size()));
    if (line == "#arch=win64") m_result.is_64bit = true;
    if (m_in_key && (line[0] == '"' || line[0] == '@')) read_value(line);
  }

  void read_key(std::string_view line) {
    m_in_key = false;
    const std::size_t end = line.rfind(']');
    if (end == std::string_view::npos) return m_lines.report("a key without ']'");
    const std::string key = unescaped(line.substr(1, end - 1));
    if (!m_wanted(lower_ascii(key))) return;
    m_result.changes.push_back({m_root + "\\" + key, false, {}, {}});
    m_in_key = true;
  }

  void read_value(std::string& line) {
    std::size_t behind_name = 1;
    std::string name;
    if (line[0] == '"') {
      const std::optional<std::size_t> close = registry_lines::closing_quote(line);
      if (!close) return m_lines.report("a name without its closing quote");
      name = unescaped(std::string_view(line).substr(1, *close - 1));
      behind_name = *close + 1;
    }
    std::string rest = line.substr(behind_name);
    if (!rest.starts_with('=')) return m_lines.report("a name without '='");
    rest.erase(0, 1);
    if (rest.starts_with("hex")) m_lines.join_continued(rest);
    std::optional<RegistryValue> value = data_of(rest);
    if (!value) return m_lines.report("the data of this value cannot be read");
    value->name = std::move(name);
    m_result.changes.back().values.push_back(std::move(*value));
  }

  registry_lines::LineReader m_lines;
  const std::string& m_root;
  const std::function<bool(std::string_view)>& m_wanted;
  WineRegistryText m_result;
  bool m_in_key = false;
};

}  // namespace

WineRegistryText parse_wine_registry(std::string_view text, const std::string& root,
                                     const std::function<bool(std::string_view)>& wanted) {
  return Parser(text, root, wanted).parse();
}

}  // namespace ferrowen
