#include "cli/terminal.hpp"

#include <algorithm>
#include <ostream>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr char delete_character = 0x7f;

bool is_control(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < ' ' && c != '\n' && c != '\t') || c == delete_character;
}

bool continues_a_character(char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80U; }

}  // namespace

std::string terminal_text(std::string_view text) {
  std::string shown = replace_all(text, crlf, "\n");
  while (shown.ends_with('\n'))
    shown.pop_back();
  std::replace(shown.begin(), shown.end(), '\r', '\n');
  std::replace_if(shown.begin(), shown.end(), is_control, '?');
  return shown;
}

std::size_t text_width(std::string_view text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues_a_character));
}

std::string shortened(std::string_view text, std::size_t width) {
  constexpr std::string_view dots = "...";
  if (text_width(text) <= width) return std::string(text);
  const std::size_t kept = width > dots.size() ? width - dots.size() : 0;
  std::size_t end = 0;
  for (std::size_t characters = 0; end < text.size(); ++end) {
    if (!continues_a_character(text[end]) && ++characters > kept) break;
  }
  return std::string(text.substr(0, end)) + std::string(dots.substr(0, width - kept));
}

void Terminal::print_line(std::string_view text) {
  clear_bar();
  m_streams.error << terminal_text(text) << '\n' << std::flush;
}

void Terminal::print(std::string_view text) {
  clear_bar();
  m_streams.error << terminal_text(text) << std::flush;
}

void Terminal::show_bar(std::string_view line) {
  // The last column stays free: some terminals wrap as soon as it is written.
  const int most = std::max(columns() - 1, 1);
  const std::string shown =
      shortened(replace_all(terminal_text(line), "\n", " "), static_cast<std::size_t>(most));
  if (shown == m_bar) return;
  const std::size_t width = text_width(shown);
  const std::size_t old_width = text_width(m_bar);
  m_streams.error << '\r' << shown << std::string(old_width > width ? old_width - width : 0, ' ') << '\r'
                  << std::flush;
  m_bar = shown;
}

void Terminal::clear_bar() {
  if (m_bar.empty()) return;
  m_streams.error << '\r' << std::string(text_width(m_bar), ' ') << '\r' << std::flush;
  m_bar.clear();
}

}  // namespace ferrowen
