#include "mp/markup.hpp"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/text.hpp"
#include "platform/charset.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view cdata_begin = "<![CDATA[";
constexpr std::string_view cdata_end = "]]>";
constexpr std::size_t declaration_reach = 256;

bool ends_name(char c) { return is_blank(c) || c == '>' || c == '/' || c == '<' || c == ':'; }

std::size_t name_end(std::string_view text, std::size_t from) {
  while (from < text.size() && !ends_name(text[from]))
    ++from;
  return from;
}

// Where the name of a tag ends that begins at `at` and, with or without a prefix, has this name.
std::optional<std::size_t> matching_name_end(std::string_view text, std::size_t at, std::string_view name) {
  std::size_t end = name_end(text, at);
  if (end < text.size() && text[end] == ':') {
    at = end + 1;
    end = name_end(text, at);
  }
  if (end == text.size() || text[end] == ':' || text[end] == '<') return std::nullopt;
  if (!equal_ignoring_case(text.substr(at, end - at), name)) return std::nullopt;
  return end;
}

void append_utf8(std::string& text, unsigned long code) {
  const auto byte = [&](unsigned long bits) { text += static_cast<char>(static_cast<unsigned char>(bits)); };
  if (code < 0x80U) {
    byte(code);
  } else if (code < 0x800U) {
    byte(0xC0U | (code >> 6U));
    byte(0x80U | (code & 0x3FU));
  } else if (code < 0x10000U) {
    byte(0xE0U | (code >> 12U));
    byte(0x80U | ((code >> 6U) & 0x3FU));
    byte(0x80U | (code & 0x3FU));
  } else {
    byte(0xF0U | (code >> 18U));
    byte(0x80U | ((code >> 12U) & 0x3FU));
    byte(0x80U | ((code >> 6U) & 0x3FU));
    byte(0x80U | (code & 0x3FU));
  }
}

std::optional<unsigned long> character_code(std::string_view digits) {
  const bool is_hexadecimal = digits.starts_with('x') || digits.starts_with('X');
  if (is_hexadecimal) digits.remove_prefix(1);
  unsigned long code = 0;
  const auto read =
      std::from_chars(digits.data(), digits.data() + digits.size(), code, is_hexadecimal ? 16 : 10);
  const bool is_character = code >= ' ' && code <= 0x10FFFFU && (code < 0xD800U || code > 0xDFFFU);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) return std::nullopt;
  if (!is_character) return static_cast<unsigned long>(' ');
  return code;
}

// "&name;" as the character that it stands for; what is no entity stays as it is.
void append_entity(std::string& text, std::string_view entity) {
  struct Known {
    std::string_view name;
    char character;
  };
  static constexpr std::array<Known, 5> known = {
      {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
  const std::string_view name = entity.substr(1, entity.size() - 2);
  const auto found =
      std::find_if(known.begin(), known.end(), [&](const Known& one) { return one.name == name; });
  if (found != known.end())
    text += found->character;
  else if (const auto code = name.starts_with('#') ? character_code(name.substr(1)) : std::nullopt)
    append_utf8(text, *code);
  else
    text += entity;
}

std::string without_entities(std::string_view text) {
  constexpr std::size_t longest_entity = 12;
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end =
        text[at] == '&' ? text.substr(0, at + longest_entity).find(';', at) : std::string_view::npos;
    if (end == std::string_view::npos) {
      result += text[at++];
    } else {
      append_entity(result, text.substr(at, end + 1 - at));
      at = end + 1;
    }
  }
  return result;
}

std::string with_single_blanks(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (!is_blank(c))
      result += c;
    else if (!result.empty() && result.back() != ' ')
      result += ' ';
  }
  if (result.ends_with(' ')) result.pop_back();
  return result;
}

// The code page that the file says it is written in; 0 when it names none that is known here.
int declared_code_page(std::string_view file) {
  struct Known {
    std::string_view name;
    int code_page;
  };
  static constexpr std::array<Known, 4> known = {
      {{"windows-125", 1250}, {"iso-8859-1\"", 1252}, {"iso-8859-1'", 1252}, {"iso-8859-15", 1252}}};
  const std::string head = lower_ascii(file.substr(0, declaration_reach));
  const std::string declaration = head.substr(0, head.find("?>"));
  for (const Known& one : known) {
    const std::size_t at = declaration.find(one.name);
    if (at == std::string::npos) continue;
    if (one.code_page != 1250) return one.code_page;
    const std::size_t digit = at + one.name.size();
    const bool has_digit =
        digit < declaration.size() && declaration[digit] >= '0' && declaration[digit] <= '8';
    return has_digit ? one.code_page + (declaration[digit] - '0') : 0;
  }
  return 0;
}

}  // namespace

std::optional<Tag> find_tag(std::string_view text, std::string_view name, std::size_t from) {
  for (std::size_t at = text.find('<', from); at != std::string_view::npos; at = text.find('<', at + 1)) {
    const std::optional<std::size_t> behind_name = matching_name_end(text, at + 1, name);
    if (!behind_name) continue;
    const std::size_t close = text.find('>', *behind_name);
    if (close == std::string_view::npos) return Tag{at, *behind_name, text.size(), false};
    return Tag{at, *behind_name, close + 1, text[close - 1] == '/'};
  }
  return std::nullopt;
}

std::optional<std::size_t> find_end_tag(std::string_view text, std::string_view name, std::size_t from) {
  for (std::size_t at = text.find("</", from); at != std::string_view::npos; at = text.find("</", at + 2)) {
    if (matching_name_end(text, at + 2, name)) return at;
  }
  return std::nullopt;
}

std::string element_text(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    if (text.starts_with(cdata_begin)) {
      text.remove_prefix(cdata_begin.size());
      const std::size_t end = std::min(text.find(cdata_end), text.size());
      result += text.substr(0, end);
      text.remove_prefix(std::min(end + cdata_end.size(), text.size()));
    } else if (text.front() == '<') {
      break;
    } else {
      const std::size_t end = std::min(text.find('<'), text.size());
      result += without_entities(text.substr(0, end));
      text.remove_prefix(end);
    }
  }
  return with_single_blanks(result);
}

std::string text_problem(std::string_view bytes) {
  constexpr const char* advice = "Save it as UTF-8 and try again.";
  using namespace std::string_view_literals;
  if (bytes.starts_with("\0\0\xFE\xFF"sv) || bytes.starts_with("\xFF\xFE\0\0"sv))
    return std::string("is UTF-32 text. ") + advice;
  if (bytes.starts_with("\xFF\xFE"sv) || bytes.starts_with("\xFE\xFF"sv) || bytes.starts_with("<\0"sv) ||
      bytes.starts_with("\0<"sv))
    return std::string("is UTF-16 text. ") + advice;
  if (bytes.substr(0, declaration_reach).find('\0') != std::string_view::npos) return "is no text.";
  return "";
}

std::string file_text_as_utf8(std::string_view text, std::string_view file) {
  if (is_valid_utf8(text)) return std::string(text);
  const int code_page = declared_code_page(file);
  const std::optional<std::string> decoded =
      code_page == 0 ? std::nullopt : platform::decode(text, code_page);
  return decoded.value_or(std::string(text));
}

}  // namespace ferrowen
