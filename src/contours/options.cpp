#include "contours/options.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

// What was said, before it is put together to jobs.
struct Words {
  ContourCommand command;
  std::string hgt_path = ".", out_file, out_path;
  std::optional<int> longitude, latitude;
  std::optional<int> medium, major;
  std::vector<std::string> files;
};

struct Bounds {
  double least, greatest;
};

// Decimal commas are taken for points: the numbers come out of text boxes.
bool read_real(std::string_view value, Bounds bounds, double& target) {
  const std::optional<double> number = exact_number(replace_all(value, ",", "."));
  if (!number || *number < bounds.least || *number > bounds.greatest) return false;
  target = *number;
  return true;
}

// `target` may be an int or an optional one.
template <typename Whole>
bool read_whole(std::string_view value, long least, long greatest, Whole& target) {
  const std::optional<long> number = exact_whole_number(value);
  if (!number || *number < least || *number > greatest) return false;
  target = static_cast<int>(*number);
  return true;
}

bool read_size(std::string_view value, long greatest, std::size_t& target) {
  int number = 0;
  if (!read_whole(value, 0, greatest, number)) return false;
  target = static_cast<std::size_t>(number);
  return true;
}

bool read_truth(std::string_view value, bool& target) {
  target = equal_ignoring_case(value, "True");
  return target || equal_ignoring_case(value, "False");
}

bool read_text(std::string_view value, std::string& target) {
  target = value;
  return !value.empty();
}

bool read_fake_distance(std::string_view value, double& target) {
  if (!read_real(value, {-1000, 1000}, target)) return false;
  if (std::abs(target) < least_fake_distance) target = least_fake_distance;
  return true;
}

struct Option {
  std::string_view name;
  std::string_view form;  // of its value, for help and errors
  std::string_view help;
  bool (*read)(Words& words, std::string_view value);
};

// The drawing side of every option. The names of --Lat and --Lon are crossed: callers rely on it.
const Option options[] = {
    {"HgtPath", "FOLDER", "folder of the height cells; the current one otherwise",
     [](Words& words, std::string_view value) { return read_text(value, words.hgt_path); }},
    {"Lat", "-180 to 179", "LONGITUDE of the cell's lower left corner (these two are crossed)",
     [](Words& words, std::string_view value) { return read_whole(value, -180, 179, words.longitude); }},
    {"Lon", "-90 to 89", "LATITUDE of the cell's lower left corner",
     [](Words& words, std::string_view value) { return read_whole(value, -90, 89, words.latitude); }},
    {"Outfile", "FILE", "file to write; the cell's name with .osm beside the cell otherwise",
     [](Words& words, std::string_view value) { return read_text(value, words.out_file); }},
    {"OutPath", "FOLDER", "folder to write to when cells are named as files",
     [](Words& words, std::string_view value) { return read_text(value, words.out_path); }},
    {"OutputOverwrite", "True or False", "replace a file that exists; False otherwise",
     [](Words& words, std::string_view value) { return read_truth(value, words.command.overwrite); }},
    {"MinorDistance", "5 to 1000", "metres between two lines; 20 otherwise",
     [](Words& words, std::string_view value) {
       return read_whole(value, 5, 1000, words.command.options.levels.interval);
     }},
    {"MediumDistance", "5 to 100000", "lines at its multiples are medium; 5 x MinorDistance otherwise",
     [](Words& words, std::string_view value) { return read_whole(value, 5, 100000, words.medium); }},
    {"MajorDistance", "5 to 100000", "lines at its multiples are major; 25 x MinorDistance otherwise",
     [](Words& words, std::string_view value) { return read_whole(value, 5, 100000, words.major); }},
    {"FakeDistance", "-1000 to 1000",
     "a height that lies exactly on a line counts as this many metres higher; -0.5 otherwise",
     [](Words& words, std::string_view value) {
       return read_fake_distance(value, words.command.options.levels.fake_distance);
     }},
    {"MinVerticePoints", "0 to 1000000", "lines of fewer points are left out; 3 otherwise",
     [](Words& words, std::string_view value) {
       return read_size(value, 1000000, words.command.options.least_points);
     }},
    {"MinBoundingbox", "0 to 1",
     "lines are left out when both sides of their bounding box are smaller, in degrees; 0.00016 otherwise",
     [](Words& words, std::string_view value) {
       return read_real(value, {0, 1}, words.command.options.least_extent);
     }},
    {"DouglasPeucker", "0 to 1000",
     "farthest that a simplified line may lie from the full one, in distances between two heights; 0 keeps "
     "every "
     "point; 0.12 otherwise",
     [](Words& words, std::string_view value) {
       return read_real(value, {0, 1000}, words.command.options.tolerance);
     }},
    {"WriteElevationType", "True or False",
     "accepted; contour_ext is always written, since most styles draw nothing without it",
     [](Words&, std::string_view value) {
       bool ignored = false;
       return read_truth(value, ignored);
     }},
    {"Threads", "0 to 256", "cells in work at the same time; one per processor otherwise",
     [](Words& words, std::string_view value) { return read_size(value, 256, words.command.threads); }},
};

std::string option_problem(std::string_view argument, Words& words) {
  const std::size_t equals = argument.find('=');
  const std::string_view name = argument.substr(2, equals == std::string_view::npos ? equals : equals - 2);
  const auto* option = std::find_if(std::begin(options), std::end(options), [&](const Option& candidate) {
    return equal_ignoring_case(candidate.name, name);
  });
  if (option == std::end(options)) return std::string(argument) + ": unknown option";
  const std::string form = "--" + std::string(option->name) + "=" + std::string(option->form);
  if (equals == std::string_view::npos) return std::string(argument) + ": a value is missing: " + form;
  if (option->read(words, argument.substr(equals + 1))) return "";
  return std::string(argument) + ": not usable: " + form;
}

std::string argument_problem(const std::string& argument, Words& words) {
  if (argument == "--help" || argument == "-h") {
    words.command.help = true;
  } else if (argument == "--version") {
    words.command.version = true;
  } else if (argument.starts_with("--")) {
    return option_problem(argument, words);
  } else if (argument.starts_with("-")) {
    return argument + ": unknown option";
  } else if (!argument.empty()) {
    words.files.push_back(argument);
  }
  return "";
}

std::string add_file_job(const std::string& file, Words& words) {
  const std::optional<Cell> cell = cell_of_name(platform::name_of(file));
  if (!cell)
    return file +
           ": no cell's name: it begins like N46W007, with a lower left corner from S90 to N89 and from "
           "W180 to E179";
  const std::string folder = words.out_path.empty() ? platform::folder_of(file) : words.out_path;
  std::string output = cell_name(*cell) + ".osm";
  if (!folder.empty()) output = platform::join(folder, output);
  if (!words.out_file.empty()) output = words.out_file;
  words.command.jobs.push_back({*cell, file, output});
  return "";
}

std::string add_cell_job(Words& words) {
  if (!words.latitude || !words.longitude)
    return "no cell: name files, or give both --Lat (its longitude) and --Lon (its latitude)";
  const Cell cell{*words.latitude, *words.longitude};
  const std::string folder = words.out_path.empty() ? words.hgt_path : words.out_path;
  std::string output =
      words.out_file.empty() ? platform::join(folder, cell_name(cell) + ".osm") : words.out_file;
  words.command.jobs.push_back({cell, words.hgt_path, std::move(output)});
  return "";
}

std::string job_problem(Words& words) {
  if (words.files.empty()) return add_cell_job(words);
  if (words.latitude || words.longitude) return "either files, or --Lat and --Lon";
  if (words.files.size() > 1 && !words.out_file.empty()) return "--Outfile is for one cell; use --OutPath";
  std::set<std::string> outputs;
  for (const std::string& file : words.files) {
    if (std::string problem = add_file_job(file, words); !problem.empty()) return problem;
    if (!outputs.insert(words.command.jobs.back().output).second)
      return words.command.jobs.back().output + ": two cells would be written there";
  }
  return "";
}

std::string level_problem(Words& words) {
  ContourOptions& chosen = words.command.options;
  const int interval = chosen.levels.interval;
  chosen.classes = {words.medium.value_or(5 * interval), words.major.value_or(25 * interval)};
  if (std::abs(chosen.levels.fake_distance) >= interval)
    return "--FakeDistance must be smaller than --MinorDistance";
  return "";
}

}  // namespace

Result<ContourCommand> parse_contour_command(const std::vector<std::string>& arguments) {
  Words words;
  std::string problem;
  for (const std::string& argument : arguments) {
    problem = argument_problem(argument, words);
    if (!problem.empty()) return failed<ContourCommand>(problem);
  }
  if (words.command.help || words.command.version) return {words.command, ""};
  problem = level_problem(words);
  if (problem.empty()) problem = job_problem(words);
  if (!problem.empty()) return failed<ContourCommand>(problem);
  return {std::move(words.command), ""};
}

std::string contour_help() {
  std::string text =
      "Contour lines from one-degree height cells (.hgt, .zip or .hgt.zip) as OSM files.\n\n"
      "ferrowen-contours [OPTION...] CELL...                     cells named as files\n"
      "ferrowen-contours [OPTION...] --Lat=LONGITUDE --Lon=LATITUDE --Outfile=FILE\n\n"
      "A cell has 1201 x 1201 or 3601 x 3601 heights and is named after its lower left corner: N46W007.hgt.\n"
      "Ways carry contour=elevation, contour_ext=elevation_minor, elevation_medium or elevation_major, and\n"
      "ele=METRES. Lines run with the higher ground on their left.\n\n";
  for (const Option& option : options) {
    text += "  --" + std::string(option.name) + "=" + std::string(option.form) + "\n      " +
            std::string(option.help) + "\n";
  }
  text +=
      "  --help, --version\n\n"
      "Exit status: 0 done; 1 a file could not be written; 2 wrong usage or a cell that cannot be read;\n"
      "3 a file exists and --OutputOverwrite=True was not given.\n";
  return text;
}

}  // namespace ferrowen
