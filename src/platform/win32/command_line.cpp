#include "platform/win32/command_line.hpp"

#include <windows.h>
// windows.h comes first.
#include <shellapi.h>

#include <algorithm>
#include <array>

#include "platform/error_text.hpp"
#include "platform/paths.hpp"
#include "platform/win32/wide.hpp"

namespace ferrowen::platform {
namespace {

constexpr std::string_view blanks = " \t\r\n";

bool has_extension(const std::string& path, std::string_view extension) {
  if (path.size() < extension.size()) return false;
  const std::string end = path.substr(path.size() - extension.size());
  return _stricmp(end.c_str(), std::string(extension).c_str()) == 0;
}

bool is_batch_file(const std::string& path) {
  return has_extension(path, ".bat") || has_extension(path, ".cmd");
}

// Not COMSPEC: the quoting below is for this interpreter.
std::string command_interpreter() {
  std::array<char, MAX_PATH> folder = {};
  GetSystemDirectoryA(folder.data(), folder.size());
  return join(folder.data(), "cmd.exe");
}

// Inside quotes cmd takes everything as it stands, except what ends the quotes or the line, and percent
// signs: a pair may name a variable, and some versions drop a single one.
std::string batch_refusal(const std::string& path, const ProcessRequest& request) {
  for (const std::string& argument : request.arguments)
    if (argument.find_first_of("\"%\r\n") != std::string::npos)
      return "A batch file cannot be given the argument " + argument;
  if (std::count(path.begin(), path.end(), '%') > 1)
    return "A batch file cannot be run with two percent signs in its path: " + path;
  return "";
}

Command batch_command(const std::string& path, const ProcessRequest& request) {
  std::string inside = "\"" + path + "\"";
  for (const std::string& argument : request.arguments) {
    inside += " \"" + argument;
    // The batch file hands its arguments on to programs, for which a last backslash would hide the quote.
    inside.append(argument.size() - (argument.find_last_not_of('\\') + 1), '\\');
    inside += '"';
  }
  Command command;
  command.application = command_interpreter();
  command.line = quoted_argument(command.application) + " /d /e:on /v:off /s /c \"" + inside + "\"";
  command.error = batch_refusal(path, request);
  return command;
}

std::string search_path_of(const ProcessRequest& request) {
  // Of several entries the last holds, as in the child's environment.
  const auto found =
      std::find_if(request.environment.rbegin(), request.environment.rend(),
                   [](const auto& change) { return _stricmp(change.first.c_str(), "PATH") == 0; });
  return found == request.environment.rend() ? environment("PATH").value_or("") : found->second;
}

bool holds_nul(const ProcessRequest& request) {
  const auto holds = [](const std::string& text) { return text.find('\0') != std::string::npos; };
  return holds(request.command_line) || holds(request.program) ||
         std::any_of(request.arguments.begin(), request.arguments.end(), holds);
}

// The system looks for a program in this process's PATH. When the request sets another one, that decides.
std::string own_search_result(const ProcessRequest& request) {
  const auto sets_path = [](const auto& change) { return _stricmp(change.first.c_str(), "PATH") == 0; };
  if (std::none_of(request.environment.begin(), request.environment.end(), sets_path)) return "";
  const std::vector<std::string> words = split_command_line(request.command_line);
  if (words.empty()) return "";
  const std::string path = locate_program(words.front(), search_path_of(request), request.folder);
  return is_batch_file(path) ? "" : path;
}

}  // namespace

std::string quoted_argument(std::string_view argument) {
  const bool plain = !argument.empty() && argument.find_first_of(" \t\r\n\v\"") == std::string_view::npos;
  if (plain) return std::string(argument);
  std::string result = "\"";
  std::size_t backslashes = 0;
  for (const char character : argument) {
    // Backslashes count only before a quote: there each needs a second one, and the quote one of its own.
    if (character == '"') result.append(backslashes + 1, '\\');
    backslashes = character == '\\' ? backslashes + 1 : 0;
    result += character;
  }
  result.append(backslashes, '\\');
  return result + '"';
}

Command make_command(const ProcessRequest& request) {
  if (holds_nul(request)) return {"", "", error_text(ERROR_INVALID_PARAMETER)};
  if (request.program.empty()) {
    const std::size_t start = request.command_line.find_first_not_of(blanks);
    if (start == std::string::npos) return {"", "", error_text(ERROR_FILE_NOT_FOUND)};
    return {own_search_result(request), request.command_line.substr(start), ""};
  }
  const std::string path = locate_program(request.program, search_path_of(request), request.folder);
  if (path.empty()) return {"", "", error_text(ERROR_FILE_NOT_FOUND)};
  if (is_batch_file(path)) return batch_command(path, request);
  std::string line = quoted_argument(request.program);
  for (const std::string& argument : request.arguments)
    line += " " + quoted_argument(argument);
  return {path, line, ""};
}

std::vector<std::string> split_command_line(std::string_view line) {
  const std::size_t start = line.find_first_not_of(blanks);
  // The system's routine answers an empty line with the path of this very program.
  if (start == std::string_view::npos) return {};
  int count = 0;
  LPWSTR* words = CommandLineToArgvW(wide(line.substr(start)).c_str(), &count);
  if (words == nullptr) return {};
  std::vector<std::string> result;
  for (int i = 0; i < count; ++i)
    result.push_back(narrow(words[i]));
  LocalFree(words);
  return result;
}

}  // namespace ferrowen::platform
