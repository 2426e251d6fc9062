// The files used recently, newest first, as the settings keep them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.hpp"

namespace ferrowen {

inline constexpr std::size_t most_recent_files = 10;

// Puts a file in front; the list holds no file twice and never more than most_recent_files.
void add_recent_file(Settings& settings, const std::string& path);
void remove_recent_file(Settings& settings, std::string_view path);
void clear_recent_files(Settings& settings);
// Everything that is kept, also what is on a disk that is not there now.
std::vector<std::string> kept_recent_files(const Settings& settings);
// Those that exist: the ones to show.
std::vector<std::string> recent_files(const Settings& settings);

}  // namespace ferrowen
