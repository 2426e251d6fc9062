// The label and extended label blocks that end every definition.
#include "platform/utf8.hpp"
#include "styletools/typ_definition_parts.hpp"
#include "styletools/typ_definitions.hpp"

namespace ferrowen {

namespace {

constexpr int utf8_code_page = 65001;
constexpr int western_code_page = 1252;
constexpr std::string_view unreadable = "\xEF\xBF\xBD";
constexpr std::uint8_t font_style_mask = 7;
constexpr std::uint32_t day_colour_follows = 8;
constexpr std::uint32_t night_colour_follows = 16;

bool is_ascii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

// The length stands in 1, 2 or 3 bytes: the lowest set bit of the first byte tells how many.
std::size_t block_length(TypCursor& cursor) {
  std::uint32_t value = cursor.number(1);
  unsigned bytes = 1;
  while (bytes < 3 && (value >> (bytes - 1) & 1) == 0) {
    value |= cursor.number(1) << (8 * bytes);
    ++bytes;
  }
  return value >> bytes;
}

}  // namespace

// A header without a code page belongs to a file whose labels are ASCII or western.
TypLabelDecoder::TypLabelDecoder(int code_page)
    : m_is_utf8(code_page == utf8_code_page),
      m_page(code_page == 0 || m_is_utf8 ? western_code_page : code_page) {}

std::string TypLabelDecoder::decode(std::string_view bytes, std::string& unread) const {
  if (is_ascii(bytes)) return std::string(bytes);
  if (m_is_utf8 && platform::is_utf8(bytes)) return std::string(bytes);
  if (!m_is_utf8 && m_page.is_known())
    if (const auto text = m_page.to_utf8(bytes)) return *text;
  return decode_piecewise(bytes, unread);
}

std::string TypLabelDecoder::decode_piecewise(std::string_view bytes, std::string& unread) const {
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) {
    std::size_t length = is_ascii(bytes.substr(at, 1)) ? 1 : 0;
    std::string piece(bytes.substr(at, length));
    if (length == 0 && m_is_utf8) {
      length = platform::character_length(bytes, at);
      piece = bytes.substr(at, length);
    }
    // A character of these code pages has one or two bytes.
    for (std::size_t tried = 1; length == 0 && !m_is_utf8 && m_page.is_known() && tried <= 2; ++tried)
      if (const auto read = m_page.to_utf8(bytes.substr(at, tried)); read && at + tried <= bytes.size()) {
        length = tried;
        piece = *read;
      }
    if (length == 0) {
      unread += (unread.empty() ? "" : " ") + f_mat(hexadecimal_text(static_cast<unsigned char>(bytes[at])));
      piece = unreadable;
      length = 1;
    }
    text += piece;
    at += length;
  }
  return text;
}

namespace {

void read_label(DefinitionReader& reader, std::uint8_t language, std::string_view bytes) {
  std::string unread;
  TypLabel label{language, reader.decoder.decode(bytes, unread)};
  if (!unread.empty())
    reader.findings.push_back(
        {reader.definition.offset, "label \"" + label.text + "\" of type " + reader.definition.key +
                                       ": bytes that are not in the code page: " + unread});
  reader.definition.labels.push_back(std::move(label));
}

void read_label_block(DefinitionReader& reader) {
  const std::size_t length = block_length(reader.cursor);
  std::string_view block = reader.cursor.part(length);
  while (!block.empty()) {
    const auto language = static_cast<std::uint8_t>(block.front());
    block.remove_prefix(1);
    const std::size_t end = block.find('\0');
    if (end == std::string_view::npos)
      reader.findings.push_back(
          {reader.definition.offset, "a label of type " + reader.definition.key + " has no end"});
    read_label(reader, language, block.substr(0, end));
    block.remove_prefix(end == std::string_view::npos ? block.size() : end + 1);
  }
}

void read_font(DefinitionReader& reader) {
  const std::uint32_t flags = reader.cursor.number(1);
  TypFont font;
  font.style = flags & font_style_mask;
  if (flags & day_colour_follows) font.day = read_colour(reader.cursor);
  if (flags & night_colour_follows) font.night = read_colour(reader.cursor);
  reader.definition.font = font;
}

}  // namespace

TypColour read_colour(TypCursor& cursor) {
  const std::uint32_t bytes = cursor.number(3);
  return {static_cast<std::uint8_t>(bytes >> 16), static_cast<std::uint8_t>(bytes >> 8),
          static_cast<std::uint8_t>(bytes), 0};
}

void read_labels_and_font(DefinitionReader& reader, bool has_labels, bool has_font) {
  if (has_labels) read_label_block(reader);
  if (has_font) read_font(reader);
  if (reader.cursor.ran_out())
    reader.findings.push_back(
        {reader.definition.offset, "the labels of type " + reader.definition.key + " go beyond their end"});
}

}  // namespace ferrowen
