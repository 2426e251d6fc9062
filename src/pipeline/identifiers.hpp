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

// Draws a new FID into the settings; a locked one is told and left alone.
void new_id(Workspace& workspace, Prompts& prompts);

// FID check when a build starts: false when the build must not go on.
bool check_fid(Workspace& workspace, Prompts& prompts);

}  // namespace ferrowen
