#include "runner/console_script.hpp"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

using Text = Result<std::string>;

// The interpreter cuts or refuses longer lines of a batch file.
constexpr std::size_t longest_batch_line = 8191;

// Every step renders to whole lines that end with LF; render() makes the line ends of the dialect.
Text render_steps(const ConsoleScript& script, Dialect dialect);

Text lines(std::string text) {
  if (!text.empty() && !text.ends_with('\n')) text += '\n';
  return {std::move(text), ""};
}

// before + the path in quotes + after.
Text path_line(std::string_view before, const std::string& path, std::string_view after, Dialect dialect) {
  Text rendered = render_path(path, dialect);
  if (!rendered.ok()) return rendered;
  return {std::string(before) + rendered.value + std::string(after), ""};
}

// A bare "-" names the folder before this one, and a relative name is also looked for along CDPATH.
std::string for_shell_cd(const std::string& folder) {
  return folder.empty() || folder.starts_with('/') ? folder : "./" + folder;
}

bool is_printable(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return c >= '\0' && c < ' ' && c != '\t'; });
}

// Text behind a batch "echo" that is printed as it is and never runs as code.
std::string batch_echo_text(std::string_view text, bool plain_brackets) {
  const std::string_view special = plain_brackets ? "&|<>^" : "&|<>^()";
  std::string result;
  bool quoted_text = false;
  for (const char c : text) {
    if (c == '"') quoted_text = !quoted_text;
    if (c == '%') result += '%';
    if (!quoted_text && contains(special, std::string_view(&c, 1))) result += '^';
    result += c;
  }
  return result;
}

// "echo on", "echo off" and "echo /?" are orders to the interpreter, not texts.
std::string batch_echo_word(const std::string& word, std::string_view text) {
  const std::string order = lower_ascii(trim(text));
  const bool is_order = order == "on" || order == "off" || order == "/?" || order.empty();
  if (!is_order || lower_ascii(trim(replace_all(word, "@", ""))) != "echo") return word;
  return std::string(trim(word)) + '.';
}

std::string echo_line(const step::Echo& echo, const std::string& text, Dialect dialect) {
  if (dialect == Dialect::batch)
    return batch_echo_word(echo.word, text) + batch_echo_text(text, echo.plain_brackets) + '\n';
  return "printf '%s\\n' " + render_argument(quoted(text), dialect).value + '\n';
}

Text render_step(const step::Header& header, Dialect dialect) {
  return lines(dialect == Dialect::batch ? header.batch_line : "");
}

Text render_step(const step::Echo& echo, Dialect dialect) {
  std::vector<std::string> parts = split_lines(echo.text);
  if (parts.empty()) parts.emplace_back();
  std::string text;
  for (const std::string& part : parts) {
    if (!is_printable(part)) return failed<std::string>("Cannot be shown in a console script: " + part);
    text += echo_line(echo, part, dialect);
  }
  return {text, ""};
}

Text render_step(const step::ChangeFolder& change, Dialect dialect) {
  if (dialect == Dialect::batch) return path_line(change.word, change.folder, "\n", dialect);
  return path_line("cd -- ", for_shell_cd(change.folder), " || exit 1\n", dialect);
}

// Unquoted, as people write it, where nothing in the name means anything to the interpreter.
Text batch_named_folder(const step::NamedFolder& named) {
  const Text path = render_path(named.folder, Dialect::batch);
  if (!path.ok()) return path;
  const std::string variable = named.variable + "=";
  const bool plain = named.folder.find_first_of("&|<>^()%,;=!'`") == std::string::npos;
  if (plain) return {"set " + variable + named.folder + "\ncd /d %" + named.variable + "%\n", ""};
  const std::string value = path.value.substr(1);  // with its closing quote
  return {"set \"" + variable + value + "\ncd /d \"%" + named.variable + "%\"\n", ""};
}

Text render_step(const step::NamedFolder& named, Dialect dialect) {
  if (dialect == Dialect::batch) return batch_named_folder(named);
  const std::string visit = "\ncd -- \"$" + named.variable + "\" || exit 1\n";
  return path_line(named.variable + "=", for_shell_cd(named.folder), visit, dialect);
}

Text render_step(const step::Run& run, Dialect dialect) {
  Text line = render_command(run.command, dialect);
  if (line.ok()) line.value += '\n';
  return line;
}

Text render_step(const step::Lines& text, Dialect /*dialect*/) {
  return lines(replace_all(text.text, crlf, "\n"));
}

Text render_step(const step::Delete& removal, Dialect dialect) {
  if (dialect == Dialect::shell) return path_line("rm -f -- ", removal.path, "\n", dialect);
  if (removal.path.find_first_of("*?") != std::string::npos)
    return failed<std::string>("Cannot be deleted by a console script, it names more than one file: " +
                               removal.path);
  return path_line("del ", removal.path, "\n", dialect);
}

Text render_step(const step::DeleteEmpty& removal, Dialect dialect) {
  const Text path = render_path(removal.path, dialect);
  if (!path.ok()) return path;
  if (dialect == Dialect::shell)
    return {"if [ ! -s " + path.value + " ]; then rm -f -- " + path.value + "; fi\n", ""};
  return {"for %%f in (" + path.value + ") do if \"%%~zf\"==\"0\" del " + path.value + "\n", ""};
}

Text render_step(const step::CollectNothing& /*begin*/, Dialect dialect) {
  return lines(dialect == Dialect::batch ? "set collected=" : "set --");
}

Text render_step(const step::Collect& file, Dialect dialect) {
  const Text path = render_path(file.path, dialect);
  if (!path.ok()) return path;
  if (dialect == Dialect::shell)
    return {"if [ -s " + path.value + " ]; then set -- \"$@\" " + path.value + "; fi\n", ""};
  return {"if exist " + path.value + " set collected=%collected% " + path.value + "\n", ""};
}

Text render_step(const step::RunWithCollected& run, Dialect dialect) {
  const bool batch = dialect == Dialect::batch;
  const Text whole = render_command(run.command, dialect);
  const Text program = render_command({run.command.program, {}}, dialect);
  if (!whole.ok()) return whole;
  const std::string line =
      program.value + (batch ? "%collected%" : " \"$@\"") + whole.value.substr(program.value.size());
  return {(batch ? "if defined collected " + line : "if [ $# -gt 0 ]; then " + line + "; fi") + "\n", ""};
}

Text render_step(const step::Pause& pause, Dialect dialect) {
  if (dialect == Dialect::batch) return lines(pause.word);
  return lines(
      "status=$?\n"
      "if [ -t 0 ]; then printf '%s' \"Press Enter to continue . . . \"; read -r answer; fi\n"
      "(exit \"$status\")\n");
}

Text render_step(const step::Exit& leave, Dialect /*dialect*/) {
  return lines(leave.with_status ? "exit " + std::to_string(leave.status) : "exit");
}

Text render_branch(const std::shared_ptr<const ConsoleScript>& branch, Dialect dialect) {
  Text text = branch ? render_steps(*branch, dialect) : Text{};
  // Neither shell takes a branch without a command.
  if (text.ok() && text.value.empty()) text.value = dialect == Dialect::batch ? "rem\n" : ":\n";
  return text;
}

bool is_one_line(std::string_view text) { return std::count(text.begin(), text.end(), '\n') == 1; }

// Without a second branch a single command stands behind the test, as people write it; else in brackets.
std::string join_batch_branches(const std::string& test, std::string then, const std::string& otherwise,
                                bool else_behind_line) {
  if (otherwise.empty() && is_one_line(then)) return test + " " + then;
  if (otherwise.empty()) return test + " (\n" + then + ")\n";
  if (else_behind_line) then.pop_back();
  return test + " (\n" + then + ") else (\n" + otherwise + ")\n";
}

std::string join_shell_branches(const std::string& test, const std::string& then,
                                const std::string& otherwise) {
  return test + then + (otherwise.empty() ? "" : "else\n" + otherwise) + "fi\n";
}

Text render_step(const step::IfExists& condition, Dialect dialect) {
  const bool batch = dialect == Dialect::batch;
  const std::string before = batch ? (condition.exists ? "if exist " : "if not exist ")
                                   : (condition.exists ? "if [ -e " : "if [ ! -e ");
  const Text test = path_line(before, condition.path, batch ? "" : " ]; then\n", dialect);
  const Text then = render_branch(condition.then, dialect);
  const Text otherwise = condition.otherwise ? render_branch(condition.otherwise, dialect) : Text{};
  for (const Text* part : {&test, &then, &otherwise}) {
    if (!part->ok()) return *part;
  }
  if (!batch) return {join_shell_branches(test.value, then.value, otherwise.value), ""};
  return {join_batch_branches(test.value, then.value, otherwise.value, condition.else_behind_line), ""};
}

Text render_steps(const ConsoleScript& script, Dialect dialect) {
  std::string text;
  for (const Step& one : script.steps()) {
    Text rendered = std::visit([&](const auto& step) { return render_step(step, dialect); }, one);
    if (!rendered.ok()) return rendered;
    text += rendered.value;
  }
  return {text, ""};
}

Status check_line_lengths(std::string_view batch_text) {
  for (const std::string& line : split_lines(batch_text)) {
    if (line.size() > longest_batch_line)
      return {"Cannot be written in a console script, the line is longer than " +
              std::to_string(longest_batch_line) + " characters: " + line.substr(0, 80) + "..."};
  }
  return {};
}

// Runs name the shell that reads the script, so a file system that keeps no modes is no reason to fail.
void make_executable(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  fs::permissions(platform::file_system_path(path),
                  fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                  fs::perm_options::add, ignored);
}

}  // namespace

ConsoleScript& ConsoleScript::add(Step step) {
  m_steps.push_back(std::move(step));
  return *this;
}

Result<std::string> render(const ConsoleScript& script, Dialect dialect) {
  Text text = render_steps(script, dialect);
  if (!text.ok()) return text;
  if (dialect == Dialect::shell) return {"#!/bin/sh\n" + text.value, ""};
  if (Status lengths = check_line_lengths(text.value); !lengths.ok())
    return failed<std::string>(lengths.error);
  return {with_crlf(text.value), ""};
}

Status write_script(const ConsoleScript& script, Dialect dialect, const std::string& path) {
  const Text text = render(script, dialect);
  if (!text.ok()) return {text.error};
  const Consumer consumer = dialect == Dialect::batch ? Consumer::batch_script : Consumer::shell_script;
  const Text encoded = encode_for(consumer, text.value, path);
  if (!encoded.ok()) return {encoded.error};
  Status written = safe_write(path, encoded.value);
  if (written.ok() && dialect == Dialect::shell) make_executable(path);
  return written;
}

}  // namespace ferrowen
