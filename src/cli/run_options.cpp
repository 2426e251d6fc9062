#include "cli/run_options.hpp"

#include <algorithm>
#include <initializer_list>

#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view end_mark = "##";

Status first_error(std::initializer_list<Status> steps) {
  for (const Status& step : steps) {
    if (!step.ok()) return step;
  }
  return {};
}

Status remember_input(Settings& settings, const std::string& input) {
  return assign_checked(settings, *find_field("input"), input.empty() ? "" : platform::absolute(input));
}

Status apply_contours(RunSettings& run, const std::optional<std::string>& contours) {
  if (!contours) return {};
  return first_error({run.set("contours", *contours == "no" ? "0" : "1"),
                      run.set("clip-contours", *contours == "clip" ? "1" : "0")});
}

// A stored options text that is switched off stays out of the run.
Status apply_option_lines(RunSettings& run, const std::vector<std::string>& lines) {
  if (lines.empty()) return {};
  const Settings& stored = run.stored();
  const std::string text = with_option_lines(stored.use_options_text ? stored.options_text : "", lines);
  return first_error({run.set("options-text", text), run.set("use-options-text", "1")});
}

Status apply_outputs(RunSettings& run, const BuildArguments& arguments) {
  const Settings& stored = run.stored();
  if (arguments.installer) {
    if (Status set = run.set("installer", "1"); !set.ok()) return set;
  }
  if (arguments.register_map) {
    if (Status set = run.set("register", "1"); !set.ok()) return set;
  }
  const bool registers = arguments.register_map || stored.register_map;
  if (arguments.device_image || !(stored.device_image || registers)) return run.set("gmapsupp", "1");
  return {};
}

Status apply_fid(const Workspace& workspace, RunSettings& run, const std::optional<std::string>& fid) {
  if (!fid) return {};
  if (*fid != "auto") return run.set("fid", *fid);
  // The build draws a new one for a blank FID; a locked one is not touched.
  return workspace.settings.fid_locked ? Status{} : run.set("fid", "");
}

}  // namespace

Status override_text(RunSettings& run, std::string_view name, const std::optional<std::string>& value) {
  return value ? run.set(name, *value) : Status{};
}

Status override_path(RunSettings& run, std::string_view name, const std::optional<std::string>& path) {
  if (!path) return {};
  return run.set(name, path->empty() ? "" : platform::absolute(*path));
}

Status override_hgt(RunSettings& run, const std::optional<std::string>& folder) {
  if (!folder) return {};
  const int stored = run.stored().hgt_slot;
  const int slot = stored >= 0 && stored < hgt_folder_slots ? stored : 0;
  return first_error({run.set("hgt-slot", std::to_string(slot)),
                      override_path(run, "hgt-folder-" + std::to_string(slot + 1), folder)});
}

Status override_memory(RunSettings& run, const std::optional<std::string>& megabytes) {
  if (!megabytes) return {};
  if (is_digits(*megabytes)) return run.set("java-options", "-Xmx" + *megabytes + "m");
  Status checked = check_memory(*megabytes);
  return checked.ok() ? Status{"--memory: '" + *megabytes + "' is not a number of megabytes."} : checked;
}

Status apply_options(Workspace& workspace, RunSettings& run, const SplitArguments& arguments) {
  if (Status known = remember_input(workspace.settings, arguments.input); !known.ok()) return known;
  // The first map ID is fixed on every load and never stored.
  if (arguments.map_id) workspace.settings.first_map_id = *arguments.map_id;
  return first_error({override_text(run, "max-nodes", arguments.max_nodes),
                      override_text(run, "max-areas", arguments.max_areas),
                      override_text(run, "description", arguments.description),
                      override_memory(run, arguments.memory)});
}

Status apply_options(Workspace& workspace, RunSettings& run, const BuildArguments& arguments) {
  if (arguments.input) {
    if (Status known = remember_input(workspace.settings, *arguments.input); !known.ok()) return known;
  }
  return first_error(
      {override_text(run, "map-name", arguments.name), apply_fid(workspace, run, arguments.fid),
       override_text(run, "map-id", arguments.map_id), override_text(run, "style", arguments.style),
       override_path(run, "typ", arguments.typ),
       arguments.typ ? run.set("use-typ", arguments.typ->empty() ? "0" : "1") : Status{},
       override_text(run, "country", arguments.country),
       override_text(run, "description", arguments.description),
       override_path(run, "output-folder", arguments.output), override_memory(run, arguments.memory),
       override_text(run, "max-nodes", arguments.max_nodes), apply_outputs(run, arguments),
       arguments.dem ? run.set("dem", "1") : Status{}, apply_contours(run, arguments.contours),
       override_hgt(run, arguments.hgt), apply_option_lines(run, arguments.options)});
}

std::string with_option_lines(std::string_view options_text, const std::vector<std::string>& lines) {
  std::vector<std::string> all = split_lines(options_text);
  const auto end = std::find_if(all.begin(), all.end(),
                                [](const std::string& line) { return trim(line).starts_with(end_mark); });
  all.insert(end, lines.begin(), lines.end());
  return join_texts(all, crlf);
}

ExitStatus check_program_path(Session& session) {
  Workspace& workspace = session.workspace;
  switch (check_main_path(workspace, session.prompts)) {
    case AfterStartUp::ready:
      break;
    case AfterStartUp::open_settings:
      session.prompts.tell("ferrowen settings set mkgmap=FILE", Icon::warning);
      break;
    case AfterStartUp::offer_restore:
      // All settings would go back to an older state: that is a person's decision, never that of --yes.
      if (!session.prompts.person_can_answer()) break;
      session.prompts.set_chosen_file(workspace.path(file_name::settings_backup));
      if (!restore_settings(workspace, session.prompts)) break;
      fill_machine_defaults(workspace);
      if (const Status saved = savedata(workspace); !saved.ok())
        return session.fail(saved.error, ExitStatus::run_failed);
  }
  return ExitStatus::done;
}

ExitStatus save_after_run(Session& session, RunSettings& run, ExitStatus status) {
  const Status saved = run.save(status == ExitStatus::done);
  if (saved.ok()) return status;
  const ExitStatus failed = session.fail(saved.error, ExitStatus::run_failed);
  return status == ExitStatus::done ? failed : status;
}

ExitStatus stop_before_run(Session& session, RunSettings& run) {
  tell_end_of_run(session, StageResult::cancelled);
  return save_after_run(session, run, exit_status_of(StageResult::cancelled));
}

void tell_end_of_run(Session& session, StageResult result) {
  session.progress.finish();
  session.result = result_word(result);
  if (result == StageResult::failed) session.prompts.print_shown_files();
  if (result == StageResult::cancelled) session.prompts.tell("Stopped.", Icon::warning);
}

}  // namespace ferrowen
