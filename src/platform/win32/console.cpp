#include "platform/console.hpp"

#include <windows.h>

#include "platform/paths.hpp"

namespace ferrowen::platform {
namespace {

HANDLE handle_of(Stream stream) {
  switch (stream) {
    case Stream::input:
      return GetStdHandle(STD_INPUT_HANDLE);
    case Stream::output:
      return GetStdHandle(STD_OUTPUT_HANDLE);
    case Stream::error:
      break;
  }
  return GetStdHandle(STD_ERROR_HANDLE);
}

HWND find_window(const std::string& title) {
  return title.empty() ? nullptr : FindWindowA(nullptr, title.c_str());
}

}  // namespace

bool console_window_exists(const std::string& title) { return find_window(title) != nullptr; }

void post_quit_to_console(const std::string& title) {
  if (const HWND window = find_window(title); window != nullptr) PostMessageA(window, WM_QUIT, 0, 0);
}

std::string interpreter_title() { return environment("COMSPEC").value_or(""); }

bool is_terminal(Stream stream) {
  DWORD mode = 0;
  return GetConsoleMode(handle_of(stream), &mode) != 0;
}

int terminal_width() {
  constexpr int usual_width = 80;
  for (const Stream stream : {Stream::output, Stream::error}) {
    CONSOLE_SCREEN_BUFFER_INFO screen = {};
    const bool known = GetConsoleScreenBufferInfo(handle_of(stream), &screen) != 0;
    const int width = screen.srWindow.Right - screen.srWindow.Left + 1;
    if (known && width > 1) return width;
  }
  return usual_width;
}

Utf8Console::Utf8Console() : m_input(GetConsoleCP()), m_output(GetConsoleOutputCP()) {
  if (m_input != 0) SetConsoleCP(CP_UTF8);
  if (m_output != 0) SetConsoleOutputCP(CP_UTF8);
}

Utf8Console::~Utf8Console() {
  if (m_input != 0) SetConsoleCP(m_input);
  if (m_output != 0) SetConsoleOutputCP(m_output);
}

}  // namespace ferrowen::platform
