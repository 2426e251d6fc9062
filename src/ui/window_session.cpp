#include "ui/window_session.hpp"

#include "app/handed_over.hpp"
#include "app/language_file.hpp"
#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"

namespace ferrowen::ui {

namespace {

constexpr const char* nothing_is_saved =
    "\r\nThe program folder cannot be used as it is. You can look around, but nothing is saved.";

}  // namespace

bool WindowSession::take_lock() {
  using Result = platform::InstanceLock::Result;
  if (const Status made = make_folder(workspace.path("system")); !made.ok()) {
    notes.tell(made.error + nothing_is_saved, Icon::warning);
    return false;
  }
  const std::string path = workspace.path(file_name::lock);
  const Result result = m_lock.acquire(path);
  m_taken_by_other = result == Result::taken_by_other;
  if (result == Result::failed) notes.tell(path + ": " + m_lock.error() + nothing_is_saved, Icon::warning);
  return result == Result::held;
}

// Without a start-up, so that what there is to tell is told in the language of the person.
void WindowSession::read_settings() {
  loaddata(workspace, notes);
  if (!choose_language(workspace, workspace.settings.language).ok()) use_english(workspace);
}

WindowSession::Opened WindowSession::open(const std::optional<std::string>& home) {
  workspace.folder = ProgramFolder(find_program_folder(home));
  bool can_write = take_lock();
  if (m_taken_by_other) {
    read_settings();
    return Opened::running_already;
  }
  // Left by a start whose file nobody took because both ended.
  while (can_write && !take_handed_over(workspace.folder).empty()) {
  }
  if (const Status readable = settings_are_readable(workspace); !readable.ok()) {
    notes.tell(readable.error + nothing_is_saved, Icon::warning);
    can_write = false;
  }
  if (const Status started = start_up(workspace, notes); !started.ok()) {
    if (can_write) notes.tell(started.error + nothing_is_saved, Icon::warning);
    read_settings();
    fill_machine_defaults(workspace);
    can_write = false;
  }
  return can_write ? Opened::ready : Opened::read_only;
}

}  // namespace ferrowen::ui
