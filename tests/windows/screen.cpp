// What stands on the screen of Windows, for the tests of the installed programs: a console program that reads
// the windows of other programs, presses their buttons and closes them.
//
//   screen words            every visible window: its title, and behind a tab the texts of its controls
//   screen window TITLE     waits for a visible window whose title holds TITLE
//   screen text TEXT        waits for a control that holds TEXT
//   screen press TEXT       waits for an enabled button of this text (without "&") and presses it
//   screen close TITLE      closes the windows whose titles hold TITLE, if there are any
//
// Exit status 1: nothing of the kind came within 60 seconds.
#include <windows.h>

#include <array>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "platform/win32/wide.hpp"

namespace {

using ferrowen::platform::narrow;

constexpr UINT answer_milliseconds = 500;
constexpr DWORD pause_milliseconds = 50;
constexpr ULONGLONG patience_milliseconds = 60'000;

using Visit = std::function<void(HWND)>;

BOOL CALLBACK visit_window(HWND window, LPARAM visit) {
  if (IsWindowVisible(window) != 0) (*reinterpret_cast<const Visit*>(visit))(window);
  return TRUE;
}

void each_window(const Visit& visit) { EnumWindows(visit_window, reinterpret_cast<LPARAM>(&visit)); }

void each_control(HWND window, const Visit& visit) {
  EnumChildWindows(window, visit_window, reinterpret_cast<LPARAM>(&visit));
}

// Asked by message, since the text of another program's control is told in no other way.
std::string text_of(HWND window) {
  std::array<wchar_t, 2000> text = {};
  DWORD_PTR length = 0;
  const LRESULT answered =
      SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                          SMTO_ABORTIFHUNG, answer_milliseconds, &length);
  return answered == 0 ? "" : narrow(std::wstring_view(text.data(), length));
}

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

void print_words() {
  each_window([](HWND window) {
    std::cout << text_of(window) << "\n";
    each_control(window, [](HWND control) {
      if (const std::string text = text_of(control); !text.empty()) std::cout << "\t" << text << "\n";
    });
  });
}

bool is_there(const std::string& kind, const std::string& wanted) {
  bool found = false;
  const Visit look = [&](HWND window) { found = found || holds(text_of(window), wanted); };
  if (kind == "window")
    each_window(look);
  else
    each_window([&](HWND window) { each_control(window, look); });
  return found;
}

bool press(const std::string& wanted) {
  HWND button = nullptr;
  each_window([&](HWND window) {
    each_control(window, [&](HWND control) {
      std::string text = text_of(control);
      std::erase(text, '&');
      if (text == wanted && IsWindowEnabled(control) != 0) button = control;
    });
  });
  // Posted: the press may open a box that only a further one closes.
  return button != nullptr && PostMessageW(button, BM_CLICK, 0, 0) != 0;
}

void close(const std::string& wanted) {
  each_window([&](HWND window) {
    if (holds(text_of(window), wanted)) PostMessageW(window, WM_CLOSE, 0, 0);
  });
}

bool comes(const std::function<bool()>& look) {
  const ULONGLONG end = GetTickCount64() + patience_milliseconds;
  while (!look()) {
    if (GetTickCount64() > end) return false;
    Sleep(pause_milliseconds);
  }
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + count);
  if (words.size() == 1 && words[0] == "words") {
    print_words();
    return 0;
  }
  if (words.size() != 2) return 2;
  if (words[0] == "close") {
    close(words[1]);
    return 0;
  }
  if (comes([&] { return words[0] == "press" ? press(words[1]) : is_there(words[0], words[1]); })) return 0;
  std::cerr << "screen: no " << words[0] << " \"" << words[1] << "\" came\n";
  print_words();
  return 1;
}
