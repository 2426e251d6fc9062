#include "pipeline/registration.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "base/date_text.hpp"
#include "base/file_set.hpp"
#include "base/files.hpp"
#include "base/registry_text.hpp"
#include "base/text.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/identifiers.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/registration_repair.hpp"
#include "pipeline/registry_turn.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_error_adding = 97, message_cancelled = 148, message_installed = 194,
              message_cannot_find = 89;
constexpr std::string_view image_of_a_device = "gmapsupp.img";
constexpr std::string_view last_used_name = "0.reg";
constexpr std::string_view temporary_part = "~tmp";
constexpr std::size_t typ_fid_offset = 0x2F;
constexpr const char* not_registered =
    "Run program as Administrator\r\nor go Tools --> 'Fix Registry Problem'\r\n"
    "Install manually : Tools -->'Create Window Installer'.\r\nor double click on .reg file.";
constexpr const char* use_another_folder =
    R"(Use c:\garmin\maps as your map target directory and recreate map.)";

bool has_ending(const std::string& path, std::string_view ending) {
  return ends_with_ignoring_case(path, ending);
}

std::string product_of(const Settings& settings) { return std::string(trim(settings.map_name)); }

// A key's name ends at a backslash, and a line at its end.
std::string product_problem(const std::string& product) {
  const auto cannot_stand = [](char c) { return c == '\\' || static_cast<unsigned char>(c) < ' '; };
  if (std::none_of(product.begin(), product.end(), cannot_stand)) return "";
  return "'" + product + "' cannot be registered: its name holds a backslash or a control character.";
}

// The files of one build by what they are.
struct MapFiles {
  std::vector<std::string> images;  // and indexes
  std::string tdb, overview, index, index_map, typ;
};

std::string existing(const std::vector<std::string>& files, const std::string& path) {
  return std::find(files.begin(), files.end(), path) == files.end() ? "" : path;
}

// The TYP that mkgmap patched ("x" + name) counts before the one that it was given.
std::string typ_of(const Settings& settings, const std::vector<std::string>& files) {
  std::string found;
  for (const std::string& path : files) {
    if (has_ending(path, ".typ") && (found.empty() || platform::name_of(path).starts_with('x'))) found = path;
  }
  if (!found.empty() || !settings.use_typ || trim(settings.typ).empty()) return found;
  for (const std::string& path : {typ_in_output_folder(settings), settings.typ}) {
    if (has_ending(path, ".typ") && file_has_content(path)) return path;
  }
  return "";
}

MapFiles sort_files(const Settings& settings, const std::vector<std::string>& files) {
  MapFiles sorted;
  for (const std::string& path : files) {
    if (has_ending(path, ".tdb")) sorted.tdb = path;
    const bool is_map = has_ending(path, ".img") || has_ending(path, ".mdx") || has_ending(path, ".tdb");
    if (is_map && !equal_ignoring_case(platform::name_of(path), image_of_a_device))
      sorted.images.push_back(path);
  }
  const std::string stem =
      sorted.tdb.substr(0, sorted.tdb.size() - std::min<std::size_t>(4, sorted.tdb.size()));
  sorted.overview = existing(files, stem + ".img");
  sorted.index = existing(files, stem + ".mdx");
  sorted.index_map = existing(files, stem + "_mdr.img");
  sorted.typ = typ_of(settings, files);
  return sorted;
}

std::string without_temporary_part(const std::string& name) { return replace_all(name, temporary_part, ""); }

// Why the folder cannot become the map's; a folder with other things in it must never be taken for a map's.
std::string folder_obstacle(const std::string& folder) {
  if (!file_exists(folder)) return "";
  if (!folder_exists(folder) || platform::is_link(folder)) return folder + " is in the way.";
  const std::vector<std::string> names = list_files(folder, {""});
  const bool holds_map = std::any_of(names.begin(), names.end(), [](const std::string& name) {
    return has_ending(name, ".tdb") || has_ending(name, ".reg");
  });
  const bool is_empty = names.empty() && list_folders(folder).empty();
  if (holds_map || is_empty) return "";
  return folder + " holds other files than those of a map. Choose another map name or output folder.";
}

// What an earlier map of this name left there and the new one does not have.
Status remove_stale(const std::string& folder, const std::vector<FileToCopy>& files) {
  for (const std::string& name : list_files(folder, {""})) {
    const bool is_map = has_ending(name, ".img") || has_ending(name, ".mdx") || has_ending(name, ".tdb") ||
                        has_ending(name, ".reg");
    const bool is_new =
        std::any_of(files.begin(), files.end(), [&](const FileToCopy& file) { return file.name == name; });
    if (!is_map || is_new) continue;
    if (Status removed = remove_file(platform::join(folder, name)); !removed.ok()) return removed;
  }
  return {};
}

// A TYP whose family is another one is ignored by the Garmin programs.
std::string with_family(std::string typ, int fid) {
  if (typ.size() < typ_fid_offset + 2) return typ;
  typ[typ_fid_offset] = static_cast<char>(fid & 0xFF);
  typ[typ_fid_offset + 1] = static_cast<char>((fid >> 8) & 0xFF);
  return typ;
}

Result<std::string> place_typ(const std::string& source, const std::string& folder, int fid) {
  if (source.empty()) return {};
  const Result<std::string> bytes = read_file(source);
  if (!bytes.ok()) return failed<std::string>(bytes.error);
  const std::string typ_folder = platform::join(folder, "typ");
  if (const Status made = make_folder(typ_folder); !made.ok()) return failed<std::string>(made.error);
  std::string path = platform::join(typ_folder, without_temporary_part(platform::name_of(source)));
  const Status written = safe_write(path, with_family(bytes.value, fid));
  return written.ok() ? Result<std::string>{path, ""} : failed<std::string>(written.error);
}

// The paths of the text, as the Garmin programs see them; the error names one that they cannot see.
Status write_paths(Registry& registry, const std::string& folder, const MapFiles& files,
                   const std::string& typ, RegistrationFacts& facts) {
  const auto in_folder = [&](const std::string& path) {
    return path.empty() ? "" : platform::join(folder, platform::name_of(path));
  };
  const std::array<std::pair<std::string*, std::string>, 6> paths = {{
      {&facts.folder, folder},
      {&facts.overview_map, in_folder(files.overview)},
      {&facts.tdb, in_folder(files.tdb)},
      {&facts.index, in_folder(files.index)},
      {&facts.index_map, in_folder(files.index_map)},
      {&facts.typ, typ},
  }};
  for (const auto& [registered, path] : paths) {
    *registered = path.empty() ? "" : registry.registered_path(path);
    if (!path.empty() && registered->empty())
      return {path + ": the Garmin programs have no path to this file."};
  }
  if (facts.index.empty() || facts.index_map.empty()) facts.index = facts.index_map = "";
  return {};
}

// Names of the values that are not in the registry as they were written.
std::vector<std::string> not_taken_over(Registry& registry, const RegistrationFacts& facts) {
  const std::string path = family_key(facts.family, facts.wow64);
  const Registry::Key family = registry.key(path);
  const Registry::Key product = registry.key(path + R"(\1)");
  std::vector<std::string> names;
  const platform::RegistryValue* id = find_value(family, "ID");
  const RegistryText wanted = parse_registry_text(registration_text(facts));
  const platform::RegistryValue& wanted_id = wanted.changes.front().values.front();
  if (id == nullptr || id->type != wanted_id.type || id->data != wanted_id.data) names.emplace_back("ID");
  const auto compare = [&](const Registry::Key& key, const char* name, const std::string& text) {
    if (!text.empty() && text_value(key, name) != text) names.emplace_back(name);
  };
  compare(family, "IDX", facts.index);
  compare(family, "MDR", facts.index_map);
  compare(family, "TYP", facts.typ);
  compare(product, "LOC", facts.folder);
  compare(product, "BMAP", facts.overview_map);
  compare(product, "TDB", facts.tdb);
  return names;
}

std::vector<std::string> paths_in(const std::string& folder) {
  std::vector<std::string> paths;
  for (const std::string& name : list_files(folder, {""}))
    paths.push_back(platform::join(folder, name));
  return paths;
}

}  // namespace

std::string registered_map_folder(const Settings& settings) {
  const std::string name = without_temporary_part(replace_all(product_of(settings), " ", "_"));
  return platform::join(platform::absolute(build_output_folder(settings)), as_file_name(name));
}

namespace {

// The folder, with its files, the TYP and the text, in this order.
Result<Registration> fill_map_folder(const Workspace& workspace, Progress& progress, Registry& registry,
                                     const MapFiles& files, Registration made, int fid) {
  std::vector<FileToCopy> copies;
  for (const std::string& path : files.images)
    copies.push_back({path, platform::name_of(path)});
  const auto show = [&](double done) {
    progress.fraction(done);
    progress.process_events();
    return !progress.stop_requested();
  };
  const Status copied = copy_file_set(copies, made.folder, show, workspace.message(message_cancelled), true);
  if (!copied.ok()) return failed<Registration>(copied.error);
  if (const Status cleared = remove_stale(made.folder, copies); !cleared.ok())
    return failed<Registration>(cleared.error);
  const Result<std::string> typ = place_typ(files.typ, made.folder, fid);
  if (!typ.ok()) return failed<Registration>(typ.error);
  if (const Status written = write_paths(registry, made.folder, files, typ.value, made.facts); !written.ok())
    return failed<Registration>(written.error);
  made.file = platform::join(made.folder, as_file_name(made.facts.family) + ".reg");
  const Status written = safe_write(made.file, encode_registry_text(registration_text(made.facts)));
  return written.ok() ? Result<Registration>{made, ""} : failed<Registration>(written.error);
}

// The family ID that the built map carries itself; an own script may have given it another one.
std::string built_fid(const std::vector<std::string>& files) {
  for (const std::string& path : files) {
    if (!has_ending(path, ".tdb")) continue;
    const std::optional<int> fid = fid_of_bytes(fid_bytes_of_tdb(read_whole_file(path)));
    if (fid) return std::to_string(*fid);
  }
  return "";
}

// True (and told) when the product or its family ID is registered already.
bool is_registered(Workspace& workspace, Prompts& prompts, Registry& registry) {
  const std::string product = product_of(workspace.settings);
  const bool told = id_exists(workspace, prompts, {}) != Registered::free;
  const bool key_exists = registry.key(family_key(product, registry.is_64bit())).exists;
  const std::string own_fid = built_fid(workspace.built_files);
  const std::string fid = own_fid.empty() ? workspace.settings.fid : own_fid;
  if (!told && !key_exists && !comma_list_holds(workspace.registered_fids, fid)) return false;
  prompts.tell("FID " + fid + " exists in Mapsource. Can't upload map.", Icon::warning);
  return true;
}

}  // namespace

Result<Registration> create_mapsourcefiles(const Workspace& workspace, Progress& progress, Registry& registry,
                                           const std::vector<std::string>& built_files) {
  const Settings& settings = workspace.settings;
  const MapFiles files = sort_files(settings, built_files);
  if (files.tdb.empty() || files.overview.empty())
    return failed<Registration>(workspace.message(message_cannot_find) +
                                (files.tdb.empty() ? "the TDB file" : "the overview map") + " of this map.");
  Registration made{registered_map_folder(settings), "", {}};
  made.facts.family = product_of(settings);
  made.facts.fid_bytes = fid_bytes_of_tdb(read_whole_file(files.tdb));
  made.facts.wow64 = registry.is_64bit();
  const std::optional<int> fid = fid_of_bytes(made.facts.fid_bytes);
  if (!fid) return failed<Registration>(files.tdb + ": this file does not begin as a TDB file does.");
  if (const std::string obstacle = folder_obstacle(made.folder); !obstacle.empty())
    return failed<Registration>(obstacle);
  const bool is_new = !file_exists(made.folder);
  const std::string folder = made.folder;
  Result<Registration> filled = fill_map_folder(workspace, progress, registry, files, std::move(made), *fid);
  if (!filled.ok() && is_new) {
    std::error_code ignored;  // nothing but what was just put there
    std::filesystem::remove_all(platform::file_system_path(folder), ignored);
  }
  return filled;
}

Status regi(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
            const Registration& registration, const std::string& detail) {
  const std::string last_used = platform::join(registration.folder, last_used_name);
  const std::string text = last_used_text({registration.facts.fid_bytes, registry.user_identifier(), detail});
  if (Status written = safe_write(last_used, encode_registry_text(text)); !written.ok()) return written;
  const auto tick = [&] { progress.process_events(); };
  for (const std::string& file : {registration.file, last_used}) {
    if (Status imported = registry.import_file(file, tick); !imported.ok()) return imported;
  }
  querymapsource(workspace, registry, prompts, progress);
  const std::vector<std::string> missing = not_taken_over(registry, registration.facts);
  if (missing.empty()) return {};
  return {registration.facts.family + ": " + join_texts(missing, ", ") + " cannot be read back"};
}

void tell_not_registered(const Workspace& workspace, Prompts& prompts, const std::string& reason) {
  prompts.tell(workspace.message(message_error_adding) + "\r\n" + reason, Icon::critical);
  prompts.tell(not_registered, Icon::warning);
  const std::string parent = platform::folder_of(registered_map_folder(workspace.settings));
  if (!platform::folder_is_writable(parent)) prompts.tell(use_another_folder, Icon::warning);
}

namespace {

// Half a family would only confuse the Garmin programs; what can be taken back is.
std::string take_back(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
                      const Registration& registration) {
  const Status removed = registry.remove_key(family_key(registration.facts.family, registration.facts.wow64),
                                             [&] { progress.process_events(); });
  querymapsource(workspace, registry, prompts, progress);
  return removed.ok() ? "" : "\r\n" + removed.error;
}

// With the registry to itself: nobody else registers between the look and the import.
StageResult register_in_turn(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
                             BuildReport& report, const HeldFiles& held) {
  querymapsource(workspace, registry, prompts, progress);
  // Where it cannot be told what is registered, nothing is added.
  if (const std::string problem = registry.problem(); !problem.empty()) {
    prompts.tell(workspace.message(message_error_adding) + "\r\n" + problem, Icon::critical);
    return StageResult::failed;
  }
  if (is_registered(workspace, prompts, registry)) return StageResult::stopped;
  const std::string folder = registered_map_folder(workspace.settings);
  if (!release_files(workspace, prompts, progress, paths_in(folder), held)) return StageResult::stopped;
  const Result<Registration> made =
      create_mapsourcefiles(workspace, progress, registry, workspace.built_files);
  if (!made.ok()) {
    prompts.tell(workspace.message(message_error_adding) + "\r\n" + made.error, Icon::critical);
    if (!platform::folder_is_writable(platform::folder_of(folder)))
      prompts.tell(use_another_folder, Icon::warning);
    return StageResult::failed;
  }
  if (const Status imported = regi(workspace, prompts, progress, registry, made.value); !imported.ok()) {
    const std::string left = take_back(workspace, prompts, progress, registry, made.value);
    tell_not_registered(workspace, prompts, imported.error + left);
    return StageResult::failed;
  }
  report.registered_folder = made.value.folder;
  const std::string text = "'" + made.value.facts.family + "' " + workspace.message(message_installed);
  progress.status(text);
  prompts.tell(text);
  return StageResult::done;
}

}  // namespace

StageResult register_built_map(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
                               BuildReport& report, const HeldFiles& held) {
  const std::string product = product_of(workspace.settings);
  if (const std::string problem = product_problem(product); !problem.empty()) {
    prompts.tell(problem, Icon::warning);
    return StageResult::stopped;
  }
  RegistryTurn turn;
  if (const Status mine = turn.take(progress); !mine.ok()) {
    prompts.tell(workspace.message(message_error_adding) + "\r\n" + mine.error, Icon::critical);
    return StageResult::failed;
  }
  return register_in_turn(workspace, prompts, progress, registry, report, held);
}

BuildServices build_services(Prompts& prompts, Progress& progress) {
  BuildServices services;
  services.collect_registered = [&prompts, &progress,
                                 collected = std::make_shared<bool>(false)](Workspace& workspace) {
    // Once for a build; the checks ask for it again where the settings want that.
    if (*collected && !workspace.settings.always_collect_fids) return;
    *collected = true;
    querymapsource(workspace, *open_registry(workspace), prompts, progress);
  };
  services.register_built = [&prompts, &progress](Workspace& workspace, BuildReport& report) {
    return register_built_map(workspace, prompts, progress, *open_registry(workspace), report);
  };
  return services;
}

CleanupServices cleanup_services(Workspace& workspace, Prompts& prompts, Progress& progress) {
  CleanupServices services;
  services.registered_folders = [&] {
    using Folders = std::vector<std::string>;
    const std::unique_ptr<Registry> registry = open_registry(workspace);
    if (const std::string problem = registry->problem(); !problem.empty()) return failed<Folders>(problem);
    Result<Folders> folders;
    for (const InstalledMap& map : querymapsource(workspace, *registry, prompts, progress)) {
      if (!map.path.empty()) folders.value.push_back(map.path);
    }
    return folders;
  };
  services.import_registration = [&](const std::string& file) {
    return import_registration(*open_registry(workspace), progress, file);
  };
  return services;
}

}  // namespace ferrowen
