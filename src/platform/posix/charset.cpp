#include <iconv.h>

#include <array>
#include <cerrno>
#include <memory>

#include "platform/charset.hpp"
#include "platform/code_page.hpp"

namespace ferrowen::platform {
namespace {

constexpr int first_iso_8859 = 28591;
constexpr int last_iso_8859 = 28605;

std::string converter_name(int number) {
  if (number == 20866) return "KOI8-R";
  if (number == 21866) return "KOI8-U";
  if (number >= first_iso_8859 && number <= last_iso_8859)
    return "ISO-8859-" + std::to_string(number - first_iso_8859 + 1);
  return "CP" + std::to_string(number);
}

class Converter {
 public:
  Converter(const std::string& to, const std::string& from)
      : m_descriptor(::iconv_open(to.c_str(), from.c_str())) {}
  ~Converter() {
    if (is_open()) ::iconv_close(m_descriptor);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  [[nodiscard]] bool is_open() const { return m_descriptor != invalid(); }
  [[nodiscard]] std::optional<std::string> convert(std::string_view text) const;

 private:
  // The value that iconv_open is documented to fail with.
  static iconv_t invalid() { return reinterpret_cast<iconv_t>(-1); }  // NOLINT(performance-no-int-to-ptr)
  iconv_t m_descriptor;
};

std::optional<std::string> Converter::convert(std::string_view text) const {
  ::iconv(m_descriptor, nullptr, nullptr, nullptr, nullptr);  // back to the initial state
  std::string result;
  std::array<char, 4096> buffer = {};
  char* input = const_cast<char*>(text.data());  // not written to, in spite of its type
  std::size_t left = text.size();
  // Where accents follow their letter, the last letter is held back until the end is announced.
  for (bool ending = false; left > 0 || !ending;) {
    ending = left == 0;
    char* output = buffer.data();
    std::size_t space = buffer.size();
    const std::size_t outcome = ::iconv(m_descriptor, ending ? nullptr : &input, &left, &output, &space);
    const bool only_buffer_full = outcome == static_cast<std::size_t>(-1) && errno == E2BIG;
    result.append(buffer.data(), buffer.size() - space);
    if (outcome == static_cast<std::size_t>(-1) && !only_buffer_full) return std::nullopt;
  }
  return result;
}

}  // namespace

struct CodePage::State {
  explicit State(const std::string& name) : to_page(name, "UTF-8"), from_page("UTF-8", name) {}

  Converter to_page;
  Converter from_page;
  bool known = false;
};

CodePage::CodePage(int number) {
  constexpr std::string_view ascii_sample = "Az09\\~$#@[]{}|^";
  m_state = std::make_unique<State>(converter_name(number));
  m_state->known = m_state->to_page.is_open() && m_state->from_page.is_open() &&
                   m_state->to_page.convert(ascii_sample) == ascii_sample;
}

CodePage::~CodePage() = default;

bool CodePage::is_known() const { return m_state->known; }

std::optional<std::string> CodePage::from_utf8(std::string_view utf8) const {
  return m_state->to_page.convert(utf8);
}

std::optional<std::string> CodePage::to_utf8(std::string_view bytes) const {
  return m_state->from_page.convert(bytes);
}

// There is no such setting here: the code pages of a western system, for files that go to one.
int oem_code_page() { return 437; }
int ansi_code_page() { return 1252; }

}  // namespace ferrowen::platform
