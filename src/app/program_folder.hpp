// The program folder: where it is, the subfolders that start-up guarantees, the files known by name.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"

namespace ferrowen {

class ProgramFolder {
 public:
  ProgramFolder() = default;
  explicit ProgramFolder(std::string path) : m_path(std::move(path)) {}

  [[nodiscard]] const std::string& path() const { return m_path; }
  // Path of a file or subfolder; parts are separated by "/" here and by the system's separator in the result.
  [[nodiscard]] std::string operator/(std::string_view name) const;

  // Creates the missing subfolders of the layout, parents before children.
  [[nodiscard]] Status create_layout() const;
  // Copies shipped assets that are missing here (sample map, default TYP, land cells, option sets, ...).
  // `assets` is the folder that holds them; missing assets are skipped. Files of an older version are
  // replaced unless they were changed.
  [[nodiscard]] Status copy_assets(const std::string& assets) const;

 private:
  [[nodiscard]] Status copy_languages(const std::string& shipped) const;
  std::string m_path;
};

// Subfolders in the order of creation, separated by "/".
const std::vector<std::string_view>& program_subfolders();
// Names of the assets that are copied into a new program folder.
const std::vector<std::string_view>& shipped_assets();

// `home` (from --home) wins; then FERROWEN_HOME; then the system's rule: Windows takes the folder of the
// executable when it can be written and was not installed for all users, else %LOCALAPPDATA%\Ferrowen;
// elsewhere the folder of the executable when it holds a settings file, else the user's data folder +
// "ferrowen". Always absolute.
std::string find_program_folder(const std::optional<std::string>& home);
// Folder of the shipped assets; "" when none is found.
std::string find_assets_folder();

namespace file_name {
inline constexpr std::string_view settings = "ferrow6.dat";
inline constexpr std::string_view previous_settings = "ferrow5.dat";
inline constexpr std::string_view settings_backup = "backupsettings.mpdat";
inline constexpr std::string_view mkgmap_options = "mkopts";
inline constexpr std::string_view splitter_options = "splopts";
inline constexpr std::string_view map_ids = "mapids.txt";
inline constexpr std::string_view map_fids = "mapfids.txt";
inline constexpr std::string_view logging_properties = "logging.properties";
inline constexpr std::string_view mkgmap_log = "mkgmap.log.0";
inline constexpr std::string_view own_script = "myscript.txt";
inline constexpr std::string_view last_run = "last_run.txt";
inline constexpr std::string_view error_stream = "dos.txt";
inline constexpr std::string_view default_typ = "mapnik65001.typ";
inline constexpr std::string_view sample_map = "faroe-islands.osm.pbf";
inline constexpr std::string_view land_cells = "hgt_land";
inline constexpr std::string_view script_template = "newscrpt";
inline constexpr std::string_view tag_templates = "commands";
inline constexpr std::string_view last_file = "system/lastfile";
inline constexpr std::string_view lock = "system/lock";
inline constexpr std::string_view handed_over = "system/handed-over";
// Left beside the Windows programs by a setup for all users.
inline constexpr std::string_view for_all_users = "for-all-users.txt";
#ifdef _WIN32
inline constexpr std::string_view run_script = "run.bat";
#else
inline constexpr std::string_view run_script = "run.sh";
#endif
}  // namespace file_name

}  // namespace ferrowen
