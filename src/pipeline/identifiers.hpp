// Family ID and map ID.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

inline constexpr int fid_range = 8000;
inline constexpr int lowest_fid = 200;
inline constexpr long highest_fid = 65500;

// Nearest whole number, halves to even, of r * 8000 + base, as a 16-bit signed number.
std::int16_t fid_candidate(double uniform, int base);
// A random FID that is in neither list; nothing when every candidate is taken.
std::optional<int> free_fid(int base, const std::string& registered, const std::string& avoided,
                            const std::function<double()>& uniform);

// True for a whole number that mkgmap takes for a family ID.
bool is_fid(std::string_view text);

// A family ID without zeros in front; any other text as it is.
std::string fid_number(std::string_view text);

// Fills the lists of registered families and names; see BuildServices.
using Collect = std::function<void(Workspace&)>;

// Draws a new FID into the settings; a locked one is told and left alone. Before the first draw for a map
// that is to be registered the registered FIDs are collected.
void new_id(Workspace& workspace, Prompts& prompts, const Collect& collect = {});

// FID check when a build starts: false when the build must not go on.
bool check_fid(Workspace& workspace, Prompts& prompts, const Collect& collect = {});
// Why this is no map ID; "" when it is one.
std::string map_id_problem(const std::string& id);
// Map-ID check when a build starts, against the IDs that the user's device holds.
bool check_map_id(const Workspace& workspace, Prompts& prompts);

enum class Registered : std::uint8_t { free, name_exists, fid_exists };
// Before a map is registered: is its name or its FID taken? The message has been told then. A name that is
// taken is that of the product to replace; `previous_name` is the name that this program registered last.
Registered id_exists(Workspace& workspace, Prompts& prompts, const Collect& collect,
                     std::string_view previous_name = {});

// Before a new map is begun while the last one, `built_name`, is built and not registered: false when the
// person wants to keep it. A new FID is drawn and the settings are saved when the person wants that.
bool confirm_new_map(Workspace& workspace, Prompts& prompts, const std::string& built_name,
                     const Collect& collect = {});

}  // namespace ferrowen
