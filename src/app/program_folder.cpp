#include "app/program_folder.hpp"

#include "app/shipped_files.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

std::string ProgramFolder::operator/(std::string_view name) const {
  const std::string native = platform::separator == '/' ? std::string(name) : replace_all(name, "/", "\\");
  return platform::join(m_path, native);
}

Status ProgramFolder::create_layout() const {
  if (Status made = make_folder(m_path); !made.ok()) return made;
  for (const std::string_view name : program_subfolders()) {
    if (Status made = make_folder(*this / name); !made.ok()) return made;
  }
  return {};
}

namespace {

constexpr std::string_view languages_folder = "languages";

bool same_content(const std::string& one, const std::string& other) {
  return file_size(one) == file_size(other) && read_whole_file(one) == read_whole_file(other);
}

}  // namespace

Status ProgramFolder::copy_assets(const std::string& assets) const {
  ShippedFiles shipped(*this / "system/shipped");
  for (const std::string_view name : shipped_assets()) {
    const std::string source = platform::join(assets, name);
    const std::string target = *this / name;
    if (source == target || !file_exists(source)) continue;
    if (Status copied = shipped.update(std::string(name), source, target); !copied.ok()) return copied;
  }
  shipped.save();
  return copy_languages(platform::join(assets, languages_folder));
}

// A new version has new texts: its file takes the place of the one that was shipped before, unless somebody
// has changed that. The copy in `system` tells.
Status ProgramFolder::copy_languages(const std::string& shipped) const {
  const std::vector<std::string> names = list_files(shipped, {".m5l"});
  const std::string kept_folder = *this / "system/languages";
  if (Status made = names.empty() ? Status{} : make_folder(kept_folder); !made.ok()) return made;
  for (const std::string& name : names) {
    const std::string source = platform::join(shipped, name);
    const std::string target = platform::join(*this / languages_folder, name);
    const std::string kept = platform::join(kept_folder, name);
    if (source == target) continue;
    const bool is_ours = !file_exists(target) || same_content(target, kept) || same_content(target, source);
    for (const std::string& copy : {target, kept}) {
      if (!is_ours || same_content(copy, source)) continue;
      if (Status copied = copy_file(source, copy); !copied.ok()) return copied;
    }
  }
  return {};
}

const std::vector<std::string_view>& program_subfolders() {
  static const std::vector<std::string_view> folders = {
      "files",     "styles",     "temp",         "archives",      "gmapsupp", "scripts",
      "hgt",       "hgt/Europe", "hgt/Europe/3", "hgt/Australia", "backup",   "backup/args",
      "languages", "args",       "mps",          "system",        "plugs",
  };
  return folders;
}

const std::vector<std::string_view>& shipped_assets() {
  static const std::vector<std::string_view> assets = {
      file_name::sample_map,         file_name::default_typ,    file_name::land_cells,
      file_name::logging_properties, file_name::mkgmap_options, file_name::splitter_options,
      file_name::script_template,    file_name::tag_templates,
  };
  return assets;
}

std::string find_program_folder(const std::optional<std::string>& home) {
  if (home && !home->empty()) return platform::absolute(*home);
  if (const auto variable = platform::environment("FERROWEN_HOME"); variable && !variable->empty())
    return platform::absolute(*variable);
  std::string own_folder = platform::folder_of(platform::executable_path());
#ifdef _WIN32
  // An administrator could write to the programs' folder too, but each user's files are his own there.
  const bool for_all_users = file_exists(platform::join(own_folder, file_name::for_all_users));
  if (!for_all_users && platform::folder_is_writable(own_folder)) return own_folder;
  return platform::join(platform::user_data_folder(), "Ferrowen");
#else
  if (file_exists(platform::join(own_folder, file_name::settings))) return own_folder;
  return platform::absolute(platform::join(platform::user_data_folder(), "ferrowen"));
#endif
}

std::string find_assets_folder() {
  const std::string found = platform::shared_data_file(std::string(file_name::land_cells));
  return found.empty() ? "" : platform::folder_of(found);
}

}  // namespace ferrowen
