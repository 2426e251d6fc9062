// What the program reads from and writes to; tests put texts in memory in their place.
#pragma once

#include <functional>
#include <iosfwd>

namespace ferrowen {

struct Streams {
  std::istream& input;
  std::ostream& output;            // the command's result alone
  std::ostream& error;             // everything else
  bool person_can_answer = false;  // input and error stream are both a terminal
  bool error_is_terminal = false;
  std::function<int()> columns = [] { return 80; };  // width of that terminal, asked anew for every line
};

}  // namespace ferrowen
