// Where missing height cells can be downloaded from, and what has arrived of them.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "elevation/height_cells.hpp"

namespace ferrowen {

inline constexpr const char* search_all = "Search All";
// The download folders of SRTM3.
inline constexpr std::array<std::string_view, 6> srtm_regions = {"Africa",  "Australia",     "Eurasia",
                                                                 "Islands", "North_America", "South_America"};

// The address that the settings name, the usual one when they name none.
std::string srtm_base_address(const Settings& settings);
// Base address + region + "/" + cell name + ".hgt.zip". A blank base is the usual one.
std::string download_address(std::string_view base, std::string_view region, std::string_view cell_name);
// The pages to open for these cells: one per cell, or the folder of the region when that would open too many;
// "Search All" means every region.
std::vector<std::string> download_pages(std::string_view base, std::string_view region,
                                        const std::vector<std::string>& missing);

struct DownloadState {
  std::vector<std::string> needed;   // names
  std::vector<HeightCell> cells;     // the same, each with what was found of it
  std::vector<std::string> missing;  // names of those without whole heights that the map compiler finds
  std::vector<std::string>
      archives;         // in the height folder, under other names, with heights of missing cells
  std::string summary;  // "4 HGT needed: 1 HGT not found: /1 ..."
};
// Counts the cells of the current area.
DownloadState download_state(Workspace& workspace, Prompts& prompts);
// The message for that state.
std::string download_message(const DownloadState& state, const Workspace& workspace);

// Puts a downloaded archive or height file into the current height folder. Refused with a message when it
// holds no heights.
Status take_download(const Workspace& workspace, const std::string& path);

}  // namespace ferrowen
