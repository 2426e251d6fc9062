#include "app/tool_query.hpp"

#include "app/tools.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "runner/command.hpp"
#include "runner/dos_outputs.hpp"

namespace ferrowen {

namespace {

constexpr int message_locate_mkgmap = 46, message_cannot_find = 89, message_locate_splitter = 90,
              message_no_java = 109, message_cancelled = 148;

using Output = Result<std::string>;

Result<std::string> command_line_of(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& each : words) {
    Result<std::string> rendered = command_line_word(each);
    if (!rendered.ok()) return rendered;
    line += (line.empty() ? "" : " ") + rendered.value;
  }
  return {std::move(line), ""};
}

Output version_of(const Output& output, std::string_view word, const std::string& jar) {
  if (!output.ok()) return output;
  std::string line = version_line(output.value, word);
  if (line.empty()) return failed<std::string>("You have selected:\r\n" + platform::name_of(jar));
  return {std::move(line), ""};
}

bool goes_on_with_version(std::string_view rest) {
  const std::string_view text = trim(rest);
  return !text.empty() &&
         ((text.front() >= '0' && text.front() <= '9') || text.front() == '[' || text.front() == '(');
}

}  // namespace

Result<std::string> command_line_word(const std::string& word_text) {
#ifdef _WIN32
  // CreateProcess knows no escapes but those of quotes, which no path can hold.
  if (contains(word_text, "\""))
    return failed<std::string>("Cannot be run because of its quotes: " + word_text);
  const bool plain = !word_text.empty() && word_text.find_first_of(" \t&()^;,=+") == std::string::npos;
  return {plain ? word_text : "\"" + word_text + "\"", ""};
#else
  return render_argument(word(word_text), Dialect::shell);
#endif
}

bool has_java(const Settings& settings) {
  return settings.java.empty() ? !platform::find_program("java").empty() : file_exists(settings.java);
}

std::string version_line(std::string_view output, std::string_view word) {
  for (const std::string& line : split_lines(output)) {
    const std::string_view text = trim(line);
    if (!text.starts_with(word) || !goes_on_with_version(text.substr(word.size()))) continue;
    return std::string(trim(text.substr(0, text.find(" : "))));
  }
  return "";
}

Output ask_tool(Workspace& workspace, Prompts& prompts, Progress& progress,
                const std::vector<std::string>& words, bool shown) {
  Result<std::string> line = command_line_of(words);
  if (!line.ok()) return line;
  OutputHandler handler(workspace.flags, progress);
  handler.show_all_output = true;
  handler.abort_test = false;
  DOSOutputs tool(workspace.flags, prompts, progress);
  tool.environment = tool_environment(workspace.settings);
  if (shown) tool.ReceiveOutputs = [&](std::string_view chunk) { handler.objDOS_ReceiveOutputs(chunk); };
  workspace.flags.cancel = false;  // of an earlier run; one that cannot be started leaves it as it was
  std::string output = decode_tool_text(tool.ExecuteCommand(line.value));
  handler.flush();
  if (workspace.flags.cancel) {
    workspace.flags.cancel = false;
    return failed<std::string>(workspace.message(message_cancelled));
  }
  if (trim(output).empty()) return failed<std::string>(words.front() + ": cannot be run, or says nothing.");
  return {std::move(output), ""};
}

Output ask_jar(Workspace& workspace, Prompts& prompts, Progress& progress, const std::string& jar,
               const std::vector<std::string>& arguments, bool shown) {
  if (!has_java(workspace.settings)) return failed<std::string>(workspace.message(message_no_java));
  if (!file_exists(jar)) return failed<std::string>(workspace.message(message_cannot_find) + jar);
  std::vector<std::string> words = {"java", "-jar", platform::absolute(jar)};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return ask_tool(workspace, prompts, progress, words, shown);
}

Output mkgmap_version(Workspace& workspace, Prompts& prompts, Progress& progress) {
  const std::string& jar = workspace.settings.mkgmap_jar;
  if (trim(jar).empty()) return failed<std::string>(workspace.message(message_locate_mkgmap));
  return version_of(ask_jar(workspace, prompts, progress, jar, {"--version"}, true), "Mkgmap version", jar);
}

Output splitter_version(Workspace& workspace, Prompts& prompts, Progress& progress) {
  const std::string& jar = workspace.settings.splitter_jar;
  if (trim(jar).empty()) return failed<std::string>(workspace.message(message_locate_splitter));
  return version_of(ask_jar(workspace, prompts, progress, jar, {"--version"}, true), "splitter", jar);
}

}  // namespace ferrowen
