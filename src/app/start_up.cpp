#include "app/start_up.hpp"

#include <algorithm>

#include "app/language_file.hpp"
#include "app/option_sets.hpp"
#include "app/registry.hpp"
#include "app/settings_file.hpp"
#include "app/tools.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

constexpr const char* no_styles = "No styles could be found.Default style will be used";

void fill(std::string& setting, const std::string& value) {
  if (setting.empty()) setting = value;
}

#ifndef _WIN32
// A program of a prefix, whatever the case of its path. One that is gone is looked for again; where there is
// none the usual place is proposed.
void fill_from_prefix(std::string& setting, const std::string& drive, const std::string& program,
                      const std::string& usual) {
  if (!setting.empty() && file_exists(setting)) return;
  for (const char* programs : {"program files (x86)/", "program files/", ""}) {
    const std::string found = find_ignoring_case(drive, programs + program);
    if (found.empty()) continue;
    setting = found;
    return;
  }
  if (!usual.empty()) fill(setting, drive + usual);
}
#endif

void fill_garmin_programs(Settings& settings) {
#ifdef _WIN32
  const std::string programs = "c:\\program files";
  const std::string basecamp = std::string(platform::is_64bit_system() ? " (x86)" : "");
  fill(settings.basecamp, programs + basecamp + "\\garmin\\basecamp\\basecamp.exe");
  const std::string mapsource = programs + "\\garmin\\mapsource.exe";
  fill(settings.mapsource, file_exists(mapsource) ? mapsource : "c:\\garmin\\mapsource.exe");
  const std::string app_data = platform::roaming_data_folder();
  // "Mapource" is how the folder that is probed has always been spelt.
  fill(settings.mapsource_tile_cache, app_data + "\\Garmin\\Mapource\\TileCache");
  fill(settings.basecamp_tile_cache,
       replace_all(lower_ascii(app_data), "\\roaming", "\\local") + "\\Garmin\\BaseCamp\\TileCache");
#else
  const std::string prefix = wine_prefix_in_use(settings);
  const std::string drive = (prefix.empty() ? platform::home_folder() + "/.wine" : prefix) + "/drive_c";
  fill_from_prefix(settings.basecamp, drive, "garmin/basecamp/basecamp.exe",
                   "/program files (x86)/garmin/basecamp/basecamp.exe");
  fill_from_prefix(settings.mapsource, drive, "garmin/mapsource.exe", "/garmin/mapsource.exe");
  fill_from_prefix(settings.home_port, drive, "garmin/homeport/homeport.exe", "");
#endif
}

// The default TYP, else the first one in the program folder.
void fill_default_typ(Workspace& workspace) {
  std::string& typ = workspace.settings.typ;
  if (file_exists(typ) || typ != workspace.path(file_name::default_typ)) return;
  const std::vector<std::string> found = list_files(workspace.folder.path(), {".typ", ".TYP"});
  if (!found.empty()) typ = workspace.path(found.front());
}

// A fresh installation starts with the shipped options, and with the sample map as its input.
void offer_sample(Workspace& workspace) {
  take_option_sets(workspace);
  if (const std::string sample = workspace.path(file_name::sample_map); file_exists(sample))
    fill(workspace.settings.input, sample);
  // Something has to come out of a first build; a device image is of use to everybody.
  workspace.settings.device_image = true;
}

void read_identifier_lists(Workspace& workspace) {
  workspace.device_map_ids = ",";
  if (const std::string path = workspace.path(file_name::map_ids); file_exists(path))
    workspace.device_map_ids = read_whole_file(path);
  workspace.avoided_fids = read_whole_file(workspace.path(file_name::map_fids));
}

// Before anything else is told, so that it is told in the person's language. The choice is kept: the file may
// be on a disk that is not there now.
void load_chosen_language(Workspace& workspace, Prompts& prompts) {
  const Status chosen = choose_language(workspace, workspace.settings.language);
  if (chosen.ok()) return;
  use_english(workspace);
  prompts.tell(chosen.error + "\r\n\r\nEnglish is used.", Icon::warning);
}

Status prepare_folder(Workspace& workspace) {
  if (Status made = workspace.folder.create_layout(); !made.ok()) return made;
  const std::string assets = find_assets_folder();
  return assets.empty() ? Status{} : workspace.folder.copy_assets(assets);
}

}  // namespace

std::string split_folder(const Workspace& workspace) {
  const std::string& folder = workspace.settings.split_folder;
  return trim(folder).empty() ? workspace.path("temp") : platform::absolute(folder);
}

std::string build_output_folder(const Settings& settings) {
  return settings.output_folder.empty() ? settings.map_folder : settings.output_folder;
}

Status start_up(Workspace& workspace, Prompts& prompts) {
  if (Status prepared = prepare_folder(workspace); !prepared.ok()) return prepared;
  const bool fresh = !file_exists(workspace.path(file_name::settings)) &&
                     !file_exists(workspace.path(file_name::previous_settings));
  put_damaged_settings_aside(workspace, prompts);
  loaddata(workspace, prompts);
  load_chosen_language(workspace, prompts);
  if (fresh) offer_sample(workspace);
  fill_machine_defaults(workspace);
  if (style_names(workspace.settings).empty()) prompts.tell(no_styles);
  read_identifier_lists(workspace);
  if (trim(workspace.settings.map_name).empty()) workspace.settings.map_name = "Demo Map";
  // It may lie on a disk that is not there now; only the settings can put that right, so the program goes on.
  if (const Status made = make_folder(workspace.settings.archive_folder); !made.ok())
    prompts.tell(made.error, Icon::warning);
  return {};
}

void query_java_version(Workspace& workspace, Prompts& prompts, Progress& progress) {
  workspace.java_version = java_not_installed;
  const std::string& set_java = workspace.settings.java;
  if (!set_java.empty() && !file_exists(set_java)) {
    prompts.tell(workspace.message(89) + set_java, Icon::warning);
    return;
  }
  OutputHandler handler(workspace.flags, progress);
  handler.show_all_output = workspace.settings.show_all_output;
  DOSOutputs java(workspace.flags, prompts, progress);
  java.environment = tool_environment(workspace.settings);
  java.ReceiveOutputs = [&](std::string_view chunk) { handler.objDOS_ReceiveOutputs(chunk); };
  workspace.java_version = java_version_text(java.ExecuteCommand("java -version"));
  handler.flush();
}

AfterStartUp check_main_path(const Workspace& workspace, Prompts& prompts) {
  const std::string& path = workspace.settings.mkgmap_jar;
  if (path.empty() || file_exists(path)) return AfterStartUp::ready;
  if (file_exists(workspace.path(file_name::settings_backup))) {
    prompts.tell("Cannot find " + path + "\r\n\r\nAvailable backup:", Icon::warning);
    return AfterStartUp::offer_restore;
  }
  prompts.tell(workspace.message(89) + path + " --> " + std::string(page_name(Page::tools)), Icon::warning);
  return AfterStartUp::open_settings;
}

bool essential_tools_present(const Workspace& workspace) {
  return workspace.java_version != java_not_installed && file_has_content(workspace.settings.mkgmap_jar) &&
         file_has_content(workspace.settings.splitter_jar);
}

std::string java_version_text(std::string_view output) {
  if (!contains(lower_ascii(output), "build")) return java_not_installed;
  for (const std::string& line : split_lines(output)) {
    // Java tells of options taken from the environment before its version.
    if (line.starts_with("Picked up ") || line.starts_with("NOTE: Picked up ")) continue;
    return replace_all(replace_all(line, "\r", ""), "\"", "");
  }
  return java_not_installed;
}

std::string java_label(std::string_view version_text) { return replace_all(version_text, "version", ""); }

std::vector<std::string> style_names(const Settings& settings) {
  return list_folders(settings.styles_folder);
}

void take_option_sets(Workspace& workspace) {
  Settings& settings = workspace.settings;
  const auto first_set = [&](OptionKeeper keeper) {
    return load_option_sets(workspace, keeper).value;  // a file that cannot be read is told in the editor
  };
  if (const OptionSets sets = first_set(OptionKeeper::mkgmap); !sets.sets.empty())
    fill(settings.options_text, sets.sets.front().text);
  if (const OptionSets sets = first_set(OptionKeeper::splitter);
      !sets.sets.empty() && !trim(sets.sets.front().text).empty())
    settings.splitter_options = sets.sets.front().text;
}

void fill_machine_defaults(Workspace& workspace) {
  fill_default_typ(workspace);
  fill_garmin_programs(workspace.settings);
  find_tools(workspace.settings);
  auto& clip_folders = workspace.settings.clip_folders;
  const bool chosen = std::any_of(clip_folders.begin(), clip_folders.end(),
                                  [](const std::string& folder) { return !trim(folder).empty(); });
  if (chosen) return;
  clip_folders.front() = workspace.path(default_clip_folder);
  workspace.settings.clip_slot = 0;
}

}  // namespace ferrowen
