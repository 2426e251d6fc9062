// A command is a program and a list of arguments until the last moment; the one quoting function per shell
// stands here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"

namespace ferrowen {

enum class Dialect : std::uint8_t { batch, shell };

#ifdef _WIN32
inline constexpr Dialect native_dialect = Dialect::batch;
#else
inline constexpr Dialect native_dialect = Dialect::shell;
#endif

// One argument, written as name + value: --output-dir="C:\My Maps". The value is quoted always or only when a
// shell would not carry it unquoted; a name stands before the quotes, unless the shell would not carry it.
struct Argument {
  enum class Quoting : std::uint8_t { always, when_needed };
  std::string name;  // with its "=": "--output-dir="
  std::string value;
  Quoting quoting = Quoting::when_needed;
};

Argument word(std::string text);                       // --route
Argument option(std::string name, std::string value);  // --family-id=1000, --country-name="United Kingdom"
Argument quoted_option(std::string name, std::string path);  // --output-dir="..."
Argument quoted(std::string path);                           // "..."

struct Command {
  std::string program;  // a name looked up in PATH, or a path
  std::vector<Argument> arguments;
};

// The argument as the shell must read it, so that exactly name + value arrive and nothing runs as code.
// What the shell cannot carry safely (batch: quotes, line ends and other control characters but the tab;
// both: NUL) is an error that names it.
Result<std::string> render_argument(const Argument& argument, Dialect dialect);
// Program and arguments on one line, separated by single blanks. A program name is quoted when needed.
Result<std::string> render_command(const Command& command, Dialect dialect);
// A path in double quotes for the shell's own commands (cd, del, if exist), which take backslashes as they
// are; refused like an argument, or when it is empty.
Result<std::string> render_path(const std::string& path, Dialect dialect);
// The arguments as a program receives them, without any shell's quoting.
std::vector<std::string> plain_arguments(const Command& command);

// Words of a free text of options (as users write them, one per line or separated by blanks). Blanks inside
// double quotes separate nothing; --name="a value" becomes a quoted option with the value a value. Quotes
// that are never closed end with their line.
std::vector<Argument> parse_arguments(std::string_view text);

// For display: CR LF before every "--" that begins a word outside quotes.
std::string one_option_per_line(std::string_view command_line);

}  // namespace ferrowen
