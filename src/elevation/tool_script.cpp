#include "elevation/tool_script.hpp"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "app/tools.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_console_open = 205;
constexpr int message_cancelled = 148;

}  // namespace

struct ExpectedFiles::File {
  std::string path;
  std::unique_ptr<MovedAside> old = std::make_unique<MovedAside>();
  bool is_cleared = false;  // what lies there now belongs to the run
};

ExpectedFiles::ExpectedFiles(std::vector<std::string> paths) {
  for (std::string& path : paths)
    m_files.push_back({std::move(path)});
}

ExpectedFiles::~ExpectedFiles() = default;

Status ExpectedFiles::clear_the_way() {
  for (File& file : m_files) {
    if (Status moved = file.old->take(file.path); !moved.ok()) return moved;
    file.is_cleared = true;
  }
  return {};
}

Result<std::vector<std::string>> ExpectedFiles::settle(
    const std::function<bool(const std::string&)>& is_good) {
  Result<std::vector<std::string>> bad;
  for (File& file : m_files) {
    const bool is_of_run = std::exchange(file.is_cleared, false);
    const bool good = is_of_run && is_good(file.path);
    if (is_of_run && !good) bad.value.push_back(file.path);
    Status done = good ? file.old->drop() : Status{};
    if (is_of_run && !good) done = remove_file(file.path);
    if (!good && done.ok()) done = file.old->restore();
    if (bad.error.empty()) bad.error = done.error;
  }
  return bad;
}

std::size_t ExpectedFiles::found() const {
  const auto is_there = [](const File& file) { return file_has_content(file.path); };
  return static_cast<std::size_t>(std::count_if(m_files.begin(), m_files.end(), is_there));
}

std::size_t ExpectedFiles::count() const { return m_files.size(); }

std::string script_name(std::string_view name) {
  return std::string(name) + (native_dialect == Dialect::batch ? ".cmd" : ".sh");
}

Result<VisibleRunEnd> run_tool_script(const Workspace& workspace, Prompts& prompts, Progress& progress,
                                      const ToolScript& script) {
  const std::string question = workspace.message(message_console_open);
  if (!close_dos(!workspace.settings.confirmations_off, question, prompts, progress))
    return failed<VisibleRunEnd>(workspace.message(message_cancelled));
  if (Status written = write_script(script.script, native_dialect, script.path); !written.ok())
    return failed<VisibleRunEnd>(written.error);
  VisibleRunRequest request;
  request.script_path = script.path;
  request.folder = script.folder;
  request.environment = tool_environment(workspace.settings);
  request.hidden = script.hidden;
  request.tick = script.tick;
  VisibleRunEnd end = run_visible(request, progress);
  if (!end.started) return failed<VisibleRunEnd>(end.problem);
  end.output = decode_tool_text(end.output);
  return {std::move(end), ""};
}

void add_discarding(const std::string& path, Discard what, Dialect dialect, ConsoleScript& console) {
  const Result<std::string> rendered = render_path(path, dialect);
  if (!rendered.ok()) return;  // the steps beside this one tell it
  const std::string& name = rendered.value;
  const bool deletes = what == Discard::file;
  if (dialect == Dialect::batch)
    console.add(step::Lines{R"(if not "%errorlevel%"=="0" if not "%errorlevel%"=="92" if exist )" + name +
                            (deletes ? " del " : " type nul >") + name});
  else
    console.add(step::Lines{"case $? in 0|92) ;; *) " +
                            (deletes ? "rm -f -- " + name : "[ ! -e " + name + " ] || : >" + name) +
                            ";; esac"});
}

Status make_readable(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  fs::permissions(platform::file_system_path(path), fs::perms::group_read | fs::perms::others_read,
                  fs::perm_options::add, error);
  return {error ? path + ": " + error.message() : ""};
}

}  // namespace ferrowen
