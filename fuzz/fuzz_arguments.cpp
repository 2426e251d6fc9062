#include <cstdint>

#include "expect.hpp"
#include "runner/command.hpp"
#include "runner/script_text.hpp"

using namespace ferrowen;

namespace {

// What was rendered reads back as the same argument, as long as nothing had to be escaped.
void check_argument(const Argument& argument) {
  for (const Dialect dialect : {Dialect::batch, Dialect::shell}) {
    const Result<std::string> rendered = render_argument(argument, dialect);
    const std::string plain = argument.name + argument.value;
    const std::string_view escaped = dialect == Dialect::batch ? "%\"\\" : "\"\\$`\r\n";
    if (!rendered.ok() || plain.empty() || plain.find_first_of(escaped) != std::string::npos) continue;
    const std::vector<Argument> read = parse_arguments(rendered.value);
    fuzz::expect(read.size() == 1, "a rendered argument is one argument");
    fuzz::expect(read.front().name + read.front().value == plain, "a rendered argument keeps its text");
  }
}

void check_script(std::string_view script, Dialect dialect) {
  const std::string collapsed = collapse_outside_quotes(script, dialect);
  fuzz::expect(collapse_outside_quotes(collapsed, dialect) == collapsed, "collapsed blanks stay as they are");
  fuzz::expect(backslashes_outside_quotes(script, dialect).size() == script.size(), "a slash for a slash");
  static_cast<void>(map_name_option(script, dialect));
  static_cast<void>(has_option(script, "--unicode", dialect));
  static_cast<void>(add_log_option(script, "/a b/logging.properties", dialect));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::text_of(data, size);
  Command command;
  command.program = "java";
  command.arguments = parse_arguments(text);
  for (const Argument& argument : command.arguments)
    check_argument(argument);
  for (const Dialect dialect : {Dialect::batch, Dialect::shell}) {
    check_script(text, dialect);
    if (const Result<std::string> line = render_command(command, dialect); line.ok())
      static_cast<void>(one_option_per_line(line.value));
  }
  static_cast<void>(blanks_for_code_250(text));
  return 0;
}
