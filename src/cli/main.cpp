// The program `ferrowen`: makes the streams and hands over.
#include <iostream>

#include "cli/run_ferrowen.hpp"
#include "platform/console.hpp"

int main(int count, char** arguments) {
  using ferrowen::platform::Stream;
  const ferrowen::platform::Utf8Console console;
  const bool error_is_terminal = ferrowen::platform::is_terminal(Stream::error);
  ferrowen::Streams streams{
      std::cin,          std::cout,
      std::cerr,         error_is_terminal && ferrowen::platform::is_terminal(Stream::input),
      error_is_terminal, ferrowen::platform::terminal_width};
  return ferrowen::run_ferrowen({arguments + 1, arguments + count}, streams);
}
