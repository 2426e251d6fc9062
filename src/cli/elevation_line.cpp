#include "cli/elevation_line.hpp"

#include "cli/line_parts.hpp"

namespace ferrowen {

namespace {

constexpr const char* hgt_footer =
    R"(Cells are degrees of latitude and longitude; N46W007.hgt holds the heights
from 46 to 47 degrees north and 7 to 6 degrees west, plain or zipped (.zip, .hgt.zip).
Examples:
  ferrowen hgt --hgt /data/hgt
  ferrowen hgt --tiles saved --json)";

constexpr const char* contours_footer = R"(Examples:
  ferrowen contours make                        what the tiles of the last split still need
  ferrowen contours make N46E007 --interval 10 --overwrite
  ferrowen settings set clip-folder-1=/data/clips
  ferrowen contours clip
  ferrowen build --contours clip)";

constexpr const char* unzip_footer = R"(Archives that lead out of the folder, hold links or heights of a
wrong size are refused.
Example:
  ferrowen unzip ~/.local/share/ferrowen/hgt/Europe/3)";

constexpr const char* merge_footer = R"(Examples:
  ferrowen merge -o both.pbf liechtenstein.osm.pbf N47E009clp.pbf
  ferrowen merge -o all.pbf --list parts.lst      one path per line)";

void add_area(CLI::App& command, AreaArguments& area) {
  text_option(command, "--tiles", area.tiles, "N,N", "For these tiles alone; saved: the saved selection");
  text_option(command, "--hgt", area.hgt, "DIR", "Folder of the height tiles (.hgt)");
}

void add_contours(CLI::App& app, ContoursArguments& arguments, const std::string& hint) {
  CLI::App* contours =
      add_command(app, "contours", "Make contour lines from heights, or clip them to the map",
                  with_hint(contours_footer, hint));
  contours->require_subcommand(1);
  CLI::App* make = add_command(*contours, "make", "Make contour files (.osm) with the contour tool", hint);
  make->callback([&arguments] { arguments.action = ContoursArguments::Action::make; });
  make->add_option("CELL", arguments.cells, "Cells such as N46W007; else those that the tiles need")
      ->type_name("");
  text_option(*make, "--interval", arguments.interval, "M", "Metres between two lines (5 to 1000)");
  text_option(*make, "--tolerance", arguments.tolerance, "X",
              "Simplification of the lines (Douglas-Peucker)");
  make->add_flag("--overwrite", arguments.overwrite, "Make contours again that are there");
  add_area(*make, arguments.area);
  CLI::App* clip =
      add_command(*contours, "clip", "Clip contour files to the box of the tiles; asks first", hint);
  clip->callback([&arguments] { arguments.action = ContoursArguments::Action::clip; });
  add_area(*clip, arguments.area);
}

}  // namespace

void add_elevation(CLI::App& app, ElevationArguments& arguments, const std::string& hint) {
  CLI::App* hgt = add_command(app, "hgt", "Show which height tiles the map needs and where they are",
                              with_hint(hgt_footer, hint));
  add_area(*hgt, arguments.hgt.area);
  add_contours(app, arguments.contours, hint);
  CLI::App* unzip =
      add_command(app, "unzip", "Unpack the zip archives of a folder", with_hint(unzip_footer, hint));
  unzip->add_option("DIR", arguments.unzip.folder, "Folder with the archives")->type_name("")->required();
  CLI::App* merge =
      add_command(app, "merge", "Join several PBF files into one", with_hint(merge_footer, hint));
  merge->add_option("FILE", arguments.merge.files, "Files to join (*.pbf)")->type_name("");
  text_option(*merge, "-o,--output", arguments.merge.output, "OUT", "File to write (*.pbf)");
  text_option(*merge, "--list", arguments.merge.list, "FILE.lst", "Text file with the paths of the files");
  merge->get_option("--output")->required();
}

}  // namespace ferrowen
