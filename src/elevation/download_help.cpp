#include "elevation/download_help.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/hgt_coverage.hpp"
#include "elevation/unzip.hpp"
#include "elevation/zip_directory.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t most_pages = 8;  // opened in the person's browser at once

std::string with_slash(std::string_view base) {
  std::string address(trim(base).empty() ? usual_srtm_address : trim(base));
  return address.ends_with('/') ? address : address + "/";
}

std::vector<std::string_view> regions_of(std::string_view region) {
  if (region == search_all || trim(region).empty()) return {srtm_regions.begin(), srtm_regions.end()};
  return {region};
}

bool holds_cells(const std::vector<ArchiveItem>& entries) {
  return std::any_of(entries.begin(), entries.end(),
                     [](const ArchiveItem& entry) { return !cell_of_entry(entry).empty(); });
}

// The name that a download gets in the folder, "" when it is nothing of use.
Result<std::string> name_of_download(const std::string& path) {
  const std::string name = platform::name_of(path);
  const std::string cell = cell_of_file(name);
  if (ends_with_ignoring_case(name, ".hgt") && !cell.empty()) {
    const std::string problem = height_file_problem(path, cell);
    return {cell, problem.empty() ? "" : name + " " + problem};
  }
  if (!ends_with_ignoring_case(name, ".zip")) return failed<std::string>(name + " is neither .hgt nor .zip");
  FileSource source(path);
  const Result<std::vector<ArchiveItem>> entries = read_zip_directory(source);
  if (!entries.ok()) return failed<std::string>(name + " " + entries.error);
  for (const ArchiveItem& entry : entries.value) {
    if (const std::string problem = zip_entry_problem(entry); !problem.empty())
      return failed<std::string>(std::string(name).append(": ").append(problem));
  }
  if (!holds_cells(entries.value)) return failed<std::string>(name + " holds no .hgt files.");
  return {name.substr(0, name.size() - 4) + ".zip", ""};
}

}  // namespace

std::string srtm_base_address(const Settings& settings) {
  const std::string_view address = trim(settings.srtm_address);
  return std::string(address.empty() ? usual_srtm_address : address);
}

std::string download_address(std::string_view base, std::string_view region, std::string_view cell_name) {
  return with_slash(base) + std::string(region) + "/" + replace_all(cell_name, ".hgt", "") + ".hgt.zip";
}

std::vector<std::string> download_pages(std::string_view base, std::string_view region,
                                        const std::vector<std::string>& missing) {
  const std::vector<std::string_view> regions = regions_of(region);
  const bool folders = missing.empty() || missing.size() * regions.size() > most_pages;
  std::vector<std::string> pages;
  for (const std::string_view one : regions) {
    if (folders) pages.push_back(with_slash(base) + std::string(one) + "/");
    for (const std::string& cell : missing) {
      if (!folders) pages.push_back(download_address(base, one, cell));
    }
  }
  return pages;
}

DownloadState download_state(Workspace& workspace, Prompts& prompts) {
  DownloadState state;
  const std::vector<std::string> folders = searched_hgt_folders(workspace.settings);
  state.needed = needed_cells(workspace, prompts);
  state.cells = find_height_cells(state.needed, folders);
  for (const HeightCell& cell : state.cells) {
    if (cell.condition != CellCondition::found) state.missing.push_back(cell.name);
  }
  for (const std::string& folder : folders) {
    if (folder.empty() || state.missing.empty()) continue;
    for (const std::string& archive : archives_with_cells(folder, state.missing))
      state.archives.push_back(platform::join(folder, archive));
  }
  const std::string missing = std::to_string(state.missing.size());
  const std::string needed = std::to_string(state.needed.size());
  state.summary = needed + " HGT needed: " + missing + " HGT not found: /" + needed;
  return state;
}

std::string download_message(const DownloadState& state, const Workspace& workspace) {
  if (workspace.tiles.empty()) return "Please SPLIT file to obtain hgt files needed.";
  if (workspace.saved_selection && selected_count(workspace.tiles) == 0) return "Please select a Tile.";
  if (state.needed.empty()) return "Can't find hgt file(s) for this region.";
  if (!state.archives.empty()) return "Please unzip zip files\r\n" + join_texts(state.archives, crlf);
  if (state.missing.empty()) return "All HGT files have been downloaded.";
  if (state.missing.size() == state.needed.size())
    return "Cannot find HGT files. Go Contours/DEM,Settings to locate:\r\n" +
           current_hgt_folder(workspace.settings);
  return "HGT files missing (" + std::to_string(state.missing.size()) + ")\r\n" +
         join_texts(state.missing, crlf);
}

Status take_download(const Workspace& workspace, const std::string& path) {
  const std::string folder = current_hgt_folder(workspace.settings);
  if (!folder_exists(folder)) return {"Check option in DEM/Contour Settings"};
  const Result<std::string> name = name_of_download(path);
  if (!name.ok()) return {name.error};
  const std::string target = platform::join(folder, name.value);
  return same_file(path, target) ? Status{} : copy_file(path, target);
}

}  // namespace ferrowen
