#include "runner/command.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace ferrowen {

namespace {

bool is_letter_or_digit(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

// Bytes of UTF-8 letters mean nothing to either shell. What is not listed is quoted, harmless or not.
bool is_plain(char c, Dialect dialect) {
  const std::string_view others = dialect == Dialect::batch ? "_./:=,+@-\\~#" : "_./:=,+@-";
  return is_letter_or_digit(c) || (c & 0x80) != 0 || contains(others, std::string_view(&c, 1));
}

bool all_plain(std::string_view text, Dialect dialect) {
  return std::all_of(text.begin(), text.end(), [&](char c) { return is_plain(c, dialect); });
}

// A batch file has no way to write a quote or a line end inside an argument; it takes Ctrl-Z for a line end.
bool cannot_be_carried(char c, Dialect dialect) {
  if (c == '\0') return true;
  return dialect == Dialect::batch && (c == '"' || (c > '\0' && c < ' ' && c != '\t'));
}

std::string name_of_character(char c) {
  if (c == '"') return "a double quote";
  if (c == '\n' || c == '\r') return "a line end";
  return "the control character " + std::to_string(static_cast<int>(c));
}

Status check_carried(std::string_view text, Dialect dialect) {
  const auto found =
      std::find_if(text.begin(), text.end(), [&](char c) { return cannot_be_carried(c, dialect); });
  if (found == text.end()) return {};
  return {"Cannot be written in a console script because it holds " + name_of_character(*found) + ": " +
          std::string(text)};
}

// Percent signs would be read as variables even inside quotes.
std::string quoted_for_batch(std::string_view text) { return "\"" + replace_all(text, "%", "%%") + "\""; }

// The programs take \" for a quote that belongs to the value: backslashes at its end are doubled.
std::string batch_value(std::string_view text) {
  const std::size_t last = text.find_last_not_of('\\');
  const std::size_t backslashes = text.size() - (last == std::string_view::npos ? 0 : last + 1);
  return quoted_for_batch(std::string(text) + std::string(backslashes, '\\'));
}

std::string shell_value(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '\\' || c == '"' || c == '$' || c == '`') result += '\\';
    result += c;
  }
  return result + '"';
}

std::string in_quotes(std::string_view text, Dialect dialect) {
  return dialect == Dialect::batch ? batch_value(text) : shell_value(text);
}

// In the place of the program a shell sees more than in an argument: assignments, separators, "@" for
// silence.
Argument program_argument(const std::string& program) {
  const bool special = program.find_first_of("=,@#") != std::string::npos;
  return {"", program, special ? Argument::Quoting::always : Argument::Quoting::when_needed};
}

// The next word of a text of options from `start` on, as it was written; moves `start` behind it.
std::string_view next_word(std::string_view text, std::size_t& start) {
  const auto is_line_end = [](char c) { return c == '\r' || c == '\n'; };
  while (start < text.size() && contains(" \t\r\n", text.substr(start, 1)))
    ++start;
  const std::size_t begin = start;
  for (bool quoted = false; start < text.size() && !is_line_end(text[start]); ++start) {
    if (text[start] == '"') quoted = !quoted;
    if (!quoted && (text[start] == ' ' || text[start] == '\t')) break;
  }
  return text.substr(begin, start - begin);
}

Argument argument_of(std::string_view written) {
  const std::string text = replace_all(written, "\"", "");
  const bool quoted_text = text.size() != written.size();
  const auto quoting = quoted_text ? Argument::Quoting::always : Argument::Quoting::when_needed;
  const std::size_t equals = text.find('=');
  if (!text.starts_with('-')) return {"", text, quoting};
  if (equals != std::string::npos) return {text.substr(0, equals + 1), text.substr(equals + 1), quoting};
  return quoted_text ? Argument{"", text, quoting} : word(text);
}

}  // namespace

Argument word(std::string text) { return {std::move(text), "", Argument::Quoting::when_needed}; }

Argument option(std::string name, std::string value) {
  return {std::move(name) + "=", std::move(value), Argument::Quoting::when_needed};
}

Argument quoted_option(std::string name, std::string path) {
  return {std::move(name) + "=", std::move(path), Argument::Quoting::always};
}

Argument quoted(std::string path) { return {"", std::move(path), Argument::Quoting::always}; }

Result<std::string> render_argument(const Argument& argument, Dialect dialect) {
  const std::string& name = argument.name;
  const std::string& value = argument.value;
  if (Status carried = check_carried(name + value, dialect); !carried.ok())
    return failed<std::string>(carried.error);
  if (!all_plain(name, dialect)) return {in_quotes(name + value, dialect), ""};
  const bool nothing = name.empty() && value.empty();
  if (argument.quoting == Argument::Quoting::always || nothing || !all_plain(value, dialect))
    return {name + in_quotes(value, dialect), ""};
  return {name + value, ""};
}

Result<std::string> render_path(const std::string& path, Dialect dialect) {
  if (path.empty()) return failed<std::string>("Cannot be written in a console script: a path is empty.");
  if (Status carried = check_carried(path, dialect); !carried.ok()) return failed<std::string>(carried.error);
  return {dialect == Dialect::batch ? quoted_for_batch(path) : shell_value(path), ""};
}

Result<std::string> render_command(const Command& command, Dialect dialect) {
  if (command.program.empty())
    return failed<std::string>("Cannot be written in a console script: a command has no program.");
  Result<std::string> line = render_argument(program_argument(command.program), dialect);
  for (const Argument& argument : command.arguments) {
    if (!line.ok()) break;
    Result<std::string> rendered = render_argument(argument, dialect);
    line = rendered.ok() ? Result<std::string>{line.value + ' ' + rendered.value, ""} : std::move(rendered);
  }
  return line;
}

std::vector<std::string> plain_arguments(const Command& command) {
  std::vector<std::string> plain;
  plain.reserve(command.arguments.size());
  for (const Argument& argument : command.arguments)
    plain.push_back(argument.name + argument.value);
  return plain;
}

std::vector<Argument> parse_arguments(std::string_view text) {
  std::vector<Argument> arguments;
  for (std::size_t start = 0; start < text.size();) {
    const std::string_view written = next_word(text, start);
    if (!written.empty()) arguments.push_back(argument_of(written));
  }
  return arguments;
}

std::string one_option_per_line(std::string_view command_line) {
  std::string lines;
  bool quoted_text = false;
  for (std::size_t i = 0; i < command_line.size(); ++i) {
    const char c = command_line[i];
    const bool begins_word = i == 0 || command_line[i - 1] == ' ';
    if (!quoted_text && begins_word && command_line.substr(i).starts_with("--")) lines += crlf;
    lines += c;
    if (c == '"') quoted_text = !quoted_text;
    // A backslash inside quotes may stand for the next character, a quote that closes nothing included.
    if (c == '\\' && quoted_text && i + 1 < command_line.size()) lines += command_line[++i];
  }
  return lines;
}

}  // namespace ferrowen
