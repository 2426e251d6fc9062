// Contour generation: turns height cells into contour files (OSM) with the contour tool.
#pragma once

#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "elevation/hgt_coverage.hpp"
#include "pipeline/tiles/splitter.hpp"

namespace ferrowen {

struct ContourRequest {
  std::vector<std::string> height_files;  // full paths as listed: N46W007.hgt, though it may lie there zipped
  long interval = 20;                     // metres
  double tolerance = 0;
  bool overwrite = false;
  bool show_console = true;
  bool copy_to_work_folder = false;  // the heights are copied there and their contours made there
  bool pause = false;                // the console stays open at the end
};

struct ContourOutcome {
  StageResult result = StageResult::stopped;
  std::vector<std::string> files;   // contour files that were made
  std::vector<std::string> failed;  // expected and not good
  // Selected cells whose heights are missing or damaged; the others were made without them.
  std::vector<std::string> missing;
  double seconds = 0;
};

// Checks, tells the summary, writes contours.cmd, runs it and follows it. Contours that were there before
// come back when their new ones are not good.
ContourOutcome make_contours(Workspace& workspace, Prompts& prompts, Progress& progress,
                             const ContourRequest& request);

// Progress of a run: how many of the expected files are there, and the status text that tells it.
struct ContourProgress {
  double fraction = 0;
  std::string text;
};
ContourProgress contour_progress(std::size_t made, std::size_t expected, double seconds);

// True for a contour file that was written to its end.
bool is_complete_contour_file(const std::string& path);
// The complete contour files of these cells; one that was cut off counts as missing.
CellFiles find_contour_files(const std::vector<std::string>& names, const std::vector<std::string>& folders);
// "N46W007.osm" for each of these cells.
std::vector<std::string> contour_file_names(const std::vector<std::string>& cells);

struct ContourCells {
  std::vector<std::string> to_make;           // paths of height files whose contours are missing
  std::vector<std::string> missing_contours;  // names of cells, with heights or without
  std::vector<std::string> missing_heights;   // names of cells without heights
  bool all_made = false;
};
// What the selected tiles still need.
ContourCells contour_cells(Workspace& workspace, Prompts& prompts);
// The same with the folders of other settings, which a window shows and nobody has kept yet.
ContourCells contour_cells(Workspace& workspace, Prompts& prompts, const Settings& settings);
// Tells "All required contours have been created." or "Can't find HGT files"; true when all are there.
bool chkcontours(Workspace& workspace, Prompts& prompts);

}  // namespace ferrowen
