#include "runner/visible_run.hpp"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/console.hpp"
#include "platform/paths.hpp"
#include "platform/process.hpp"
#include "runner/run_texts.hpp"

namespace ferrowen {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr auto slice_time = milliseconds(50);  // between two looks at the interface
constexpr auto tick_time = milliseconds(200);
constexpr auto idle_pause = milliseconds(10);
constexpr auto drain_time = milliseconds(1000);   // for output that is on its way when the script has ended
constexpr auto window_time = milliseconds(2000);  // for a console window to close behind its process
constexpr auto close_time = milliseconds(10000);  // for a left-over window to follow the quit message
constexpr std::size_t buffer_size = std::size_t{64} << 10;
constexpr std::size_t slice_size = std::size_t{1} << 20;

#ifdef _WIN32
// The script's name travels in a variable: whatever it holds, the interpreter takes it as it is. Wine's does
// not when a folder's name holds percent signs; a script in the working folder goes without its folder's
// name.
constexpr const char* script_variable = "FERROWEN_SCRIPT";

std::string script_seen_from(const std::string& folder, const std::string& script) {
  const bool same = !folder.empty() && platform::absolute(folder) == platform::folder_of(script);
  return same ? platform::join(".", platform::name_of(script)) : script;
}

void name_script(platform::ProcessRequest& request, const std::string& script, bool hidden) {
  std::string interpreter = platform::interpreter_title();
  if (interpreter.empty()) interpreter = "cmd.exe";
  request.command_line = "\"" + interpreter + "\" /d /v:off /e:on /s /c \"\"%" + script_variable + "%\"\"";
  request.environment.emplace_back(script_variable, script_seen_from(request.folder, script));
  request.own_console = !hidden;
  request.console_title = platform::interpreter_title();
}
#else
void name_script(platform::ProcessRequest& request, const std::string& script, bool /*hidden*/) {
  request.program = "/bin/sh";
  request.arguments = {script};
}
#endif

constexpr const char* record_name = "system/run-group";

// Of the run that goes on in a program folder, for the case that this process is killed: the next run must
// not start beside a tool that still writes. A folder of another kind keeps no record; one that cannot be
// written costs that care alone, never the run.
std::string record_path(const VisibleRunRequest& request) {
  const std::string path = platform::join(platform::absolute(request.folder), record_name);
  return !request.folder.empty() && folder_exists(platform::folder_of(path)) ? path : "";
}

// One line each: the leader of the group, the process that started it, the script.
void end_left_over(const std::string& record) {
  if (record.empty() || !file_exists(record)) return;
  const std::vector<std::string> lines = split_lines(read_whole_file(record));
  if (lines.size() < 3) return;
  const std::optional<long> leader = exact_whole_number(lines[0]);
  const std::optional<long> parent = exact_whole_number(lines[1]);
  if (leader && parent) static_cast<void>(platform::end_orphaned_group(*leader, *parent, lines[2]));
}

std::string error_file_path(const VisibleRunRequest& request) {
  const std::string& file = request.error_file;
  if (file.empty() || request.folder.empty() || platform::is_absolute(file)) return file;
  return platform::join(request.folder, file);
}

// Why a script cannot be started, as far as that shows beforehand; "" when nothing does.
std::string problem_before(const VisibleRunRequest& request) {
  if (!file_exists(request.script_path)) return request.script_path + ": no such file";
  if (!request.folder.empty() && !folder_exists(request.folder)) return request.folder + ": no such folder";
  const std::string error_file = error_file_path(request);
  return error_file.empty() ? "" : remove_file(error_file).error;
}

class VisibleRun {
 public:
  VisibleRun(const VisibleRunRequest& request, Progress& progress)
      : m_request(request),
        m_progress(progress),
        m_printed(progress),
        m_errors(progress),
        m_error_file(error_file_path(request), m_errors),
        m_buffer(buffer_size),
        m_record(record_path(request)) {}

  VisibleRunEnd run() {
    m_end.problem = problem_before(m_request);
    if (m_end.problem.empty() && start()) {
      follow_until_end();
      clean_up();
    }
    return std::move(m_end);
  }

 private:
  bool start() {
    platform::ProcessRequest process;
    process.folder = m_request.folder;
    process.environment = m_request.environment;
    process.priority = m_request.priority;
    name_script(process, platform::absolute(m_request.script_path), m_request.hidden);
    end_left_over(m_record);
    m_end.started = m_child.start(process) == platform::StartResult::started;
    if (m_end.started && !m_record.empty())
      static_cast<void>(safe_write(m_record, std::to_string(m_child.id()) + "\n" +
                                                 std::to_string(platform::own_process_id()) + "\n" +
                                                 platform::absolute(m_request.script_path) + "\n"));
    if (!m_end.started) m_end.problem = m_request.script_path + ": " + m_child.error();
    m_started_at = Clock::now();
    return m_end.started;
  }

  void follow_until_end() {
    m_next_tick = m_started_at;
    while (true) {
      read_slice(Clock::now() + slice_time);
      m_error_file.follow(slice_size);
      m_progress.process_events();
      if (Clock::now() >= m_next_tick) look_around();
      if (m_child.poll_exit()) return;
      m_end.cancelled = m_progress.stop_requested();
      m_end.given_up = !m_end.cancelled && (must_end() || !m_end.problem.empty());
      if (m_end.cancelled || m_end.given_up) return;
    }
  }

  // Reads what comes until the deadline. Returns earlier when much has come, or when nothing more can come
  // and the caller should look after the process.
  void read_slice(Clock::time_point deadline) {
    for (std::size_t total = 0; total < slice_size && Clock::now() < deadline;) {
      if (m_all_read) {
        std::this_thread::sleep_for(idle_pause);
        return;
      }
      const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
      if (!m_child.wait_readable(static_cast<int>(std::max<milliseconds::rep>(left.count(), 0)))) return;
      const std::size_t size = m_child.read(m_buffer.data(), m_buffer.size());
      m_all_read = size == 0;
      m_printed.add({m_buffer.data(), size});
      total += size;
      if (m_all_read) return;
    }
  }

  bool must_end() {
    // Both are read, so that neither keeps its text any longer.
    const bool printed = m_printed.has_news() && asks_for_end(m_printed.news());
    const bool errors = m_errors.has_news() && asks_for_end(m_errors.news());
    return printed || errors;
  }

  [[nodiscard]] bool asks_for_end(const std::string& text) const {
    return m_request.must_end && m_request.must_end(text);
  }

  [[nodiscard]] double seconds() const {
    return std::chrono::duration<double>(Clock::now() - m_started_at).count();
  }

  void tick() {
    m_progress.elapsed(seconds());
    if (m_request.tick) m_request.tick();
    m_next_tick = Clock::now() + tick_time;
  }

  void look_around() {
    tick();
    if (m_request.obstacle) m_end.problem = m_request.obstacle(m_printed.total() + m_errors.total());
  }

  void clean_up() {
    const bool ended_by_itself = !m_end.cancelled && !m_end.given_up;
    if (!ended_by_itself) m_child.end_group();
    // A process that the script has left behind may hold the pipe open for ever.
    const Clock::time_point deadline = Clock::now() + drain_time;
    while (!m_all_read && Clock::now() < deadline)
      read_slice(std::min(deadline, Clock::now() + slice_time));
    m_child.end_group();
    if (!m_record.empty()) static_cast<void>(remove_file(m_record));
    wait_for_window();
    while (m_error_file.follow(slice_size))
      m_progress.process_events();
    m_printed.finish();
    m_errors.finish();
    m_end.exit_status = m_child.poll_exit().value_or(-1);
    m_end.output = m_printed.kept();
    m_end.error_text = m_errors.kept();
    tick();
    m_end.seconds = seconds();
  }

  void wait_for_window() {
    const Clock::time_point deadline = Clock::now() + window_time;
    while (finddos() && Clock::now() < deadline) {
      std::this_thread::sleep_for(idle_pause);
      m_progress.process_events();
    }
  }

  const VisibleRunRequest& m_request;
  Progress& m_progress;
  platform::ChildProcess m_child;
  RunText m_printed;
  RunText m_errors;
  FileFollower m_error_file;
  std::vector<char> m_buffer;
  std::string m_record;  // "" for none
  VisibleRunEnd m_end;
  Clock::time_point m_started_at;
  Clock::time_point m_next_tick;
  bool m_all_read = false;
};

}  // namespace

VisibleRunEnd run_visible(const VisibleRunRequest& request, Progress& progress) {
  return VisibleRun(request, progress).run();
}

bool finddos() {
  const std::string title = platform::interpreter_title();
  return !title.empty() && platform::console_window_exists(title);
}

bool close_dos(bool ask, const std::string& message_205, Prompts& prompts, Progress& progress) {
  if (!finddos()) return true;
  if (ask && prompts.ask(message_205, Buttons::yes_no, Icon::question) != Answer::yes) return false;
  const std::string title = platform::interpreter_title();
  const Clock::time_point deadline = Clock::now() + close_time;
  while (finddos() && Clock::now() < deadline) {
    platform::post_quit_to_console(title);
    progress.process_events();
    std::this_thread::sleep_for(idle_pause);
  }
  return !finddos();
}

}  // namespace ferrowen
