// The texts of contour generation: options of the contour tool, the names of its results, the script
// contours.cmd. Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/settings.hpp"
#include "base/status.hpp"
#include "runner/console_script.hpp"

namespace ferrowen {

inline constexpr long least_interval = 5;  // metres
inline constexpr long highest_interval = 1000;

// The interval in the stored options of the tool; 20 when it is below the least one.
long contour_interval(const Settings& settings);
// Keeps both in the settings, for the next time.
void store_contour_choices(Settings& settings, long interval, double tolerance);
// A tolerance as people type it, with either decimal separator; below zero and no number count as 0.
double tolerance_value(std::string_view text);

// The options that every call of the tool has, with a blank at both ends.
std::string contour_option_text(long interval, double tolerance);
// The summary that is shown before a run.
std::string contour_summary(std::string_view option_text, double tolerance, std::size_t commands);

// "N46W007.osm" for N46W007.hgt, N46W007.zip and N46W007.hgt.zip, in the case in which the build looks for
// it.
std::string contour_file_name(std::string_view height_file);

struct ScriptedCell {
  std::string height_file;  // full path, the file exists
};

struct ContourScript {
  std::string tool;  // full path; on Windows its short form when it holds a blank
  std::string option_text;
  bool overwrite = false;
  bool pause = false;
  std::vector<ScriptedCell> jobs;
  std::size_t at_once = 1;  // cells that a shell script makes side by side
};
// One call of the tool per job, each in the folder of its height file. The tool takes the longitude as --Lat
// and the latitude as --Lon.
Result<ConsoleScript> contour_script(const ContourScript& script, Dialect dialect);

}  // namespace ferrowen
