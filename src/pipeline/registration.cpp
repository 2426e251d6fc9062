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
#include "pipeline/map_folder.hpp"
#include "pipeline/registration_repair.hpp"
#include "pipeline/registry_turn.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_error_adding = 97, message_cancelled = 148, message_installed = 194,
              message_cannot_find = 89, message_name_exists = 229;
constexpr std::string_view image_of_a_device = "gmapsupp.img";
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

// A TYP whose family is another one is ignored by the Garmin programs.
std::string with_family(std::string typ, int fid) {
  if (typ.size() < typ_fid_offset + 2) return typ;
  typ[typ_fid_offset] = static_cast<char>(fid & 0xFF);
  typ[typ_fid_offset + 1] = static_cast<char>((fid >> 8) & 0xFF);
  return typ;
}

// What is written for the map itself lies here until all files go into its folder together.
class Staging {
 public:
  explicit Staging(const Workspace& workspace) : m_folder(workspace.path("system/registration")) {}
  ~Staging() {
    for (const std::string& path : m_files)
      static_cast<void>(remove_file(path));  // a copy that nothing needs any more
    std::error_code ignored;
    std::filesystem::remove(platform::file_system_path(m_folder), ignored);
  }
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;

  // Adds the file to those that are copied.
  Status add(std::vector<FileToCopy>& copies, const std::string& name, std::string_view bytes) {
    if (Status made = make_folder(m_folder); !made.ok()) return made;
    const std::string path = platform::join(m_folder, std::to_string(m_files.size()));
    m_files.push_back(path);
    if (Status written = safe_write(path, bytes); !written.ok()) return written;
    copies.push_back({path, name});
    return {};
  }

 private:
  std::string m_folder;
  std::vector<std::string> m_files;
};

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

namespace {

// All files of the map: the built ones, the TYP and the text, with the list of them.
Status gather_files(Registry& registry, const MapFiles& files, int fid, Registration& made, Staging& staging,
                    std::vector<FileToCopy>& copies) {
  for (const std::string& path : files.images)
    copies.push_back({path, platform::name_of(path)});
  std::string typ;
  if (!files.typ.empty()) {
    const std::string name = without_temporary_part(platform::name_of(files.typ));
    const Result<std::string> bytes = read_file(files.typ);
    if (!bytes.ok()) return {bytes.error};
    typ = platform::join(platform::join(made.folder, "typ"), name);
    if (Status staged = staging.add(copies, "typ/" + name, with_family(bytes.value, fid)); !staged.ok())
      return staged;
  }
  if (Status seen = write_paths(registry, made.folder, files, typ, made.facts); !seen.ok()) return seen;
  const std::string text = as_file_name(made.facts.family) + ".reg";
  made.file = platform::join(made.folder, text);
  if (Status staged = staging.add(copies, text, encode_registry_text(registration_text(made.facts)));
      !staged.ok())
    return staged;
  return staging.add(copies, std::string(map_file_list), map_file_list_text(copies));
}

Result<Registration> fill_map_folder(const Workspace& workspace, Progress& progress, Registry& registry,
                                     const MapFiles& files, Registration made, int fid) {
  Staging staging(workspace);
  std::vector<FileToCopy> copies;
  if (const Status gathered = gather_files(registry, files, fid, made, staging, copies); !gathered.ok())
    return failed<Registration>(gathered.error);
  if (const std::string foreign = foreign_file(made.folder, copies); !foreign.empty())
    return failed<Registration>(foreign + " was not put there by a registration and is not replaced.");
  const std::vector<std::string> older = listed_map_files(made.folder);
  const auto show = [&](double done) {
    progress.fraction(done);
    progress.process_events();
    return !progress.stop_requested();
  };
  const Status copied = copy_file_set(copies, made.folder, show, workspace.message(message_cancelled), true);
  if (!copied.ok()) return failed<Registration>(copied.error);
  const Status cleared = remove_older_files(made.folder, older, copies);
  return cleared.ok() ? Result<Registration>{made, ""} : failed<Registration>(cleared.error);
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
  const bool name_told = id_exists(workspace, prompts, {}) == Registered::name_exists;
  const bool key_exists = registry.key(family_key(product, registry.is_64bit())).exists;
  const std::string own_fid = built_fid(workspace.built_files);
  const std::string fid = own_fid.empty() ? workspace.settings.fid : own_fid;
  if (comma_list_holds(workspace.registered_fids, fid))
    prompts.tell("FID " + fid + " exists in Mapsource. Can't upload map.", Icon::warning);
  else if (key_exists && !name_told)
    prompts.tell(workspace.message(message_name_exists) + product, Icon::warning);
  else
    return name_told;
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
  return fill_map_folder(workspace, progress, registry, files, std::move(made), *fid);
}

Status regi(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
            const Registration& registration, const std::string& detail) {
  const std::string last_used = platform::join(registration.folder, std::string(last_used_registration));
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

bool holds_family(Registry& registry, const Registration& registration) {
  const std::string families = family_key("", registration.facts.wow64);
  const std::vector<std::string> names = registry.key(families.substr(0, families.size() - 1)).subkeys;
  return std::find(names.begin(), names.end(), registration.facts.family) != names.end();
}

// Half a family would only confuse the Garmin programs; what can be taken back is. Only a key that the import
// made: one that was there before, under another spelling of the same name, is somebody else's.
std::string take_back(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
                      const Registration& registration) {
  registry.refresh();
  Status removed;
  if (holds_family(registry, registration))
    removed = registry.remove_key(family_key(registration.facts.family, registration.facts.wow64),
                                  [&] { progress.process_events(); });
  querymapsource(workspace, registry, prompts, progress);
  return removed.ok() ? "" : "\r\n" + removed.error;
}

// With the registry to itself: nobody else registers between the look and the import.
StageResult register_in_turn(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
                             BuildReport& report, const HeldFiles& held) {
  std::vector<InstalledMap> maps = querymapsource(workspace, registry, prompts, progress);
  const std::vector<InstalledMap> stored = maps_of_own_store(workspace, registry, prompts);
  maps.insert(maps.end(), stored.begin(), stored.end());
  // Where it cannot be told what is registered, nothing is added.
  if (const std::string problem = registry.problem(); !problem.empty()) {
    prompts.tell(workspace.message(message_error_adding) + "\r\n" + problem, Icon::critical);
    return StageResult::failed;
  }
  if (is_registered(workspace, prompts, registry)) return StageResult::stopped;
  if (const std::string obstacle = registration_obstacle(workspace.settings, maps); !obstacle.empty()) {
    prompts.tell(obstacle, Icon::warning);
    return StageResult::stopped;
  }
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
  const bool was_there = holds_family(registry, made.value);
  if (const Status imported = regi(workspace, prompts, progress, registry, made.value); !imported.ok()) {
    const std::string left = was_there ? "" : take_back(workspace, prompts, progress, registry, made.value);
    tell_not_registered(workspace, prompts, imported.error + left);
    return StageResult::failed;
  }
  report.registered_folder = made.value.folder;
  progress.status("");
  prompts.tell("'" + made.value.facts.family + "' " + workspace.message(message_installed));
  return StageResult::done;
}

}  // namespace

StageResult register_built_map(Workspace& workspace, Prompts& prompts, Progress& progress, Registry& registry,
                               BuildReport& report, const HeldFiles& held) {
  RegistryTurn turn;
  if (const Status mine = turn.take(progress); !mine.ok()) {
    prompts.tell(workspace.message(message_error_adding) + "\r\n" + mine.error, Icon::critical);
    return StageResult::failed;
  }
  return register_in_turn(workspace, prompts, progress, registry, report, held);
}

namespace {

std::string obstacle_before_build(const Workspace& workspace, Prompts& prompts) {
  const std::unique_ptr<Registry> registry = open_registry(workspace);
  // One that cannot be read has been told; the map is built all the same, for its other uses.
  if (!registry->problem().empty()) return "";
  std::vector<InstalledMap> maps = installed_maps(*registry, workspace.messages, prompts);
  const std::vector<InstalledMap> stored = maps_of_own_store(workspace, *registry, prompts);
  maps.insert(maps.end(), stored.begin(), stored.end());
  return registration_obstacle(workspace.settings, maps);
}

}  // namespace

BuildServices build_services(Prompts& prompts, Progress& progress, const HeldFiles& held) {
  BuildServices services;
  services.collect_registered = [&prompts, &progress](Workspace& workspace) {
    // Once at the start of the program, and at every check where the settings want that.
    if (workspace.registered_are_known && !workspace.settings.always_collect_fids) return;
    querymapsource(workspace, *open_registry(workspace), prompts, progress);
  };
  services.registration_obstacle = [&prompts](const Workspace& workspace) {
    return obstacle_before_build(workspace, prompts);
  };
  services.release_files = [&prompts, &progress, held](Workspace& workspace,
                                                       const std::vector<std::string>& files) {
    return release_files(workspace, prompts, progress, files, held);
  };
  services.register_built = [&prompts, &progress, held](Workspace& workspace, BuildReport& report) {
    return register_built_map(workspace, prompts, progress, *open_registry(workspace), report, held);
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
    for (const InstalledMap& map : maps_of_own_store(workspace, *registry, prompts)) {
      if (!map.path.empty()) folders.value.push_back(map.path);
    }
    if (const std::unique_ptr<Registry> store = store_beside(workspace, *registry);
        store && !store->problem().empty())
      return failed<Folders>(store->problem());
    return folders;
  };
  services.import_registration = [&](const std::string& file) {
    const std::unique_ptr<Registry> registry = open_registry(workspace);
    Status recovered = recovery_problem(*registry, file);
    if (recovered.ok()) recovered = import_registration(*registry, progress, file);
    querymapsource(workspace, *registry, prompts, progress);
    return recovered;
  };
  services.take_turn = [&](RegistryTurn& turn) { return turn.take(progress); };
  return services;
}

}  // namespace ferrowen
