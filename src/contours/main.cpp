// The program `ferrowen-contours`: makes the streams and hands over.
#include <iostream>

#include "contours/run_contours.hpp"
#include "platform/console.hpp"
#include "platform/system.hpp"

int main(int count, char** arguments) {
  const ferrowen::platform::Utf8Console console;
  ferrowen::platform::catch_interrupts();
  const ferrowen::ContourStatus status =
      ferrowen::run_contours({arguments + 1, arguments + count}, std::cout, std::cerr);
  return static_cast<int>(status);
}
