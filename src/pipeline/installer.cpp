#include "pipeline/installer.hpp"

#include <algorithm>
#include <ctime>
#include <memory>

#include "app/tools.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"
#include "runner/visible_run.hpp"

namespace ferrowen {

namespace {

constexpr int message_while = 25, message_finished = 26, message_no_makensis = 47, message_no_script = 48,
              message_more_scripts = 49, message_creating = 50, message_using_typ = 71,
              message_cannot_find = 89, message_no_files = 95, message_close_console = 205;
constexpr double clock_tolerance = 2.0;  // seconds; some file systems keep coarse times
constexpr std::size_t shown_lines = 12;

#ifdef _WIN32
constexpr std::string_view script_name = "runnsis.bat";
#else
constexpr std::string_view script_name = "runnsis.sh";
#endif

// Paths stand in quotes whether they need them or not, that of the program too.
Result<std::string> builder_line(const InstallerPlan& plan, Dialect dialect) {
  Result<std::string> line = render_argument(quoted(plan.makensis), dialect);
  const std::string charset = plan.charset.empty() ? "" : " -INPUTCHARSET " + plan.charset;
  const Result<std::string> script = render_argument(quoted(plan.script), dialect);
  if (!line.ok()) return line;
  if (!script.ok()) return script;
  return {line.value + charset + " " + script.value, ""};
}

void add_end_note(ConsoleScript& script, const InstallerPlan& plan) {
  const auto echo = [&](const std::string& text) { script.add(step::Echo{"echo ", text}); };
  echo("-");
  echo("-");
  echo("File has been created");
  echo("-  " + plan.installer);
  echo("-");
}

std::vector<std::string> scripts_in(const std::string& folder) {
  std::vector<std::string> names = list_files(folder, {""});
  std::erase_if(names, [](const std::string& name) { return !ends_with_ignoring_case(name, ".nsi"); });
  return names;
}

// Where there is a choice, the script of the last build: the first of the list would most often be that of
// another map, whose installer nobody asked for. The message names the one that is taken.
std::string chosen_script(const Workspace& workspace, const std::vector<std::string>& names) {
  for (const std::string& path : workspace.built_files) {
    const auto found = std::find(names.begin(), names.end(), platform::name_of(path));
    if (found != names.end()) return *found;
  }
  return names.front();
}

bool has_makensis(const std::string& makensis) {
  return !makensis.empty() && (file_exists(makensis) || !platform::find_program(makensis).empty());
}

// TYP text is compiled into a TYP of the same name.
std::string map_typ(const Settings& settings) {
  if (!settings.use_typ) return "";
  std::string name = platform::name_of(trim(settings.typ));
  if (ends_with_ignoring_case(name, ".txt")) name.replace(name.size() - 4, 4, ".typ");
  return name;
}

std::string wrong_name(const std::string& name) {
  return "'" + name +
         "' cannot be the name of an installer. Give the map a name without \\ / : * ? \" < > | $";
}

std::string last_lines(std::string_view text) {
  std::vector<std::string> lines = split_lines(text);
  std::erase_if(lines, [](const std::string& line) { return trim(line).empty(); });
  const std::size_t first = lines.size() > shown_lines ? lines.size() - shown_lines : 0;
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(first));
  return join_texts(lines, crlf);
}

class InstallerStage {
 public:
  InstallerStage(const Workspace& workspace, Prompts& prompts, Progress& progress)
      : m_workspace(workspace), m_prompts(prompts), m_progress(progress) {}

  InstallerResult run() {
    if (!prepare()) return {StageResult::stopped, ""};
    const std::string path = m_workspace.path(script_name);
    Status ready = write_script(installer_run(m_plan, native_dialect), native_dialect, path);
    MovedAside older;
    if (ready.ok()) ready = older.take(m_plan.installer);
    if (!ready.ok()) return refuse(ready.error);
    if (!close_dos(!m_workspace.settings.confirmations_off, m_workspace.message(message_close_console),
                   m_prompts, m_progress))
      return {StageResult::stopped, ""};
    tell_begin();
    const auto start = static_cast<double>(std::time(nullptr));
    return conclude(run_visible(request(path), m_progress), start, older);
  }

 private:
  // The checks, each with its message; fills the plan.
  bool prepare() {
    m_plan.makensis = std::string(trim(m_workspace.settings.makensis));
    if (!has_makensis(m_plan.makensis)) return stop(m_workspace.message(message_no_makensis));
    const std::string folder = platform::absolute(build_output_folder(m_workspace.settings));
    const std::vector<std::string> names = scripts_in(folder);
    if (names.empty()) return stop(m_workspace.message(message_no_script));
    const std::string name = chosen_script(m_workspace, names);
    if (names.size() > 1)
      m_prompts.tell(m_workspace.message(message_more_scripts) + "\r\nWill select:" + name, Icon::warning);
    m_plan.script = platform::join(folder, name);
    m_plan.pause = !m_workspace.script_running;
    return typ_nsis();
  }

  // What the script says about its TYP and about the name of the installer.
  bool typ_nsis() {
    const Result<std::string> bytes = read_file(m_plan.script);
    if (!bytes.ok()) return stop(bytes.error);
    const NsisScript script = parse_nsis_script(decode_tool_text(bytes.value));
    m_plan.charset = nsis_charset(bytes.value, native_dialect);
    if (!is_installer_name(script.installer_name))
      return stop(m_plan.script + ": " + wrong_name(script.installer_name));
    m_plan.installer = platform::join(platform::folder_of(m_plan.script), script.installer_name + ".exe");
    const std::string note = typ_note(script, map_typ(m_workspace.settings), m_workspace.messages);
    if (!note.empty()) m_prompts.tell(note, Icon::warning);
    return true;
  }

  void tell_begin() {
    const std::string creating = m_workspace.message(message_creating);
    if (m_workspace.script_running) m_progress.status(creating);
    m_prompts.tell(creating + "\r\n" + m_workspace.message(message_while) + "\r\n" +
                   m_workspace.message(message_finished));
  }

  VisibleRunRequest request(const std::string& path) const {
    VisibleRunRequest request;
    request.script_path = path;
    request.folder = m_workspace.folder.path();
    request.environment = tool_environment(m_workspace.settings);
    return request;
  }

  InstallerResult conclude(const VisibleRunEnd& run, double start, MovedAside& older) {
    const double changed = platform::change_time(m_plan.installer).value_or(0);
    const bool made = !run.cancelled && run.problem.empty() && file_has_content(m_plan.installer) &&
                      changed + clock_tolerance >= start;
    if (made) {
      if (const Status dropped = older.drop(); !dropped.ok()) m_prompts.tell(dropped.error, Icon::warning);
      return {StageResult::done, m_plan.installer};
    }
    // What a run that failed has left is no installer.
    Status restored = remove_file(m_plan.installer);
    if (restored.ok()) restored = older.restore();
    if (!restored.ok()) m_prompts.tell(restored.error, Icon::critical);
    if (run.cancelled) return {StageResult::cancelled, ""};
    const std::string reason = run.problem.empty() ? last_lines(run.output) : run.problem;
    return refuse(m_workspace.message(message_no_files) + (reason.empty() ? "" : "\r\n" + reason));
  }

  bool stop(const std::string& text) {
    m_prompts.tell(text, Icon::warning);
    return false;
  }

  InstallerResult refuse(const std::string& text) {
    m_prompts.tell(text, Icon::critical);
    return {StageResult::failed, ""};
  }

  const Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  InstallerPlan m_plan;
};

}  // namespace

ConsoleScript installer_run(const InstallerPlan& plan, Dialect dialect) {
  ConsoleScript script;
  const Result<std::string> line = builder_line(plan, dialect);
  script.add(step::Header{"echo off"});
  // A path that the shell cannot carry is refused, with its reason, when this step is written.
  if (line.ok()) {
    script.add(step::Lines{line.value});
  } else {
    script.add(step::Run{{plan.makensis, {quoted(plan.script)}}});
  }
  if (dialect == Dialect::batch) {
    add_end_note(script, plan);
  } else {
    const auto note = std::make_shared<ConsoleScript>();
    add_end_note(*note, plan);
    script.add(step::IfExists{plan.installer, true, note, nullptr});
  }
  if (plan.pause) script.add(step::Pause{});
  return script.add(step::Exit{});
}

std::string nsis_charset(std::string_view bytes, Dialect dialect) {
  const bool is_ascii =
      std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (is_ascii) return "";
  const bool is_utf8 = is_valid_utf8(bytes);
  if (dialect == Dialect::batch) return is_utf8 ? "UTF8" : "";
  return is_utf8 ? "" : "CP1252";
}

std::string typ_note(const NsisScript& script, const std::string& map_typ, const MessageTable& messages) {
  std::string text = script.typs.empty() ? "" : messages(message_using_typ) + script.typs.front() + "\r\n";
  if (map_typ.empty()) return script.typs.empty() ? "" : text + "The map has no TYP.";
  const auto is_own = [&](const std::string& name) { return same_typ_name(name, map_typ); };
  if (std::any_of(script.typs.begin(), script.typs.end(), is_own)) return "";
  return text + messages(message_cannot_find) + map_typ + " TYP.";
}

bool check_installer(const Workspace& workspace, Prompts& prompts) {
  std::string problem;
  const std::string name(trim(workspace.settings.map_name));
  if (!has_makensis(std::string(trim(workspace.settings.makensis))))
    problem = workspace.message(message_no_makensis);
  else if (!is_installer_name(name))
    problem = wrong_name(name);
  if (!problem.empty()) prompts.tell(problem, Icon::warning);
  return problem.empty();
}

InstallerResult creatensis(const Workspace& workspace, Prompts& prompts, Progress& progress) {
  return InstallerStage(workspace, prompts, progress).run();
}

}  // namespace ferrowen
