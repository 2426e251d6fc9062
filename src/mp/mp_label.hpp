// Labels of MP files: one line of text in code page 1251, as the header declares.
#pragma once

#include <string>
#include <string_view>

namespace ferrowen {

struct EncodedLabel {
  std::string bytes;
  std::string
      unencodable;  // the letters that have no place there and were written as "?", each once, in UTF-8
};

// Runs of blanks and line breaks become one blank: a label must never begin a new line of the file. Bytes
// that are no UTF-8 are taken to be in code page 1251 already.
EncodedLabel encode_label(std::string_view label);

}  // namespace ferrowen
