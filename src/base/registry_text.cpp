#include "base/registry_text.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/encoding.hpp"
#include "base/registry_lines.hpp"
#include "base/text.hpp"
#include "base/utf16.hpp"
#include "platform/charset.hpp"

namespace ferrowen {

namespace {

using platform::RegistryValue;
namespace type = platform::registry_type;

constexpr std::string_view utf16_mark = "\xFF\xFE";
constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";
constexpr std::size_t bytes_on_a_line = 24;

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> roots = {{
    {"HKEY_LOCAL_MACHINE", "HKLM"},
    {"HKEY_CURRENT_USER", "HKCU"},
    {"HKEY_CLASSES_ROOT", "HKCR"},
    {"HKEY_USERS", "HKU"},
    {"HKEY_CURRENT_CONFIG", "HKCC"},
}};

// With its root by its long name; "" for a path that begins with no root.
std::string full_key(std::string_view path) {
  while (path.ends_with('\\'))
    path.remove_suffix(1);
  const std::string_view root = path.substr(0, path.find('\\'));
  for (const auto& [long_name, short_name] : roots) {
    if (equal_ignoring_case(root, long_name) || equal_ignoring_case(root, short_name))
      return std::string(long_name) + std::string(path.substr(root.size()));
  }
  return "";
}

std::string unescaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      result += text[i];
      continue;
    }
    ++i;
    result += text[i] == 'n' ? '\n' : text[i] == 'r' ? '\r' : text[i];
  }
  return result;
}

std::string from_ansi(std::string_view bytes) {
  if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
    return std::string(bytes);
  if (std::optional<std::string> text = platform::decode(bytes, platform::ansi_code_page())) return *text;
  // A byte without a meaning in the code page stands for the character of its number.
  std::array<std::string, 256> characters;
  std::string text;
  for (const char byte : bytes) {
    std::string& character = characters.at(static_cast<unsigned char>(byte));
    if (character.empty()) {
      const std::optional<std::string> one = platform::decode({&byte, 1}, platform::ansi_code_page());
      character = one.value_or(utf8_of_utf16(std::string{byte, '\0'}));
    }
    text += character;
  }
  return text;
}

class Parser {
 public:
  explicit Parser(std::string_view text) : m_lines(text) {}

  RegistryText parse() {
    std::string line;
    if (read_header(line)) {
      while (m_lines.next(line))
        read_line(line);
    }
    m_result.problems = m_lines.take_problems();
    return std::move(m_result);
  }

 private:
  void read_line(std::string& line) {
    if (line.empty() || line[0] == ';' || line[0] == '#') return;
    if (line[0] == '[')
      read_key(line);
    else
      read_value(line);
  }

  bool read_header(std::string& line) {
    while (m_lines.next(line)) {
      if (line.empty()) continue;
      m_is_ansi = line == regedit4_header;
      if (m_is_ansi || line == regedit5_header) return true;
      break;
    }
    m_lines.report("no registry text begins so");
    return false;
  }

  void read_key(std::string_view line) {
    m_in_key = false;
    const std::size_t end = line.rfind(']');
    const bool remove = line.starts_with("[-");
    const std::size_t start = remove ? 2 : 1;
    if (end == std::string_view::npos || end < start) return m_lines.report("a key without ']'");
    const std::string key = full_key(line.substr(start, end - start));
    if (key.empty()) return m_lines.report("not a key of the registry");
    m_result.changes.push_back({key, remove, {}, {}});
    m_in_key = !remove;
  }

  void read_value(std::string& line) {
    std::size_t behind_name = 1;
    std::string name;
    if (line[0] == '"') {
      const std::optional<std::size_t> close = registry_lines::closing_quote(line);
      if (!close) return m_lines.report("a name without its closing quote");
      name = unescaped(std::string_view(line).substr(1, *close - 1));
      behind_name = *close + 1;
    } else if (line[0] != '@') {
      return m_lines.report("neither a key nor a value");
    }
    std::string rest(trim(std::string_view(line).substr(behind_name)));
    if (!rest.starts_with('=')) return m_lines.report("a name without '='");
    rest = trim(std::string_view(rest).substr(1));
    if (lower_ascii(rest.substr(0, 3)) == "hex") m_lines.join_continued(rest);
    if (!m_in_key) return m_lines.report("a value outside a key");
    if (rest == "-") {
      m_result.changes.back().removed_values.push_back(name);
      return;
    }
    std::optional<RegistryValue> value = data_of(rest);
    if (!value) return m_lines.report("the data of this value cannot be read");
    value->name = std::move(name);
    m_result.changes.back().values.push_back(std::move(*value));
  }

  [[nodiscard]] std::optional<RegistryValue> data_of(std::string_view text) const {
    if (text.starts_with('"')) {
      const std::optional<std::size_t> close = registry_lines::closing_quote(text);
      if (!close || !is_end(text.substr(*close + 1))) return std::nullopt;
      return RegistryValue{"", type::text, registry_lines::up_to_nul(unescaped(text.substr(1, *close - 1)))};
    }
    const std::string lower = lower_ascii(text);
    if (lower.starts_with("dword:")) {
      const std::optional<std::uint32_t> number = registry_lines::hex_number(trim(text.substr(6)));
      if (!number) return std::nullopt;
      return RegistryValue{"", type::number, registry_lines::number_bytes(*number)};
    }
    const std::optional<registry_lines::TypedList> typed = registry_lines::typed_list(lower, "hex");
    const std::optional<std::string> bytes =
        typed ? registry_lines::bytes_of_list(typed->list) : std::nullopt;
    if (!bytes) return std::nullopt;
    const bool is_text = typed->type == type::text || typed->type == type::expanding_text;
    if (!is_text) return RegistryValue{"", typed->type, *bytes};
    return RegistryValue{"", typed->type,
                         registry_lines::up_to_nul(m_is_ansi ? from_ansi(*bytes) : utf8_of_utf16(*bytes))};
  }

  static bool is_end(std::string_view rest) {
    rest = trim(rest);
    return rest.empty() || rest.starts_with(';');
  }

  registry_lines::LineReader m_lines;
  RegistryText m_result;
  bool m_is_ansi = false;
  bool m_in_key = false;
};

bool fits_on_a_line(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::string byte_list(std::string_view bytes, std::size_t used) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string list;
  std::size_t on_line = used;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    list += digits[byte >> 4];
    list += digits[byte & 0xF];
    if (i + 1 == bytes.size()) break;
    list += ',';
    if (++on_line % bytes_on_a_line == 0) list += "\\\r\n  ";
  }
  return list;
}

}  // namespace

RegistryText parse_registry_text(std::string_view text) { return Parser(text).parse(); }

RegistryText parse_registry_file(std::string_view bytes) {
  if (bytes.starts_with(utf16_mark)) return parse_registry_text(utf8_of_utf16(bytes.substr(2)));
  // What is marked as UTF-8 and is not would change when it is written again.
  const bool is_utf8 = bytes.starts_with(utf8_mark) && is_valid_utf8(bytes);
  if (is_utf8) return parse_registry_text(bytes.substr(utf8_mark.size()));
  if (bytes.starts_with(utf8_mark)) return parse_registry_text(from_ansi(bytes.substr(utf8_mark.size())));
  return parse_registry_text(from_ansi(bytes));
}

std::string quoted_registry_text(std::string_view text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '\\' || character == '"') quoted += '\\';
    if (character == '\n' || character == '\r')
      quoted += character == '\n' ? "\\n" : "\\r";
    else
      quoted += character;
  }
  return quoted + '"';
}

std::string registry_value_line(const RegistryValue& value) {
  const std::string name = value.name.empty() ? "@" : quoted_registry_text(value.name);
  if (value.type == type::text && fits_on_a_line(value.data))
    return name + "=" + quoted_registry_text(value.data);
  if (value.type == type::number && value.data.size() == 4) {
    const std::string backwards(value.data.rbegin(), value.data.rend());
    return name + "=dword:" + replace_all(byte_list(backwards, 0), ",", "");
  }
  const bool is_text = value.type == type::text || value.type == type::expanding_text;
  constexpr std::string_view digits = "0123456789abcdef";
  std::string start = name + "=hex:";
  if (value.type != type::binary) {
    std::string number;
    for (std::uint32_t rest = value.type; rest != 0 || number.empty(); rest >>= 4)
      number.insert(number.begin(), digits[rest & 0xF]);
    start = name + "=hex(" + number + "):";
  }
  return start + byte_list(is_text ? utf16_of_utf8(value.data + '\0') : value.data, start.size() / 3);
}

std::string registry_text_of(const std::vector<RegistryChange>& changes) {
  std::string text = std::string(regedit5_header) + "\r\n";
  for (const RegistryChange& change : changes) {
    text += "\r\n[" + std::string(change.remove ? "-" : "") + change.key + "]\r\n";
    for (const RegistryValue& value : change.values)
      text += registry_value_line(value) + "\r\n";
    for (const std::string& name : change.removed_values)
      text += (name.empty() ? "@" : quoted_registry_text(name)) + "=-\r\n";
  }
  return text;
}

std::string encode_registry_text(std::string_view text) {
  if (text.starts_with(regedit4_header)) {
    Result<std::string> ansi = encode_for(Consumer::regedit4, text, "");
    if (ansi.ok()) return ansi.value;
    const std::string rest(text.substr(regedit4_header.size()));
    return std::string(utf16_mark) + utf16_of_utf8(std::string(regedit5_header) + rest);
  }
  return std::string(utf16_mark) + utf16_of_utf8(text);
}

}  // namespace ferrowen
