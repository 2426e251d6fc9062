#include <windows.h>

#include <algorithm>
#include <charconv>
#include <memory>

#include "platform/charset.hpp"
#include "platform/code_page.hpp"
#include "platform/registry.hpp"
#include "platform/win32/wide.hpp"

namespace ferrowen::platform {
namespace {

// Bytes without a meaning come out of the system's tables as control characters of the second half, or as
// characters of the private area.
bool stands_for_nothing(wchar_t character) {
  return (character >= 0x80 && character <= 0x9F) || (character >= 0xF8C0 && character <= 0xF8FF);
}

bool is_iso_8859(int number) { return number >= 28591 && number <= 28605; }

// Asked of the registry, because this process itself has UTF-8 for both.
int code_page_of_system(const char* name, UINT otherwise) {
  const auto text =
      registry_text(RegistryRoot::local_machine, "SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage", name);
  int number = 0;
  if (text) std::from_chars(text->data(), text->data() + text->size(), number);
  return number > 0 ? number : static_cast<int>(otherwise);
}

}  // namespace

struct CodePage::State {
  UINT number = 0;
  bool known = false;
};

CodePage::CodePage(int number) : m_state(std::make_unique<State>()) {
  constexpr std::string_view ascii_sample = "Az09\\~$#@[]{}|^";
  m_state->number = static_cast<UINT>(number);
  // Numbers up to 3 stand for "whatever is set".
  m_state->known =
      number > 3 && IsValidCodePage(m_state->number) != 0 && from_utf8(ascii_sample) == ascii_sample;
}

CodePage::~CodePage() = default;

bool CodePage::is_known() const { return m_state->known; }

std::optional<std::string> CodePage::from_utf8(std::string_view utf8) const {
  const std::wstring text = wide(utf8);
  const int size = static_cast<int>(text.size());
  const int room = size * 4;
  std::string bytes(static_cast<std::size_t>(room), '\0');
  BOOL replaced = FALSE;
  const int length = WideCharToMultiByte(m_state->number, WC_NO_BEST_FIT_CHARS, text.data(), size,
                                         bytes.data(), room, nullptr, &replaced);
  if (length <= 0 || replaced != FALSE) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

std::optional<std::string> CodePage::to_utf8(std::string_view bytes) const {
  if (bytes.empty()) return "";
  const int size = static_cast<int>(bytes.size());
  std::wstring text(bytes.size(), L'\0');
  const int length =
      MultiByteToWideChar(m_state->number, MB_ERR_INVALID_CHARS, bytes.data(), size, text.data(), size);
  if (length <= 0) return std::nullopt;
  text.resize(static_cast<std::size_t>(length));
  const bool has_controls = is_iso_8859(static_cast<int>(m_state->number));
  if (!has_controls && std::any_of(text.begin(), text.end(), stands_for_nothing)) return std::nullopt;
  return narrow(text);
}

int oem_code_page() { return code_page_of_system("OEMCP", GetOEMCP()); }
int ansi_code_page() { return code_page_of_system("ACP", GetACP()); }

}  // namespace ferrowen::platform
