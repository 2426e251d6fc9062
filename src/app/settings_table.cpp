#include <algorithm>

#include "app/settings.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

using S = Settings;
using enum FieldType;

#ifdef _WIN32
constexpr std::string_view initial_map_folder = R"(c:\garmin\maps)";
constexpr std::string_view initial_output_folder = "";
#else
constexpr std::string_view initial_map_folder = "{user}/garmin/maps";
constexpr std::string_view initial_output_folder = "{home}/output";
#endif

// Lines 0 to 51 stand where the file format has always had them; 0, 3, 6, ... are not used and stay blank.
// From line 52 on new fields are only ever appended, so that every older file keeps its meaning.
const std::vector<Field>& table() {
  static const std::vector<Field> fields = {
      {1, "state-1", number, Page::program, "0", "A state value that the program keeps.", &S::state_1},
      {2, "path-2", path, Page::program, "", "A path that the program keeps.", &S::path_2},
      {4, "input", path, Page::map, "", "The current input map file (OSM, PBF, O5M or MP).", &S::input},
      {5, "country", path, Page::map, "", "Country name written into the map.", &S::country},
      {7, "gmapsupp", flag, Page::device, "0", "Make a device image (gmapsupp.img).", &S::device_image},
      {9, "basecamp", path, Page::tools, "", "The BaseCamp program.", &S::basecamp},
      {10, "mkgmap", path, Page::tools, "", "mkgmap.jar, the map compiler.", &S::mkgmap_jar},
      {16, "use-max-jobs", flag, Page::options, "0", "Pass --max-jobs.", &S::use_max_jobs},
      {17, "transparent", flag, Page::options, "0", "The map lets maps beneath show through.",
       &S::transparent},
      {20, "java-options", text, Page::splitter, "", "Java options; -Xmx1500m gives 1500 MB of memory.",
       &S::java_options},
      {21, "typ", path, Page::map, "{home}/mapnik65001.typ", "The TYP file used for new maps.", &S::typ},
      {23, "pois-to-lines", flag, Page::options, "0", "Add points of interest to lines.", &S::pois_to_lines},
      {26, "mf-state", text, Page::program, "", "State of the file menu.", &S::file_menu_state},
      {33, "typ-editor", path, Page::tools, "", "The TYP editor.", &S::typ_editor},
      {34, "register", flag, Page::device, "0", "Register the map with BaseCamp and MapSource.",
       &S::register_map},
      {35, "max-nodes", text, Page::splitter, "1000000", "Splitter: most nodes in a tile.", &S::max_nodes},
      {37, "map-name", text, Page::map, "Demo Map", "Name of the map.", &S::map_name},
      {40, "drive-on-left", flag, Page::options, "0", "Cars drive on the left.", &S::drive_on_left},
      {42, "output-folder", path, Page::folders, initial_output_folder, "Where built maps are written.",
       &S::output_folder},
      {46, "colour", path, Page::program, "", "A colour, hexadecimal digits.", &S::colour},
      {48, "state-48", text, Page::program, "", "A state value that the program keeps.", &S::state_48},
      {51, "list-selection", number, Page::program, "0", "Selection state of the lists.", &S::list_selection},
      // from here on: appended fields
      {52, "argument-folder", path, Page::folders, "{home}/args", "mkgmap argument files.",
       &S::argument_folder},
      {53, "archive-folder", path, Page::folders, "{home}/archives", "Archived maps.", &S::archive_folder},
      {54, "argument-backup-folder", path, Page::folders, "{home}/backup/args", "Backups of argument files.",
       &S::argument_backup_folder},
      {55, "archive-date", text, Page::folders, "mm/yyyy", "Date format of archive names.",
       &S::archive_date_format},
      {56, "map-folder", path, Page::folders, initial_map_folder, "Where registered maps are kept.",
       &S::map_folder},
      {57, "max-areas", text, Page::splitter, "255", "Splitter: most tiles made in one pass.", &S::max_areas},
      {58, "max-jobs", number, Page::options, "0", "mkgmap: most tiles built at a time.", &S::max_jobs},
      {59, "thread-priority", text, Page::splitter, "medium", "Java thread priority.", &S::thread_priority},
      {60, "java", path, Page::tools, "", "The Java program; blank: the one in PATH.", &S::java},
      {61, "splitter", path, Page::tools, "", "splitter.jar, the tile splitter.", &S::splitter_jar},
      {62, "osmconvert", path, Page::tools, "", "osmconvert: converts, clips and merges OSM files.",
       &S::osmconvert},
      {63, "makensis", path, Page::tools, "", "makensis, the installer builder.", &S::makensis},
      {64, "7z", path, Page::tools, "", "7-Zip for unpacking downloads.", &S::seven_zip},
      {65, "editor", path, Page::tools, "", "Text editor.", &S::editor},
      {66, "styles-folder", path, Page::folders, "{home}/styles", "mkgmap styles, one folder each.",
       &S::styles_folder},
      {67, "split-folder", path, Page::folders, "{home}/temp", "Splitter's tiles and lists.",
       &S::split_folder},
      {68, "gmapsupp-folder", path, Page::device, "{home}/gmapsupp", "Built device images.",
       &S::gmapsupp_folder},
      {69, "scripts-folder", path, Page::folders, "{home}/scripts", "Automation scripts.",
       &S::scripts_folder},
      {70, "hgt-folder", path, Page::elevation, "{home}/hgt", "Height tiles, root folder.", &S::hgt_folder},
      {71, "languages-folder", path, Page::folders, "{home}/languages", "Language files.",
       &S::languages_folder},
      {72, "style", text, Page::map, "default", "Name of the mkgmap style.", &S::style},
      {73, "description", text, Page::map, "", "Description written into the map.", &S::description},
      {74, "overview-name", text, Page::map, "", "Name of the overview map.", &S::overview_name},
      {75, "use-typ", flag, Page::map, "1", "Build the TYP file into the map.", &S::use_typ},
      {76, "unsplit", flag, Page::map, "0", "The input does not need splitting.", &S::unsplit_input},
      {77, "last-split-input", path, Page::map, "", "The input that was split last.", &S::last_split_input},
      {78, "routing", flag, Page::options, "1", "A map that can route.", &S::routing},
      {79, "sea", flag, Page::options, "1", "Generate the sea from coastlines.", &S::sea},
      {80, "map-name-option", flag, Page::options, "1", "Pass the map ID as --mapname.", &S::map_name_option},
      {81, "address-search", flag, Page::options, "1", "Address search: index and country name.",
       &S::address_search},
      {82, "tdb-file", flag, Page::options, "1", "Write the TDB file for BaseCamp.", &S::tdb_file},
      {83, "pois-to-areas", flag, Page::options, "1", "Add points of interest to areas.", &S::pois_to_areas},
      {84, "unicode", flag, Page::options, "1", "Labels in Unicode.", &S::unicode},
      {85, "installer", flag, Page::device, "0", "Make a Windows installer.", &S::installer},
      {86, "use-options-text", flag, Page::options, "1", "Add the free options to the command.",
       &S::use_options_text},
      {87, "draw-priority", number, Page::options, "25", "Draw priority of the map.", &S::draw_priority},
      {88, "options-text", lines, Page::options, "", "Free mkgmap options, one per line.", &S::options_text},
      {89, "splitter-options", lines, Page::splitter, "\x1f--output=o5m", "Further splitter options.",
       &S::splitter_options},
      {90, "fid", path, Page::identity, "", "Family ID of the map.", &S::fid},
      {91, "map-id", path, Page::identity, "13224385", "Map ID: number of the first tile, 8 digits.",
       &S::map_id},
      {92, "fid-locked", flag, Page::identity, "0", "Never change the family ID.", &S::fid_locked},
      {93, "map-id-locked", flag, Page::identity, "0", "Never change the map ID.", &S::map_id_locked},
      {94, "fid-from-base", flag, Page::identity, "0", "New FID from the number below.", &S::fid_from_base},
      {95, "fid-base", path, Page::identity, "9999", "Lowest new family ID.", &S::fid_base},
      {96, "auto-add-fid", flag, Page::identity, "0", "Make a missing family ID without asking.",
       &S::auto_add_fid},
      {97, "map-id-warnings", flag, Page::identity, "0", "Show map ID warnings.", &S::show_map_id_warnings},
      {98, "always-collect-fids", flag, Page::identity, "0", "Collect registered FIDs before every check.",
       &S::always_collect_fids},
      {99, "image-name", text, Page::device, "", "Name of the device image.", &S::image_name},
      {100, "image-folder", path, Page::device, "", "Where the device image is copied to.", &S::image_folder},
      {101, "image-named-after-map", flag, Page::device, "1", "Name the device image after the map.",
       &S::image_named_after_map},
      {102, "confirm-image-overwrite", flag, Page::device, "1", "Ask before overwriting a device image.",
       &S::confirm_image_overwrite},
      {103, "keep-image", flag, Page::device, "0", "Keep the image in the output folder too.",
       &S::keep_image_in_output},
      {104, "dem", flag, Page::elevation, "0", "Add a digital elevation model.", &S::dem},
      {105, "contours", flag, Page::elevation, "0", "Add contour lines.", &S::contours},
      {106, "clip-contours", flag, Page::elevation, "0", "Clip contour lines to the map area.",
       &S::clip_contours},
      {107, "hgt-auto-search", flag, Page::elevation, "0", "Search all height folders.", &S::hgt_auto_search},
      {108, "hgt-folder-1", path, Page::elevation, "{home}/hgt/Europe/3", "Height folder 1.", &S::hgt_folders,
       0},
      {109, "hgt-folder-2", path, Page::elevation, "{home}/hgt/Australia", "Height folder 2.",
       &S::hgt_folders, 1},
      {110, "hgt-folder-3", path, Page::elevation, "", "Height folder 3.", &S::hgt_folders, 2},
      {111, "hgt-folder-4", path, Page::elevation, "", "Height folder 4.", &S::hgt_folders, 3},
      {112, "hgt-folder-5", path, Page::elevation, "", "Height folder 5.", &S::hgt_folders, 4},
      {113, "hgt-folder-6", path, Page::elevation, "", "Height folder 6.", &S::hgt_folders, 5},
      {114, "hgt-slot", number, Page::elevation, "0", "Height folder in use, counted from 0.", &S::hgt_slot},
      {115, "clip-folder-1", path, Page::elevation, "", "Clip folder 1.", &S::clip_folders, 0},
      {116, "clip-folder-2", path, Page::elevation, "", "Clip folder 2.", &S::clip_folders, 1},
      {117, "clip-folder-3", path, Page::elevation, "", "Clip folder 3.", &S::clip_folders, 2},
      {118, "clip-folder-4", path, Page::elevation, "", "Clip folder 4.", &S::clip_folders, 3},
      {119, "clip-folder-5", path, Page::elevation, "", "Clip folder 5.", &S::clip_folders, 4},
      {120, "clip-slot", number, Page::elevation, "0", "Clip folder in use, counted from 0.", &S::clip_slot},
      {121, "dem-options", lines, Page::elevation, "--overview-dem-dist=88888\x1f--dem-dists=3312,6624",
       "DEM options, one per line.", &S::dem_options},
      {122, "contour-options", text, Page::elevation,
       "--WriteElevationType=False --FakeDistance=-0.5 --MinVerticePoints=3 --MinBoundingbox=0.00016 "
       "--DouglasPeucker=0.12 --OutputOverwrite=True --MinorDistance=20 ",
       "Options of the contour tool.", &S::contour_options},
      {123, "contour-tolerance", real, Page::elevation, "0.12", "Contour line simplification.",
       &S::contour_tolerance},
      {124, "contour-tool", path, Page::elevation, "", "The contour tool.", &S::contour_tool},
      {125, "contour-work-folder", path, Page::elevation, "{home}/temp", "Working folder for contours.",
       &S::contour_work_folder},
      {126, "mapsource", path, Page::tools, "", "The MapSource program.", &S::mapsource},
      {127, "mapsource-cache", path, Page::folders, "", "Tile cache of MapSource.", &S::mapsource_tile_cache},
      {128, "basecamp-cache", path, Page::folders, "", "Tile cache of BaseCamp.", &S::basecamp_tile_cache},
      {129, "wine-prefix", path, Page::tools, "", "Wine prefix that BaseCamp lives in.", &S::wine_prefix},
      {130, "launch", text, Page::program, "Basecamp", "Program to launch after a build.",
       &S::launch_program},
      {131, "keep-log", flag, Page::program, "0", "Write mkgmap's log.", &S::keep_log},
      {132, "keep-errors", flag, Page::program, "1", "Keep the tools' error output in dos.txt.",
       &S::keep_error_stream},
      {133, "keep-console", flag, Page::program, "0", "Keep the console open after a run.",
       &S::keep_console_open},
      {134, "own-script", flag, Page::program, "0", "Run myscript.txt instead of the built command.",
       &S::own_script},
      {135, "no-confirmations", flag, Page::program, "0", "Switch confirmations off.", &S::confirmations_off},
      {136, "show-all-output", flag, Page::program, "0", "Show all output of the tools.",
       &S::show_all_output},
      {137, "language", text, Page::program, "", "Language file; blank: English.", &S::language},
      {138, "last-script", path, Page::program, "", "The last automation script.", &S::last_script},
      {139, "doctor-typ", path, Page::program, "", "TYP file of the Style Doctor.", &S::doctor_typ},
      {140, "recent-files", lines, Page::program, "", "Files used recently.", &S::recent_files},
      {141, "window-layout", lines, Page::program, "", "Sizes and places of the windows.", &S::window_layout},
      {142, "option-set", text, Page::options, "", "Name of the option set in use.", &S::option_set},
      {143, "homeport", path, Page::tools, "", "The HomePort program.", &S::home_port},
      {144, "srtm-address", text, Page::elevation, usual_srtm_address,
       "Web address that heights are downloaded from.", &S::srtm_address},
      // 145 is taken: it holds the program folder (settings.cpp)
  };
  return fields;
}

}  // namespace

const std::vector<Field>& settings_fields() { return table(); }

const Field* find_field(std::string_view name) {
  const auto found = std::find_if(table().begin(), table().end(), [&](const Field& field) {
    return equal_ignoring_case(field.name, name) ||
           equal_ignoring_case(field.name, replace_all(name, "_", "-"));
  });
  return found == table().end() ? nullptr : &*found;
}

std::string_view page_name(Page page) {
  switch (page) {
    case Page::map:
      return "Map";
    case Page::options:
      return "Options";
    case Page::splitter:
      return "Splitter and Java";
    case Page::folders:
      return "Folders";
    case Page::tools:
      return "Tools";
    case Page::elevation:
      return "Contours/DEM";
    case Page::identity:
      return "Family ID and map ID";
    case Page::device:
      return "Device and installer";
    case Page::program:
      return "Program";
  }
  return "";
}

}  // namespace ferrowen
