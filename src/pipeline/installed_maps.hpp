// The maps that the Garmin programs know: collected from the registry and from ".gmap" packages.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/registry.hpp"
#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

struct InstalledMap {
  std::string product;
  std::string fid;                                                 // "" when the entry names none
  std::string typ, location, tdb, overview_map, index, index_map;  // as they are registered
  std::string key;                                                 // of the registry; "" for a package
  std::string path;  // the location on this system; "" when it cannot be told
};

// Every registered family and every package, in the order of their products' names.
std::vector<InstalledMap> installed_maps(Registry& registry, const MessageTable& messages, Prompts& prompts);
// Fills the lists of registered families and names ("Collecting FID" is the status meanwhile); the maps that
// were found are returned.
std::vector<InstalledMap> querymapsource(Workspace& workspace, Registry& registry, Prompts& prompts,
                                         Progress& progress);

// The maps of the program's own store when another registry is the open one: their folders and FIDs are in
// use too. They have no key, which would be one of that other registry.
std::vector<InstalledMap> maps_of_own_store(const Workspace& workspace, const Registry& open,
                                            Prompts& prompts);
// Whether a product of this name is registered, as the registry compares names.
bool is_registered_product(const Workspace& workspace, std::string_view name);

// Every key that this family has, on whatever list it stands. Another family of the same name has another
// family ID or another folder.
std::vector<std::string> keys_of_family(Registry& registry, const InstalledMap& map);

// Product, FID, TYP and location of the text of a package's Info.xml; blank where it says nothing.
InstalledMap parse_package_info(std::string_view xml);

// The values of a key, one line each: name and data, or the type's name for a type without data to show.
std::vector<std::string> get_regvals(Registry& registry, const std::string& key);
std::string value_text(const platform::RegistryValue& value);
// All values of a family for a person to read: each of its keys in square brackets, its values, its subkeys.
std::vector<std::string> family_values(Registry& registry, const InstalledMap& map);
// The message for a registry that could not be read.
std::string registry_fault_text(platform::RegistryFault fault, const MessageTable& messages,
                                const std::string& key);

}  // namespace ferrowen
