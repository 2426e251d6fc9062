#include "pipeline/map_folder.hpp"

#include <algorithm>

#include "app/workspace.hpp"
#include "base/date_text.hpp"
#include "base/files.hpp"
#include "base/fold_name.hpp"
#include "base/text.hpp"
#include "pipeline/cleanup.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view temporary_part = "~tmp";
// The registry takes 255 characters for a key, most disks 255 bytes for a name, which gets an ending here.
constexpr std::size_t longest_product = 200;

// A key's name ends at a backslash, and a line at its end.
std::string product_problem(const std::string& product) {
  const auto cannot_stand = [](char c) { return c == '\\' || static_cast<unsigned char>(c) < ' '; };
  const std::string refused = "'" + product + "' cannot be registered: its name ";
  if (std::any_of(product.begin(), product.end(), cannot_stand))
    return refused + "holds a backslash or a control character.";
  if (product.size() > longest_product) return refused + "is too long for a folder.";
  if (as_file_name(product) + ".reg" == last_used_registration)
    return refused + "is that of another file of a registered map.";
  return "";
}

// Two names may lead to one folder.
std::string other_owner(const std::string& folder, const std::string& product,
                        const std::vector<InstalledMap>& registered) {
  for (const InstalledMap& map : registered) {
    if (map.path.empty() || same_name(map.product, product) || !is_registered_folder({map.path}, folder))
      continue;
    return folder + " is the folder of the registered map '" + map.product + "'" +
           (map.fid.empty() ? "" : " (FID " + map.fid + ")") + ". Choose another map name or output folder.";
  }
  return "";
}

std::string content_problem(const std::string& folder) {
  if (!file_exists(folder)) return "";
  if (!folder_exists(folder) || platform::is_link(folder)) return folder + " is in the way.";
  const bool is_empty = list_files(folder, {""}).empty() && list_folders(folder).empty();
  if (is_empty || file_has_content(platform::join(folder, std::string(map_file_list)))) return "";
  return folder +
         " holds other files than those of a map that was registered from here. Choose another map "
         "name or output folder.";
}

// A list that was changed by hand must not lead out of the folder.
bool is_name_inside(const std::string& name) {
  const std::vector<std::string> parts = split(name, "/");
  return !name.empty() && std::none_of(parts.begin(), parts.end(), [](const std::string& part) {
    return part.empty() || part == "." || part == ".." || as_file_name(part) != part;
  });
}

std::string path_inside(const std::string& folder, const std::string& name) {
  return platform::join(folder, replace_all(name, "/", std::string(1, platform::separator)));
}

}  // namespace

std::string product_of(const Settings& settings) { return std::string(trim(settings.map_name)); }

std::string registered_map_folder(const Settings& settings) {
  const std::string name = replace_all(replace_all(product_of(settings), " ", "_"), temporary_part, "");
  return platform::join(platform::absolute(build_output_folder(settings)), as_file_name(name));
}

std::string registration_obstacle(const Settings& settings, const std::vector<InstalledMap>& registered) {
  const std::string product = product_of(settings);
  const std::string folder = registered_map_folder(settings);
  std::string obstacle = product_problem(product);
  if (obstacle.empty()) obstacle = other_owner(folder, product, registered);
  return obstacle.empty() ? content_problem(folder) : obstacle;
}

std::string map_file_list_text(const std::vector<FileToCopy>& files) {
  std::string text;
  for (const FileToCopy& file : files)
    text += file.name + std::string(crlf);
  return text + std::string(last_used_registration) + std::string(crlf) + std::string(map_file_list) +
         std::string(crlf);
}

std::vector<std::string> listed_map_files(const std::string& folder) {
  std::vector<std::string> names =
      split_lines(read_whole_file(platform::join(folder, std::string(map_file_list))));
  std::erase_if(names, [](const std::string& name) { return !is_name_inside(name); });
  return names;
}

std::string foreign_file(const std::string& folder, const std::vector<FileToCopy>& files) {
  std::vector<std::string> names = {std::string(last_used_registration)};
  for (const FileToCopy& file : files)
    names.push_back(file.name);
  const std::vector<std::string> own = listed_map_files(folder);
  for (const std::string& name : names) {
    const bool is_own = std::any_of(own.begin(), own.end(),
                                    [&](const std::string& one) { return equal_ignoring_case(one, name); });
    if (!is_own && file_exists(path_inside(folder, name))) return path_inside(folder, name);
  }
  return "";
}

Status remove_older_files(const std::string& folder, const std::vector<std::string>& older,
                          const std::vector<FileToCopy>& files) {
  for (const std::string& name : older) {
    // Where the case of names does not count, another spelling is the new file itself.
    const bool is_new = equal_ignoring_case(name, last_used_registration) ||
                        std::any_of(files.begin(), files.end(), [&](const FileToCopy& file) {
                          return equal_ignoring_case(file.name, name);
                        });
    const std::string path = path_inside(folder, name);
    if (is_new || platform::is_link(platform::folder_of(path)) || folder_exists(path)) continue;
    if (Status removed = remove_file(path); !removed.ok()) return removed;
  }
  return {};
}

}  // namespace ferrowen
