#include "cli/session.hpp"

#include <ostream>

#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr int message_already_running = 126;
constexpr const char* no_program_folder =
    "\nThe program folder cannot be used. --home DIR chooses another one.";

std::string_view icon_word(Icon icon) {
  switch (icon) {
    case Icon::none:
      return "none";
    case Icon::information:
      return "information";
    case Icon::question:
      return "question";
    case Icon::warning:
      return "warning";
    case Icon::critical:
      break;
  }
  return "critical";
}

std::string_view answer_word(Answer answer) {
  switch (answer) {
    case Answer::yes:
      return "yes";
    case Answer::no:
      return "no";
    case Answer::cancel:
      break;
  }
  return "cancel";
}

Json message_object(const LoggedMessage& message) {
  Json object;
  object["text"] = replace_all(message.text, crlf, "\n");
  object["icon"] = icon_word(message.icon);
  if (message.answer) object["answer"] = answer_word(*message.answer);
  if (!message.file.empty()) object["file"] = message.file;
  return object;
}

}  // namespace

Session::Session(const GlobalOptions& global, Streams& streams)
    : options(global),
      terminal(streams),
      prompts(terminal, streams.input, {global.yes, global.quiet, streams.person_can_answer}),
      progress(terminal, {global.quiet, global.verbose}),
      m_streams(streams) {}

ExitStatus Session::open(Access access, Notes notes) {
  workspace.folder = ProgramFolder(find_program_folder(options.home));
  if (access == Access::write) {
    if (const ExitStatus locked = take_lock(); locked != ExitStatus::done) return locked;
    if (const Status readable = settings_are_readable(workspace); !readable.ok()) return fail(readable.error);
  }
  prompts.drop_notes(notes == Notes::drop && !options.verbose);
  const Status started = start_up(workspace, prompts);
  prompts.drop_notes(false);
  return started.ok() ? ExitStatus::done : fail(started.error + no_program_folder);
}

ExitStatus Session::take_lock() {
  const std::string path = workspace.path(file_name::lock);
  if (const Status made = make_folder(workspace.path("system")); !made.ok())
    return fail(made.error + no_program_folder);
  switch (m_lock.acquire(path)) {
    case platform::InstanceLock::Result::held:
      return ExitStatus::done;
    case platform::InstanceLock::Result::taken_by_other:
      return fail(workspace.message(message_already_running), ExitStatus::stopped);
    case platform::InstanceLock::Result::failed:
      break;
  }
  return fail(path + ": " + m_lock.error() + no_program_folder);
}

ExitStatus Session::fail(std::string_view text, ExitStatus status) {
  prompts.tell(text, Icon::critical);
  return status;
}

void Session::show(std::string_view text) {
  progress.finish();
  if (!options.json) m_streams.output << text;
}

ExitStatus Session::finish(ExitStatus status) {
  progress.finish();
  if (options.json) {
    Json object = json_object(result.empty() ? result_word(status) : result, status, prompts.log());
    object["progress"] = progress.statuses();
    // Of this program alone, without the tools that it ran.
    object["own_processor_seconds"] = platform::processor_seconds();
    if (json.is_object()) object.update(json);
    m_streams.output << json_text(object);
  }
  m_streams.output.flush();
  if (m_streams.output) return status;
  return fail("The result could not be written to standard output.", ExitStatus::run_failed);
}

Json json_object(std::string_view result, ExitStatus status, const MessageLog& messages) {
  Json object;
  object["result"] = result;
  object["exit_status"] = static_cast<int>(status);
  object["messages"] = Json::array();
  for (const LoggedMessage& message : messages)
    object["messages"].push_back(message_object(message));
  return object;
}

std::string json_text(const Json& object) {
  constexpr int indentation = 2;
  return object.dump(indentation, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace ferrowen
