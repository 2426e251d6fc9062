// The little of XML that route and placemark files need: tags found without regard to case, prefix and line
// breaks, entities, CDATA, and which bytes a file's text is made of.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ferrowen {

struct Tag {
  std::size_t begin = 0;          // of its "<"
  std::size_t attributes = 0;     // behind its name
  std::size_t end = 0;            // behind its ">", or the end of the text when it has none
  bool is_empty_element = false;  // <name ... />
};

// The next start tag of an element at or behind `from`: any case, any prefix ("gpx:rte"), with or without
// attributes.
std::optional<Tag> find_tag(std::string_view text, std::string_view name, std::size_t from);
// Where the next end tag of the element begins; any case, any prefix.
std::optional<std::size_t> find_end_tag(std::string_view text, std::string_view name, std::size_t from);

// Characters up to code 32. Bytes of 128 and above belong to letters.
inline bool is_blank(char c) { return static_cast<unsigned char>(c) <= ' '; }

// Character content that begins `text`, up to the next tag: CDATA sections taken out of their marks, entities
// replaced, runs of blanks as one blank, none at the ends.
std::string element_text(std::string_view text);

// Why the bytes cannot be read as a text of single bytes, as the end of a sentence: UTF-16, UTF-32, zero
// bytes.
std::string text_problem(std::string_view bytes);
// A text of the file in UTF-8: by the code page that the XML declaration names when it is no UTF-8. Bytes of
// an unknown kind stay as they are.
std::string file_text_as_utf8(std::string_view text, std::string_view file);

}  // namespace ferrowen
