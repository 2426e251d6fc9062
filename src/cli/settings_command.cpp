#include "app/settings_file.hpp"
#include "base/files.hpp"
#include "cli/commands.hpp"
#include "cli/settings_text.hpp"
#include "cli/table.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

using Access = Session::Access;

ExitStatus show_all(Session& session) {
  const Settings& settings = session.workspace.settings;
  session.show(settings_table(settings, session.options.verbose));
  session.json["program_folder"] = session.workspace.folder.path();
  for (const Field& field : settings_fields())
    session.json["fields"].push_back(field_object(settings, field));
  return ExitStatus::done;
}

ExitStatus get(Session& session, const std::string& name) {
  const Result<const Field*> field = field_named(name);
  if (!field.ok()) return session.fail(field.error);
  session.json = field_object(session.workspace.settings, *field.value);
  session.show(plain_value(session.workspace.settings, *field.value) + "\n");
  return ExitStatus::done;
}

ExitStatus save(Session& session) {
  const Status saved = savedata(session.workspace);
  return saved.ok() ? ExitStatus::done : session.fail(saved.error, ExitStatus::run_failed);
}

// All of the assignments or, when one of them is wrong, none.
ExitStatus set(Session& session, const std::vector<std::string>& assignments) {
  Settings changed = session.workspace.settings;
  std::vector<const Field*> fields;
  for (const std::string& assignment : assignments) {
    const Field* field = nullptr;
    if (const Status assigned = assign_text(changed, assignment, field); !assigned.ok())
      return session.fail(assigned.error);
    fields.push_back(field);
  }
  session.workspace.settings = changed;
  const ExitStatus saved = save(session);
  if (saved != ExitStatus::done) return saved;
  // A blank value means the default: what is shown is what the next start will read.
  loaddata(session.workspace, session.prompts);
  changed = session.workspace.settings;
  Table table({{""}, {""}});
  for (const Field* field : fields) {
    table.add({std::string(field->name), value_on_one_line(changed, *field)});
    session.json["fields"].push_back(field_object(changed, *field));
  }
  session.show(table.text());
  return ExitStatus::done;
}

ExitStatus back_up(Session& session, const std::string& file) {
  session.prompts.set_chosen_file(platform::absolute(file));
  return back_up_settings(session.workspace, session.prompts) ? ExitStatus::done : ExitStatus::run_failed;
}

ExitStatus restore(Session& session, const std::string& file) {
  const std::string path = platform::absolute(file);
  session.prompts.set_chosen_file(path);
  if (restore_settings(session.workspace, session.prompts)) return save(session);
  // Without a question asked it was the file that was at fault.
  return session.prompts.was_asked() ? ExitStatus::stopped : ExitStatus::wrong_usage;
}

ExitStatus reset(Session& session) {
  return reset_settings(session.workspace, session.prompts) ? save(session) : ExitStatus::stopped;
}

bool writes(SettingsArguments::Action action) {
  using Action = SettingsArguments::Action;
  return action == Action::set || action == Action::restore || action == Action::reset;
}

}  // namespace

ExitStatus run_command(Session& session, const SettingsArguments& arguments) {
  const Access access = writes(arguments.action) ? Access::write : Access::read;
  if (const ExitStatus opened = session.open(access, Session::Notes::drop); opened != ExitStatus::done)
    return opened;
  switch (arguments.action) {
    case SettingsArguments::Action::show:
      return show_all(session);
    case SettingsArguments::Action::get:
      return get(session, arguments.name);
    case SettingsArguments::Action::set:
      return set(session, arguments.assignments);
    case SettingsArguments::Action::backup:
      return back_up(session, arguments.file);
    case SettingsArguments::Action::restore:
      return restore(session, arguments.file);
    case SettingsArguments::Action::reset:
      break;
  }
  return reset(session);
}

}  // namespace ferrowen
