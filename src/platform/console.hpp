// Console windows of other programs, and the terminal that this program itself runs in.
#pragma once

#include <cstdint>
#include <string>

namespace ferrowen::platform {

// True when a top-level window with exactly this title exists. Never on systems without console windows.
bool console_window_exists(const std::string& title);
// Posts the quit message to it once; the caller repeats until it is gone.
void post_quit_to_console(const std::string& title);
// Value of COMSPEC, the title of a visible run's window; "" where there is none.
std::string interpreter_title();

enum class Stream : std::uint8_t { input, output, error };
bool is_terminal(Stream stream);
// Columns of the terminal behind standard output or error, 80 when unknown.
int terminal_width();

// While it lives, a console window takes and gives this program's texts as UTF-8; then it is as it was.
// Terminals of other systems are left alone.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();  // NOLINT(performance-trivially-destructible): trivial on one system only
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  [[maybe_unused]] unsigned m_input = 0, m_output = 0;  // code pages found there
};

}  // namespace ferrowen::platform
