// The command line: what may stand on it, and the plain values that come out of it.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ferrowen {

struct GlobalOptions {
  std::optional<std::string> home;
  bool yes = false, quiet = false, json = false, verbose = false;
};

struct SettingsArguments {
  enum class Action : unsigned char { show, get, set, backup, restore, reset };
  Action action = Action::show;
  std::string name;                      // get
  std::vector<std::string> assignments;  // set: NAME=VALUE
  std::string file;                      // backup, restore
};

struct SplitArguments {
  std::string input;
  std::optional<std::string> max_nodes, max_areas, map_id, description, memory;
};

struct TilesArguments {
  std::optional<std::string> save;  // tile numbers to keep as the saved selection
};

struct BuildArguments {
  std::optional<std::string> input, name, fid, map_id, style, typ, tiles, country, description, output;
  std::optional<std::string> memory, max_nodes, contours, hgt;
  bool device_image = false, register_map = false, installer = false, dem = false, split_again = false,
       print = false, save_arguments = false;
  std::vector<std::string> options;  // further mkgmap options, in order
};

struct LanguageArguments {
  enum class Action : unsigned char { list, write_template, check };
  Action action = Action::list;
  std::string file;  // write_template, check
};

struct MapsArguments {
  enum class Action : unsigned char { list, remove };
  Action action = Action::list;
  std::string name;                // remove: the product
  std::optional<std::string> fid;  // and, where several have this name, its family ID
};

struct UnusedMapsArguments {
  std::vector<std::string> remove;  // folders to delete
  std::optional<std::string> recover;
};

// For which tiles, and with which heights.
struct AreaArguments {
  std::optional<std::string> tiles, hgt;
};

struct HgtArguments {
  AreaArguments area;
};

struct ContoursArguments {
  enum class Action : unsigned char { make, clip };
  Action action = Action::make;
  AreaArguments area;
  std::vector<std::string> cells;
  std::optional<std::string> interval, tolerance;
  bool overwrite = false;
};

struct UnzipArguments {
  std::string folder;
};

struct MergeArguments {
  std::vector<std::string> files;
  std::string output;
  std::optional<std::string> list;
};

struct RunArguments {
  std::vector<std::string> scripts;
};

struct ScriptArguments {
  enum class Action : unsigned char { make, check };
  Action action = Action::make;
  std::string file;
};

struct DoctorArguments {
  std::string style;  // path of its folder, or its name in the styles folder
  std::optional<std::string> typ, kind;
  std::vector<std::string> checks;  // by their names; none: all
  std::string format = "text";      // or csv; json is the global option
  std::size_t draw_order = 0;       // transparent polygons below this level are told; 0: none
};

struct TypArguments {
  enum class Action : unsigned char { show, create };
  Action action = Action::show;
  std::string file;                                         // show
  std::optional<std::string> format, output, editor_files;  // show; create: output
  std::string style;                                        // create
  std::optional<std::string> family_id;
  bool complete = false;
};

// What both converters to Polish MP take.
struct ConvertArguments {
  std::vector<std::string> files;
  std::optional<std::string> type, label;
  bool points = false, show = false;
};

struct GpxArguments : ConvertArguments {
  std::optional<std::string> start_type, half_way_type, finish_type;
  bool offer_name = false, polygon = false;
};

struct KmlArguments : ConvertArguments {
  std::optional<std::string> point_type;
};

struct CommandLine {
  GlobalOptions global;
  std::variant<SettingsArguments, SplitArguments, TilesArguments, BuildArguments, LanguageArguments,
               MapsArguments, UnusedMapsArguments, HgtArguments, ContoursArguments, UnzipArguments,
               MergeArguments, RunArguments, ScriptArguments, DoctorArguments, TypArguments, GpxArguments,
               KmlArguments>
      command;
};

struct ParsedCommandLine {
  std::optional<CommandLine> line;
  std::string help;   // set instead when help or the version was asked for
  std::string error;  // set instead when the command line is wrong
};

ParsedCommandLine parse_command_line(const std::vector<std::string>& arguments);

}  // namespace ferrowen
