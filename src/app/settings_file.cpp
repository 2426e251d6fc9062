#include "app/settings_file.hpp"

#include <algorithm>

#include "app/save_name.hpp"
#include "app/start_up.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view backup_ending = ".mpdat";
constexpr std::size_t default_lines = 500;

#ifdef _WIN32
constexpr std::string_view reset_basecamp = R"(c:\program files (x86)\garmin\basecamp\basecamp.exe)";
constexpr std::string_view reset_map_folder = R"(e:\garmin\maps)";
#else
constexpr std::string_view reset_basecamp =
    "{user}/.wine/drive_c/program files (x86)/garmin/basecamp/basecamp.exe";
constexpr std::string_view reset_map_folder = "/media/garmin/maps";
#endif

// Older files were written in the system's code page; the byte 250 in them stands for a blank in any
// encoding.
std::string decoded(std::string_view bytes) {
  constexpr std::string_view code_250 = "\xFA";
  if (is_valid_utf8(bytes)) return std::string(bytes);
  std::vector<std::string> pieces = split(bytes, code_250);
  for (std::string& piece : pieces)
    piece = decode_tool_text(piece);
  return join_texts(pieces, code_250);
}

std::string program_folder_text(const Workspace& workspace) {
  const std::string current = workspace.path(file_name::settings);
  return read_whole_file(file_exists(current) ? current : workspace.path(file_name::previous_settings));
}

// Characters that no settings file holds.
bool is_foreign(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < ' ' && c != '\r' && c != '\n' && c != '\t' && c != '\x1f';
}

bool holds_foreign(std::string_view text) { return std::any_of(text.begin(), text.end(), is_foreign); }

// Says why a file is no backup: loading one that is none would silently give a record of defaults.
Status check_backup(const Workspace& workspace, const std::string& path) {
  const Result<std::string> text = read_file(path);
  if (!text.ok()) return {text.error};
  if (trim(text.value).empty()) return {workspace.message(77) + path};
  return {holds_foreign(text.value) ? path + ": this is no backup of settings." : ""};
}

std::string source_text(const Workspace& workspace, const SettingsSource& source) {
  if (std::holds_alternative<FromProgramFolder>(source)) return decoded(program_folder_text(workspace));
  if (const auto* path = std::get_if<std::string>(&source)) return decoded(read_whole_file(*path));
  std::string blank_lines;
  for (std::size_t line = 0; line < default_lines; ++line)
    blank_lines += " \r\n";
  return blank_lines;
}

}  // namespace

void loaddata(Workspace& workspace, Prompts& prompts, const SettingsSource& source) {
  LoadedSettings loaded = parse_settings(source_text(workspace, source), workspace.folder.path());
  workspace.settings = std::move(loaded.settings);
  for (const std::string& note : loaded.notes)
    prompts.tell(note, Icon::warning);
}

Status settings_are_readable(const Workspace& workspace) {
  for (const std::string_view name : {file_name::settings, file_name::previous_settings}) {
    const std::string path = workspace.path(name);
    if (file_exists(path)) return {read_file(path).error};
  }
  return {};
}

Status savedata(const Workspace& workspace, const std::string& target) {
  return safe_write(target.empty() ? workspace.path(file_name::settings) : target,
                    settings_text(workspace.settings));
}

void put_damaged_settings_aside(Workspace& workspace, Prompts& prompts) {
  const std::string path = workspace.path(file_name::settings);
  if (!holds_foreign(read_whole_file(path))) return;
  const std::string kept = path + ".damaged";
  const Status moved = rename_file(path, kept);
  workspace.settings_were_damaged = true;
  std::string text = path + ": the settings file is damaged.\r\n";
  text += moved.ok() ? "It was kept as " + kept : moved.error;
  const std::string backup = workspace.path(file_name::settings_backup);
  if (file_exists(backup)) text += "\r\n\r\nAvailable backup:\r\n" + backup;
  prompts.tell(text, Icon::warning);
}

Status save_on_exit(const Workspace& workspace) {
  Status saved = savedata(workspace);
  // The backup is what a damaged settings file is replaced from.
  if (workspace.settings_were_damaged) return saved;
  const Status backed_up = savedata(workspace, workspace.path(file_name::settings_backup));
  return saved.ok() ? backed_up : saved;
}

bool back_up_settings(const Workspace& workspace, Prompts& prompts) {
  const auto target =
      name_to_write(workspace.messages, prompts,
                    {"", {{"Backup Files (*.mpdat)", "*.mpdat"}}, "ferrow6.mpdat", true}, backup_ending);
  if (!target) return false;
  if (const Status saved = savedata(workspace, *target); !saved.ok()) {
    prompts.tell(saved.error, Icon::critical);
    return false;
  }
  prompts.tell(workspace.message(152));
  return true;
}

bool restore_settings(Workspace& workspace, Prompts& prompts) {
  const auto chosen = prompts.choose_file({"", {{"DAT Files (*.mpdat)", "*.mpdat"}}, "", false});
  if (!chosen) return false;
  if (!file_exists(*chosen) || folder_exists(*chosen)) {
    prompts.tell(workspace.message(153), Icon::warning);
    return false;
  }
  if (const Status sound = check_backup(workspace, *chosen); !sound.ok()) {
    prompts.tell(sound.error, Icon::critical);
    return false;
  }
  if (prompts.ask(workspace.message(154), Buttons::yes_no_cancel) != Answer::yes) return false;
  loaddata(workspace, prompts, *chosen);
  workspace.settings_were_damaged = false;
  fill_machine_defaults(workspace);
  prompts.tell(workspace.message(155));
  return true;
}

bool reset_settings(Workspace& workspace, Prompts& prompts) {
  if (prompts.ask("This will remove all previous settings\r\n\r\nAre you sure?", Buttons::yes_no,
                  Icon::warning) != Answer::yes)
    return false;
  loaddata(workspace, prompts, FromDefaults{});
  take_option_sets(workspace);
  Settings& settings = workspace.settings;
  settings.input = workspace.path(file_name::sample_map);
  settings.typ = workspace.path(file_name::default_typ);
  settings.basecamp = replace_all(reset_basecamp, "{user}", platform::home_folder());
  // Another drive than at the first start: a reset is what users do whose maps live on their second disk.
  settings.map_folder = reset_map_folder;
  fill_machine_defaults(workspace);
  return true;
}

}  // namespace ferrowen
