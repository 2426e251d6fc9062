#include "platform/console.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

namespace ferrowen::platform {
namespace {

int descriptor_of(Stream stream) {
  switch (stream) {
    case Stream::input:
      return STDIN_FILENO;
    case Stream::output:
      return STDOUT_FILENO;
    case Stream::error:
      break;
  }
  return STDERR_FILENO;
}

}  // namespace

bool console_window_exists(const std::string& /*title*/) { return false; }

void post_quit_to_console(const std::string& /*title*/) {}

std::string interpreter_title() { return ""; }

bool is_terminal(Stream stream) { return ::isatty(descriptor_of(stream)) == 1; }

int terminal_width() {
  constexpr int usual_width = 80;
  for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
    winsize size{};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  }
  return usual_width;
}

Utf8Console::Utf8Console() = default;
Utf8Console::~Utf8Console() = default;

}  // namespace ferrowen::platform
