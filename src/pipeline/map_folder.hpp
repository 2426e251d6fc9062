// The folder that a registered map lives in: its name, whether it may be taken, and the list in it of what a
// registration put there. Nothing else in such a folder is ever replaced or deleted by a registration.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/settings.hpp"
#include "base/file_set.hpp"
#include "base/status.hpp"
#include "pipeline/installed_maps.hpp"

namespace ferrowen {

// Names of the files that a registration put into the folder, one on each line, "/" between folder and file.
inline constexpr std::string_view map_file_list = "files.list";
inline constexpr std::string_view last_used_registration = "0.reg";

// The product as it is registered.
std::string product_of(const Settings& settings);
// Output folder + product name with blanks as "_".
std::string registered_map_folder(const Settings& settings);

// Why the map of these settings cannot be registered; "" when it can. Its name must fit a key and a folder,
// and the folder must be new, empty, or made by an earlier registration of which nothing is registered under
// another name.
std::string registration_obstacle(const Settings& settings, const std::vector<InstalledMap>& registered);

// The text of the list for these files.
std::string map_file_list_text(const std::vector<FileToCopy>& files);
std::vector<std::string> listed_map_files(const std::string& folder);
// A file that one of these would replace and that no registration put there; "" for none.
std::string foreign_file(const std::string& folder, const std::vector<FileToCopy>& files);
// Deletes what an earlier registration put there (`older`) and the new one does not have.
Status remove_older_files(const std::string& folder, const std::vector<std::string>& older,
                          const std::vector<FileToCopy>& files);

}  // namespace ferrowen
