#include "elevation/height_cells.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include "base/files.hpp"
#include "base/text.hpp"
#include "contours/cell.hpp"
#include "contours/cell_file.hpp"
#include "elevation/clipped_contours.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/hgt_coverage.hpp"
#include "elevation/zip_directory.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_auto_search = 234;
constexpr std::uint64_t bytes_of_a_sample = 2;
constexpr std::array<std::uint64_t, 2> samples_of_a_side = {1201, 3601};
constexpr std::uint64_t largest_archive = 256ULL << 20U;
constexpr std::size_t cell_length = 7;  // N46W007
constexpr std::array<std::string_view, 5> endings = {".hgt", ".zip", ".hgt.zip", ".osm", "clp.pbf"};
constexpr std::array<std::string_view, 3> height_endings = {".hgt", ".zip", ".hgt.zip"};

std::string wrong_size(std::uint64_t size) {
  if (size == 0) return "is empty.";
  return "has " + std::to_string(size) + " bytes; heights have 2884802 or 25934402.";
}

std::string zipped_problem(const std::string& path, const std::string& cell_name) {
  FileSource source(path);
  if (!source.is_open()) return "cannot be read.";
  const Result<std::vector<ArchiveItem>> entries = read_zip_directory(source);
  if (!entries.ok()) return entries.error;
  for (const ArchiveItem& entry : entries.value) {
    if (zip_base_name(entry.name) != cell_name) continue;
    return is_height_size(entry.size) ? ""
                                      : "is a zip archive whose " + cell_name + " " + wrong_size(entry.size);
  }
  return "is a zip archive without " + cell_name + ".";
}

// The list of an archive is a claim: only its data shows whether there are heights in it.
std::string packed_problem(const std::string& path, const std::string& cell_name) {
  const std::optional<Cell> cell = cell_of_name(cell_name);
  if (!cell) return "is no height cell.";
  const Result<std::string> archive = read_file(path, largest_archive);
  if (!archive.ok()) return "cannot be read.";
  const Result<std::string> heights = cell_in_archive(archive.value, *cell);
  return heights.ok() ? "" : "is a zip archive that cannot be unpacked: " + heights.error + ".";
}

// What the size and the list of an archive tell, in no time.
std::string claimed_problem(const std::string& path, const std::string& cell_name) {
  if (ends_with_ignoring_case(path, ".zip")) return zipped_problem(path, cell_name);
  const std::uint64_t size = file_size(path);
  return is_height_size(size) ? "" : wrong_size(size);
}

HeightCell find_cell(const std::string& name, const std::vector<std::string>& folders,
                     std::string (*problem_of)(const std::string&, const std::string&)) {
  const CellFiles files = find_cell_files({name}, folders, CellFile::hgt);
  if (files.found.empty()) return {name, CellCondition::missing, "", ""};
  const std::string& path = files.found.front();
  const std::string problem = problem_of(path, name);
  return {name, problem.empty() ? CellCondition::found : CellCondition::damaged, path, problem};
}

// A file whose name differs from a height file of the cell in its case alone.
std::string file_in_other_case(const std::string& name, const std::vector<std::string>& files) {
  for (const std::string_view ending : height_endings) {
    const std::string wanted = name.substr(0, cell_length) + std::string(ending);
    for (const std::string& file : files) {
      if (equal_ignoring_case(file, wanted)) return file;
    }
  }
  return "";
}

// Where the case of names counts, "n47e009.hgt" is there and yet not found.
void look_for_other_case(std::vector<HeightCell>& cells, const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    if (folder.empty()) continue;
    const std::vector<std::string> files = list_files(folder, {""});
    for (HeightCell& cell : cells) {
      if (cell.condition != CellCondition::missing) continue;
      const std::string file = file_in_other_case(cell.name, files);
      if (file.empty()) continue;
      cell.condition = CellCondition::wrong_case;
      cell.path = platform::join(folder, file);
    }
  }
}

// The name that the cell's file must have.
std::string right_name(const HeightCell& cell) {
  const std::string file = platform::name_of(cell.path);
  return cell.name.substr(0, cell_length) + lower_ascii(file.substr(cell_length));
}

std::string lines_of(const std::vector<HeightCell>& cells, CellCondition condition) {
  std::string text;
  for (const HeightCell& cell : cells) {
    if (cell.condition == condition) text += std::string(crlf) + cell.path + " " + cell.problem;
  }
  return text;
}

std::string missing_text(const std::vector<std::string>& missing, const std::vector<std::string>& folders) {
  return std::to_string(missing.size()) + " hgt file(s) not found.\r\nFolder: '" +
         join_texts(folders, "', '") + "'\r\n" + join_texts(missing, crlf);
}

// The lines that follow when nothing is found and only one folder was searched.
std::string auto_search_advice(const Settings& settings, const std::string& advice) {
  return settings.hgt_auto_search ? "" : std::string(crlf) + advice;
}

std::string land_cells(const Workspace& workspace) {
  return workspace.land_list.empty() ? read_whole_file(workspace.path(file_name::land_cells))
                                     : workspace.land_list;
}

}  // namespace

std::string cell_of_file(std::string_view file_name) {
  const std::string name = upper_ascii(file_name.substr(0, cell_length)) + ".hgt";
  if (file_name.size() <= cell_length || !is_hgt_name(name)) return "";
  const std::string_view ending = file_name.substr(cell_length);
  const bool known = std::any_of(endings.begin(), endings.end(),
                                 [&](std::string_view one) { return equal_ignoring_case(one, ending); });
  return known ? name : "";
}

bool is_height_size(std::uint64_t bytes) {
  return std::any_of(samples_of_a_side.begin(), samples_of_a_side.end(),
                     [&](std::uint64_t side) { return bytes == side * side * bytes_of_a_sample; });
}

std::string height_file_problem(const std::string& path, const std::string& cell_name) {
  const std::string problem = claimed_problem(path, cell_name);
  if (!problem.empty() || !ends_with_ignoring_case(path, ".zip")) return problem;
  return packed_problem(path, cell_name);
}

std::vector<HeightCell> find_height_cells(const std::vector<std::string>& names,
                                          const std::vector<std::string>& folders) {
  std::vector<HeightCell> cells;
  cells.reserve(names.size());
  for (const std::string& name : names)
    cells.push_back(find_cell(name, folders, height_file_problem));
  look_for_other_case(cells, folders);
  return cells;
}

std::vector<std::string> cells_in(const std::vector<HeightCell>& cells, CellCondition condition) {
  std::vector<std::string> names;
  for (const HeightCell& cell : cells) {
    if (cell.condition == condition) names.push_back(cell.name);
  }
  return names;
}

void load_land_list(Workspace& workspace, Prompts& prompts) {
  const std::string path = workspace.path(file_name::land_cells);
  if (!workspace.land_list.empty() || !file_exists(path)) return;
  Result<std::string> list = read_file(path);
  if (!list.ok()) prompts.tell("sea data:" + path + std::string(crlf) + list.error, Icon::warning);
  workspace.land_list = std::move(list.value);
}

std::vector<std::string> needed_cells(Workspace& workspace, Prompts& prompts) {
  load_land_list(workspace, prompts);
  return coverage_of_selection(workspace.tiles, workspace.land_list);
}

std::vector<AreaCell> cells_of_area(Workspace& workspace, Prompts& prompts) {
  load_land_list(workspace, prompts);
  const std::vector<std::string> land = coverage_of_selection(workspace.tiles, workspace.land_list);
  const std::vector<std::string> folders = searched_hgt_folders(workspace.settings);
  std::vector<AreaCell> area;
  for (const std::string& name : coverage_of_selection(workspace.tiles, "")) {
    const long south = lenient_whole_number(name.substr(1, 2));
    const long west = lenient_whole_number(name.substr(4, 3));
    AreaCell cell{name, static_cast<int>(name[0] == 'S' ? -south : south),
                  static_cast<int>(name[3] == 'W' ? -west : west), AreaCell::State::sea};
    if (std::find(land.begin(), land.end(), name) != land.end())
      cell.state = find_cell(name, folders, claimed_problem).condition == CellCondition::found
                       ? AreaCell::State::found
                       : AreaCell::State::missing;
    area.push_back(std::move(cell));
  }
  return area;
}

Status offer_renaming(Prompts& prompts, std::vector<HeightCell>& cells) {
  std::string text;
  for (const HeightCell& cell : cells) {
    if (cell.condition == CellCondition::wrong_case)
      text += platform::name_of(cell.path) + " --> " + right_name(cell) + std::string(crlf);
  }
  if (text.empty()) return {};
  const std::string question = "These files are found only under names in upper case. Rename?\r\n" + text;
  if (prompts.ask(question) != Answer::yes) return {};
  for (HeightCell& cell : cells) {
    if (cell.condition != CellCondition::wrong_case) continue;
    const std::string path = platform::join(platform::folder_of(cell.path), right_name(cell));
    if (Status renamed = rename_file(cell.path, path); !renamed.ok()) return renamed;
    cell.path = path;
    cell.problem = height_file_problem(path, cell.name);
    cell.condition = cell.problem.empty() ? CellCondition::found : CellCondition::damaged;
  }
  return {};
}

void offer_renaming_in_area(Workspace& workspace, Prompts& prompts) {
  std::vector<HeightCell> cells =
      find_height_cells(needed_cells(workspace, prompts), searched_hgt_folders(workspace.settings));
  if (const Status renamed = offer_renaming(prompts, cells); !renamed.ok())
    prompts.tell(renamed.error, Icon::warning);
}

bool check_dem_cells(const Workspace& workspace, Prompts& prompts) {
  const std::vector<std::string> folders = searched_hgt_folders(workspace.settings);
  const std::vector<std::string> names = touched_cells(workspace.tiles, land_cells(workspace));
  std::vector<HeightCell> cells = find_height_cells(names, folders);
  if (const Status renamed = offer_renaming(prompts, cells); !renamed.ok())
    prompts.tell(renamed.error, Icon::warning);
  for (HeightCell& cell : cells) {
    if (cell.condition == CellCondition::wrong_case) cell.condition = CellCondition::missing;
  }
  const std::vector<std::string> missing = cells_in(cells, CellCondition::missing);
  const std::vector<std::string> damaged = cells_in(cells, CellCondition::damaged);
  const bool heights = std::any_of(folders.begin(), folders.end(), holds_heights);
  if (!names.empty() && std::none_of(folders.begin(), folders.end(), folder_exists))
    prompts.tell(
        "Cannot locate HGT files. Check Contours/Dem Settings\r\nUntick DEM or Contours" +
            auto_search_advice(workspace.settings, "Perhaps select Auto Search DEM/Contours,Settings"),
        Icon::warning);
  // Without a single file of heights the plan of the build says what to do.
  if (names.empty() || !heights) return true;
  if (!damaged.empty())
    prompts.tell(std::to_string(damaged.size()) +
                     " hgt file(s) cannot be used:" + lines_of(cells, CellCondition::damaged),
                 Icon::warning);
  if (missing.size() + damaged.size() == cells.size()) {
    std::vector<std::string> useless = missing;
    useless.insert(useless.end(), damaged.begin(), damaged.end());
    prompts.tell("No HGT!\r\n" + join_texts(useless, crlf) +
                     auto_search_advice(workspace.settings, workspace.message(message_auto_search)),
                 Icon::warning);
    return false;
  }
  if (!missing.empty()) prompts.tell(missing_text(missing, folders), Icon::warning);
  return true;
}

namespace {

constexpr const char* check_clip_folders =
    "Check the 5 clip folders you have specified\r\n"
    "Perhaps,select Auto Search  --> Dem/Contours,Settings.";

void tell_missing_contours(Prompts& prompts, const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  prompts.tell(
      "Missing OSM Contour files (" + std::to_string(lines.size()) + ")\r\n" + join_texts(lines, crlf),
      Icon::warning);
}

// Tells what is wrong; returns how many files are added.
std::size_t check_clips(const std::vector<std::string>& names, const Settings& settings, Prompts& prompts) {
  const ClippedContours clips =
      find_clipped_contours(names, current_clip_folder(settings), searched_contour_folders(settings));
  const bool none = clips.missing.size() == names.size();
  if (!names.empty() && none) prompts.tell(check_clip_folders, Icon::warning);
  if (!none) tell_missing_contours(prompts, lines_of_missing(clips));
  if (const std::string notes = notes_on(clips); !notes.empty()) prompts.tell(notes, Icon::warning);
  return clips.files.size();
}

std::size_t check_contours(const std::vector<std::string>& names, const Settings& settings,
                           Prompts& prompts) {
  const CellFiles files = find_contour_files(names, searched_contour_folders(settings));
  if (!names.empty() && files.found.empty())
    prompts.tell("No contours found. Untick contours.", Icon::warning);
  else
    tell_missing_contours(prompts, contour_file_names(files.missing));
  return files.found.size();
}

}  // namespace

void check_contour_files(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  const std::vector<std::string> names = coverage_of_selection(workspace.tiles, land_cells(workspace));
  const std::size_t added = settings.clip_contours ? check_clips(names, settings, prompts)
                                                   : check_contours(names, settings, prompts);
  prompts.tell("Added " + std::to_string(added) + " contours" + (added == 0 ? "." : ""));
}

}  // namespace ferrowen
