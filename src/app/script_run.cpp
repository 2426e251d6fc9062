#include "app/script_run.hpp"

#include <algorithm>
#include <array>
#include <chrono>

#include "app/space_watch.hpp"
#include "app/tools.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "runner/console_script.hpp"
#include "runner/script_text.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t map_name_digits = 8;
constexpr const char* charset_conflict =
    "Warning!\r\n'latin1' and 'unicode' conflict detected in options.\r\nRemove one.";
// A worker thread of the splitter that runs out of memory or disk space dies alone: the process never ends.
constexpr std::array<std::string_view, 2> hopeless_signs = {"OutOfMemoryError", "Exception in thread \""};

bool is_hopeless(std::string_view output) {
  return std::any_of(hopeless_signs.begin(), hopeless_signs.end(),
                     [&](std::string_view sign) { return contains(output, sign); });
}

bool map_name_is_wrong(std::string_view script, Dialect dialect) {
  const std::optional<std::string> name = map_name_option(script, dialect);
  return name && !(is_digits(*name) && name->size() == map_name_digits);
}

// The splitter's archive may carry another name on this machine.
bool is_split(const Workspace& workspace, std::string_view script) {
  const std::string jar = platform::name_of(workspace.settings.splitter_jar);
  return is_split_script(script) || (!jar.empty() && contains(script, jar));
}

std::string without_line_end(std::string text) {
  while (text.ends_with('\n') || text.ends_with('\r'))
    text.pop_back();
  return text;
}

ScriptSwitches switches_of(const Workspace& workspace) {
  const Settings& settings = workspace.settings;
  ScriptSwitches switches;
  switches.log = settings.keep_log;
  switches.keep_error_stream = settings.keep_error_stream;
  switches.keep_console_open = settings.keep_console_open;
  if (const std::string path = workspace.path(file_name::logging_properties); file_exists(path))
    switches.logging_properties = path;
  return switches;
}

// Asks whether the user's own script may run and puts it in the place of the command. False: do not run.
bool take_own_script(const Workspace& workspace, Prompts& prompts, std::string& script) {
  const std::string path = workspace.path(file_name::own_script);
  const Answer answer = prompts.ask(
      "Caution:  Your script is not checked for\r\n"
      "1) possible mkgmap errors\r\n"
      "2) FID conflicts.\r\n\r\n" +
          path + "\r\n(Use Own script is ticked in Settings / Advanced)",
      Buttons::yes_no_cancel, Icon::warning);
  if (answer != Answer::yes) return false;
  if (!file_exists(path)) {
    prompts.tell(workspace.message(82) + "\r\n" + path, Icon::warning);
    return false;
  }
  script = decode_tool_text(read_whole_file(path));
  return true;
}

ConsoleScript console_script(const Workspace& workspace, const std::string& script,
                             const ScriptSwitches& switches) {
  ConsoleScript console;
  console.add(step::ChangeFolder{workspace.folder.path()}).add(step::Lines{script});
  if (switches.keep_console_open) console.add(step::Pause{"PAUSE"});
  return console;
}

// Old results of the work folder that a judgement could take for new ones.
Status clear_work_folder(const Workspace& workspace, const ScriptSwitches& switches) {
  if (Status removed = remove_file(workspace.path(file_name::error_stream)); !removed.ok()) return removed;
  return switches.log ? remove_file(workspace.path(file_name::mkgmap_log)) : Status{};
}

Status write_run_files(const Workspace& workspace, const std::string& script,
                       const ScriptSwitches& switches) {
  if (Status cleared = clear_work_folder(workspace, switches); !cleared.ok()) return cleared;
  if (switches.keep_error_stream) {
    if (Status noted = safe_write(workspace.path(file_name::last_file), workspace.settings.input);
        !noted.ok())
      return noted;
  }
  const std::string path = workspace.path(file_name::run_script);
  if (Status written = write_script(console_script(workspace, script, switches), switches.dialect, path);
      !written.ok())
    return written;
  if (!file_exists(path)) return {workspace.message(79) + path};
  return safe_write(workspace.path(file_name::last_run), with_crlf(script) + "\r\n");
}

// Steps away from "medium", the middle of the list.
int priority_of(std::string_view name) {
  const std::vector<std::string> names = split(thread_priorities, ",");
  const auto found = std::find(names.begin(), names.end(), name);
  const auto middle = static_cast<int>(names.size() / 2);
  return found == names.end() ? 0 : static_cast<int>(found - names.begin()) - middle;
}

// The splitter does not end on a full disk either, and when its error stream lies there too, nothing tells.
std::function<std::string(std::uint64_t)> obstacle_of_split(const Workspace& workspace) {
  const std::vector<std::string> folders = {split_folder(workspace), workspace.folder.path()};
  return [folders, watch = SpaceWatch()](std::uint64_t printed) mutable -> std::string {
    const std::string full = full_folder(folders);
    const std::uint64_t left = full.empty() ? 0 : printed + bytes_in(folders);
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    return watch.is_stuck(now.count(), full, left) ? "No space left: " + full : "";
  };
}

VisibleRunRequest request_for(const Workspace& workspace, std::string_view script,
                              const ScriptSwitches& switches, const std::function<void()>& tick) {
  VisibleRunRequest request;
  request.script_path = workspace.path(file_name::run_script);
  request.folder = workspace.folder.path();
  if (switches.keep_error_stream) request.error_file = workspace.path(file_name::error_stream);
  request.environment = tool_environment(workspace.settings);
  request.priority = priority_of(workspace.settings.thread_priority);
  request.tick = tick;
  if (is_split(workspace, script)) {
    request.must_end = is_hopeless;
    request.obstacle = obstacle_of_split(workspace);
  }
  return request;
}

VisibleRunEnd refused(std::string& script, Prompts& prompts, const std::string& message) {
  script = cancelled_text;
  if (!message.empty()) prompts.tell(message, Icon::critical);
  VisibleRunEnd end;
  end.problem = message;
  return end;
}

}  // namespace

Result<std::string> prepared_script(const std::string& script, const ScriptSwitches& switches,
                                    const MessageTable& messages) {
  std::string text = without_line_end(script);
  if (switches.log && !switches.logging_properties.empty()) {
    Result<std::string> with_log = add_log_option(text, switches.logging_properties, switches.dialect);
    if (!with_log.ok()) return with_log;
    text = with_log.value;
  }
  text = blanks_for_code_250(text);
  if (map_name_is_wrong(text, switches.dialect)) return failed<std::string>(messages(84));
  if (switches.dialect == Dialect::batch) text = backslashes_outside_quotes(text, switches.dialect);
  text = collapse_outside_quotes(text, switches.dialect);
  if (has_option(text, "--unicode", switches.dialect) && has_option(text, "--latin", switches.dialect))
    return failed<std::string>(charset_conflict);
  if (switches.keep_error_stream) text += " 2>" + std::string(file_name::error_stream);
  return {text, ""};
}

VisibleRunEnd run_script(Workspace& workspace, Prompts& prompts, Progress& progress, std::string& script,
                         const std::function<void()>& tick) {
  const ScriptSwitches switches = switches_of(workspace);
  if (workspace.settings.own_script && !is_split(workspace, script) &&
      !take_own_script(workspace, prompts, script))
    return refused(script, prompts, "");
  const Result<std::string> prepared = prepared_script(script, switches, workspace.messages);
  if (!prepared.ok()) return refused(script, prompts, prepared.error);
  if (!close_dos(!workspace.settings.confirmations_off, workspace.message(205), prompts, progress))
    return refused(script, prompts, finddos() ? workspace.message(148) : "");
  if (const Status written = write_run_files(workspace, prepared.value, switches); !written.ok())
    return refused(script, prompts, written.error);
  script = prepared.value;
  workspace.flags.cancel = false;
  VisibleRunEnd end = run_visible(request_for(workspace, script, switches, tick), progress);
  workspace.flags.cancel = end.cancelled;
  end.output = decode_tool_text(end.output);
  end.error_text = decode_tool_text(end.error_text);
  if (!end.started) return refused(script, prompts, end.problem);
  return end;
}

bool is_split_script(std::string_view script) { return contains(script, "splitter.jar"); }

std::string timetaken(double seconds) {
  const long whole = static_cast<long>(seconds < 0 ? 0 : seconds);
  const std::string rest = std::to_string(whole % 60);
  return std::to_string(whole / 60) + (rest.size() < 2 ? ":0" : ":") + rest + " min";
}

}  // namespace ferrowen
