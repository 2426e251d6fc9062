// One definition of a TYP file: from its bytes to its drawing and labels.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.hpp"
#include "styletools/typ_bytes.hpp"
#include "styletools/typ_file.hpp"

namespace ferrowen {

// Labels to UTF-8; one converter for a whole file.
class TypLabelDecoder {
 public:
  explicit TypLabelDecoder(int code_page);
  [[nodiscard]] bool is_known() const { return m_is_utf8 || m_page.is_known(); }
  // What has no meaning in the code page becomes U+FFFD; `unread` then holds its bytes in hexadecimal.
  [[nodiscard]] std::string decode(std::string_view bytes, std::string& unread) const;

 private:
  [[nodiscard]] std::string decode_piecewise(std::string_view bytes, std::string& unread) const;
  bool m_is_utf8;
  platform::CodePage m_page;
};

struct DefinitionReader {
  TypCursor cursor;
  const TypLabelDecoder& decoder;
  std::vector<TypFinding>& findings;
  TypDefinition& definition;
};

// Each fills the definition from the cursor on; what could not be read is named in its `damage`.
// `scheme` is the first byte of a polygon modulo 16; given without bit 8, no bitmap is read.
void polygon_bmp(DefinitionReader& reader, std::uint32_t flags, std::uint8_t scheme);
void line_bmp(DefinitionReader& reader);
void poi_bmp(DefinitionReader& reader);

}  // namespace ferrowen
