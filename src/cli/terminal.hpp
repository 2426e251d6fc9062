// The error stream as a person sees it: whole lines, and on a terminal one line at the bottom (the progress
// bar) that is taken away before anything else is written.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "cli/streams.hpp"

namespace ferrowen {

// A text of the program as a terminal gets it: LF line ends, none at the end, no control characters but tabs
// (a file's name must not be able to steer the terminal).
std::string terminal_text(std::string_view text);
// Columns that a text takes: its characters, counted without regard to wide ones.
std::size_t text_width(std::string_view text);
// The text cut to at most this many characters; "..." shows that something is missing.
std::string shortened(std::string_view text, std::size_t width);

class Terminal {
 public:
  explicit Terminal(Streams& streams) : m_streams(streams) {}

  [[nodiscard]] bool is_live() const { return m_streams.error_is_terminal; }
  [[nodiscard]] int columns() const { return m_streams.columns(); }
  void print_line(std::string_view text);
  void print(std::string_view text);  // without a line end: a question
  // Shows the line in place of the one shown before. Only where is_live().
  void show_bar(std::string_view line);
  void clear_bar();

 private:
  Streams& m_streams;
  std::string m_bar;  // what stands there now
};

}  // namespace ferrowen
