#include "cli/command_line.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include "app/version.hpp"
#include "base/text.hpp"
#include "cli/automation_line.hpp"
#include "cli/elevation_line.hpp"
#include "cli/near_names.hpp"
#include "styletools/doctor_report.hpp"

namespace ferrowen {

namespace {

constexpr const char* main_footer = R"(Examples:
  ferrowen build faroe-islands.osm.pbf --name "My Map" --fid 1234 --gmapsupp
  ferrowen split big.osm.pbf --max-nodes 800000 --memory 4000
  ferrowen build --tiles 13224385,13224386
  ferrowen settings set mkgmap=/opt/mkgmap/mkgmap.jar
  ferrowen COMMAND --help      more about one command

Exit status: 0 done, 1 the run failed, 2 wrong usage or unreadable input, 3 stopped by a check or by a No.)";

constexpr const char* global_hint =
    "--home, --yes, --quiet, --json and --verbose may stand here too: see ferrowen --help";

constexpr const char* settings_footer = R"(Examples:
  ferrowen settings show --verbose
  ferrowen settings set max-nodes=800000 "map-name=My Map"
  ferrowen settings set "options-text=--remove-short-arcs\n--add-pois-to-lines"   (\n begins a new line)
  ferrowen settings backup ~/ferrowen.mpdat)";

constexpr const char* split_footer = R"(Examples:
  ferrowen split liechtenstein.osm.pbf
  ferrowen split big.osm.pbf --max-nodes 800000 --memory 4000 --yes)";

constexpr const char* build_footer =
    R"(Options hold for this run alone; what is left out comes from the settings.
Examples:
  ferrowen build faroe-islands.osm.pbf --name "My Map" --fid auto --gmapsupp
  ferrowen build --style mystyle --typ mytyp.typ --option --remove-short-arcs --option "--name-tag-list=name:en,name"
  ferrowen build alps.osm.pbf --dem --hgt /data/hgt --contours clip
  ferrowen build --tiles saved --output /media/garmin/maps
  ferrowen build alps.osm.pbf --print --verbose)";

constexpr const char* language_footer = R"(Examples:
  ferrowen language template deutsch.m5l      the English texts, for a translator
  ferrowen language check deutsch.m5l
  ferrowen settings set language=deutsch.m5l  (a file in the languages folder; blank: English)

Exit status of check: 0 nothing to do, 1 something found, 2 unreadable.)";

constexpr const char* maps_footer =
    R"(The registry is that of this system, of a Wine prefix (the setting wine-prefix, else $WINEPREFIX, else
~/.wine with Garmin programs in it), or a store of this program's own.
Examples:
  ferrowen build faroe-islands.osm.pbf --name "My Map" --fid auto --register
  ferrowen maps list
  ferrowen maps remove "My Map"
  ferrowen maps unused)";

constexpr const char* unused_maps_footer =
    R"(Folders with a built map that no registered family uses, in the output
folder and the folder of registered maps. A folder may be named by its path or by its name alone.
Examples:
  ferrowen maps unused
  ferrowen maps unused --delete Old_Map --delete Test
  ferrowen maps unused --recover Old_Map)";

constexpr const char* doctor_footer =
    R"(Checks: typ (needs a TYP file), road-class, resolution, level, tags, unused, style, places.
All of them when none is named; lists of what is in order come with --check or --verbose.
Examples:
  ferrowen doctor styles/mystyle --typ mystyle.typ
  ferrowen doctor default --check style --kind lines
  ferrowen doctor . --typ ../my.typ --format csv > report.csv

Exit status: 0 nothing found, 1 something found, 2 unreadable.)";

std::vector<std::string> check_names() {
  std::vector<std::string> names;
  for (const DoctorCheck check : doctor_checks)
    names.emplace_back(check_name(check));
  return names;
}

constexpr const char* typ_footer = R"(Examples:
  ferrowen typ show mapnik65001.typ
  ferrowen typ show mapnik65001.typ -o mapnik.txt     (in the code page of the file, for mkgmap)
  ferrowen typ show mapnik65001.typ --format csv
  ferrowen typ new mystyle --fid 1234 --complete -o mystyle.txt)";

constexpr const char* gpx_footer =
    R"(Each route or track segment becomes a line of NAME.mp in the folder mps of the program folder.
Types are hexadecimal numbers, written without 0x.
Examples:
  ferrowen gpx2mp tour.gpx --points --name
  ferrowen gpx2mp *.gpx --type 16 --label "Our tours"
  ferrowen build ~/.local/share/ferrowen/mps/tour.mp --option --code-page=1251)";

constexpr const char* kml_footer =
    R"(Placemarks with a path become lines of NAME.mp in the folder mps of the program folder, with
--points those with a single position points. Types are hexadecimal numbers, written without 0x.
Examples:
  ferrowen kml2mp places.kml --points
  ferrowen kml2mp ways.kml --type 1c --label Border)";

std::string footer(const std::string& text) {
  return text.empty() ? global_hint : text + "\n\n" + global_hint;
}

template <typename Value>
void text_option(CLI::App& command, const std::string& name, Value& value, const std::string& type,
                 const std::string& help) {
  command.add_option(name, value, help)->type_name(type)->take_last();
}

void add_global_options(CLI::App& app, GlobalOptions& global) {
  text_option(app, "--home", global.home, "DIR", "Program folder: settings, tiles and work files");
  app.add_flag("-y,--yes", global.yes, "Answer every question with Yes");
  app.add_flag("-q,--quiet", global.quiet, "No notes and no progress; warnings and errors still");
  app.add_flag("--json", global.json, "Print the result and every message as one JSON object");
  app.add_flag("-v,--verbose", global.verbose, "Show more: the tools' own lines, labels of settings");
  app.set_version_flag("--version", std::string("ferrowen ") + version_text, "Print the version");
}

CLI::App* add_command(CLI::App& app, const std::string& name, const std::string& help,
                      const std::string& footer_text) {
  CLI::App* command = app.add_subcommand(name, help);
  command->group("Commands");
  command->footer(footer(footer_text));
  return command;
}

void add_settings(CLI::App& app, SettingsArguments& arguments) {
  using Action = SettingsArguments::Action;
  CLI::App* settings =
      add_command(app, "settings", "Show, change, back up or restore the settings", settings_footer);
  settings->require_subcommand(1);
  const auto add = [&](const std::string& name, Action action, const std::string& help) {
    CLI::App* command = settings->add_subcommand(name, help);
    command->group("Commands");
    command->footer(global_hint);
    command->callback([&arguments, action] { arguments.action = action; });
    return command;
  };
  add("show", Action::show, "Show all settings");
  add("get", Action::get, "Print the value of one setting")
      ->add_option("NAME", arguments.name, "Name of the setting")
      ->type_name("")
      ->required();
  add("set", Action::set, "Change settings")
      ->add_option("NAME=VALUE", arguments.assignments, "Settings and their new values")
      ->type_name("")
      ->required();
  add("backup", Action::backup, "Save a copy of the settings")
      ->add_option("FILE", arguments.file, "Backup to write (*.mpdat)")
      ->type_name("")
      ->required();
  add("restore", Action::restore, "Load the settings from a backup")
      ->add_option("FILE", arguments.file, "Backup to read")
      ->type_name("")
      ->required();
  add("reset", Action::reset, "Remove all settings: back to the defaults");
}

void add_split(CLI::App& app, SplitArguments& arguments) {
  CLI::App* split = add_command(app, "split", "Cut a large map file into tiles", split_footer);
  split->add_option("INPUT", arguments.input, "Map file: .osm, .osm.gz, .pbf or .o5m")
      ->type_name("")
      ->required();
  text_option(*split, "--max-nodes", arguments.max_nodes, "N", "Most nodes in a tile (at least 100000)");
  text_option(*split, "--max-areas", arguments.max_areas, "N", "Most tiles made in one pass (10 to 255)");
  text_option(*split, "--mapid", arguments.map_id, "N", "Number of the first tile, 8 digits");
  text_option(*split, "--description", arguments.description, "T", "Description of the tiles");
  text_option(*split, "--memory", arguments.memory, "MB", "Memory for Java in megabytes");
}

void add_tiles(CLI::App& app, TilesArguments& arguments) {
  CLI::App* tiles = add_command(app, "tiles", "Show the tiles of the last split", "");
  text_option(*tiles, "--save", arguments.save, "N,N",
              "Keep these tiles as the selection that 'build --tiles saved' builds");
}

void add_map_options(CLI::App& build, BuildArguments& arguments) {
  build
      .add_option("INPUT", arguments.input,
                  "Map file: .osm, .osm.gz, .pbf, .o5m or .mp; else that of the settings")
      ->type_name("");
  text_option(build, "--name", arguments.name, "T", "Name of the map");
  text_option(build, "--fid", arguments.fid, "N|auto", "Family ID; auto draws a new one");
  text_option(build, "--mapid", arguments.map_id, "N", "Number of the first tile of the map, 8 digits");
  text_option(build, "--style", arguments.style, "S", "Name of the mkgmap style");
  text_option(build, "--typ", arguments.typ, "F", "TYP file");
  text_option(build, "--tiles", arguments.tiles, "N,N",
              "Build these tiles alone; saved: the saved selection");
  text_option(build, "--country", arguments.country, "T", "Country name written into the map");
  text_option(build, "--description", arguments.description, "T", "Description written into the map");
}

void add_run_options(CLI::App& build, BuildArguments& arguments) {
  text_option(build, "--output", arguments.output, "DIR", "Where the map is written");
  text_option(build, "--memory", arguments.memory, "MB", "Memory for Java in megabytes");
  text_option(build, "--max-nodes", arguments.max_nodes, "N",
              "Split again, with at most so many nodes in a tile");
  build.add_flag("--gmapsupp", arguments.device_image, "Make a device image (gmapsupp.img)");
  build.add_flag("--register", arguments.register_map, "Register the map with BaseCamp and MapSource");
  build.add_flag("--installer", arguments.installer, "Make a Windows installer with makensis");
  build.add_flag("--dem", arguments.dem, "Add a digital elevation model");
  build.add_option("--contours", arguments.contours, "Contour lines; clip: cut to the map area")
      ->type_name("yes|clip|no")
      ->take_last()
      ->check(CLI::IsMember({"yes", "clip", "no"}).description(""));
  text_option(build, "--hgt", arguments.hgt, "DIR", "Folder of the height tiles (.hgt)");
  build.add_option("--option", arguments.options, "A further mkgmap option; may be repeated")
      ->type_name("\"--x=y\"")
      ->allow_extra_args(false);
  build.add_flag("--split", arguments.split_again, "Split again, even when good tiles are there");
  build.add_flag("--print", arguments.print, "Print the commands, run and write nothing");
  build.add_flag("--save-arguments", arguments.save_arguments,
                 "Write the argument files and sel.args for 'mkgmap -c', run nothing");
}

void add_build(CLI::App& app, BuildArguments& arguments) {
  CLI::App* build =
      add_command(app, "build", "Build a Garmin map, splitting first where needed", build_footer);
  add_map_options(*build, arguments);
  add_run_options(*build, arguments);
}

void add_language(CLI::App& app, LanguageArguments& arguments) {
  using Action = LanguageArguments::Action;
  CLI::App* language = add_command(app, "language", "List, begin or check language files", language_footer);
  language->require_subcommand(1);
  const auto add = [&](const std::string& name, Action action, const std::string& help) {
    CLI::App* command = language->add_subcommand(name, help);
    command->group("Commands");
    command->footer(global_hint);
    command->callback([&arguments, action] { arguments.action = action; });
    return command;
  };
  const auto add_file = [&](CLI::App* command, const std::string& help) {
    command->add_option("FILE", arguments.file, help)->type_name("")->required();
  };
  add("list", Action::list, "Show the languages that can be chosen");
  add_file(add("template", Action::write_template, "Write the English texts as a language file"),
           "Language file to write (*.m5l)");
  add_file(add("check", Action::check, "Tell what is missing, superfluous or out of range"),
           "Language file to read");
}

void add_doctor(CLI::App& app, DoctorArguments& arguments) {
  CLI::App* doctor =
      add_command(app, "doctor", "Check an mkgmap style, alone and against a TYP file", doctor_footer);
  doctor->add_option("STYLE", arguments.style, "Folder of the style, or its name in the styles folder")
      ->type_name("")
      ->required();
  text_option(*doctor, "--typ", arguments.typ, "FILE", "Compiled TYP file that is to draw the style");
  doctor->add_option("--check", arguments.checks, "Run this check alone; may be repeated")
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->check(CLI::IsMember(check_names()).description(""));
  doctor->add_option("--kind", arguments.kind, "Read this rule file alone")
      ->type_name("polygons|lines|points")
      ->take_last()
      ->check(CLI::IsMember({"polygons", "lines", "points"}).description(""));
  doctor
      ->add_option("--draw-order", arguments.draw_order,
                   "Tell which transparent polygons of the TYP file are drawn below this level")
      ->type_name("N")
      ->check(CLI::Range(0, 255).description(""));
  doctor->add_option("--format", arguments.format, "How findings are printed")
      ->type_name("text|csv|json")
      ->take_last()
      ->check(CLI::IsMember({"text", "csv", "json"}).description(""));
}

void add_unused_maps(CLI::App& maps, UnusedMapsArguments& arguments) {
  CLI::App* unused = maps.add_subcommand("unused", "List, delete or recover maps that nothing uses any more");
  unused->group("Commands");
  unused->footer(footer(unused_maps_footer));
  CLI::Option* remove =
      unused->add_option("--delete", arguments.remove, "Delete these folders; asks first")->type_name("DIR");
  unused->add_option("--recover", arguments.recover, "Register the map of this folder again")
      ->type_name("DIR")
      ->take_last()
      ->excludes(remove);
}

void add_maps(CLI::App& app, MapsArguments& arguments, UnusedMapsArguments& unused) {
  CLI::App* maps = add_command(app, "maps", "Maps that are kept on this machine", maps_footer);
  maps->require_subcommand(1);
  CLI::App* list = maps->add_subcommand("list", "Show the maps that BaseCamp and MapSource know");
  list->callback([&arguments] { arguments.action = MapsArguments::Action::list; });
  CLI::App* remove = maps->add_subcommand("remove", "Remove a registered map and its files; asks first");
  remove->callback([&arguments] { arguments.action = MapsArguments::Action::remove; });
  remove->add_option("NAME", arguments.name, "Product name of the map")->type_name("")->required();
  remove->add_option("--fid", arguments.fid, "Family ID, where several maps have this name")
      ->type_name("N")
      ->take_last();
  for (CLI::App* command : {list, remove}) {
    command->group("Commands");
    command->footer(global_hint);
  }
  add_unused_maps(*maps, unused);
}

void add_typ(CLI::App& app, TypArguments& arguments) {
  CLI::App* typ = add_command(app, "typ", "Show a compiled TYP file, or begin one for a style", typ_footer);
  typ->require_subcommand(1);
  CLI::App* show = typ->add_subcommand("show", "Print a compiled TYP file as TYP text");
  show->callback([&arguments] { arguments.action = TypArguments::Action::show; });
  show->add_option("FILE", arguments.file, "Compiled TYP file")->type_name("")->required();
  show->add_option("--format", arguments.format, "text: TYP text; csv: one line per definition")
      ->type_name("text|csv|json")
      ->take_last()
      ->check(CLI::IsMember({"text", "csv", "json"}).description(""));
  text_option(*show, "-o,--output", arguments.output, "FILE", "Write it to a file instead");
  text_option(*show, "--editor-files", arguments.editor_files, "FILE",
              "Write FILE_polygons.tvkx, FILE_lines.tvkx and FILE_points.tvkx instead");
  CLI::App* create = typ->add_subcommand("new", "Write a first TYP text that draws every type of a style");
  create->callback([&arguments] { arguments.action = TypArguments::Action::create; });
  create->add_option("STYLE", arguments.style, "Name or folder of an mkgmap style")
      ->type_name("")
      ->required();
  text_option(*create, "--fid", arguments.family_id, "N", "Family ID, 1 to 65000 (12345)");
  create->add_flag("--complete", arguments.complete,
                   "Neutral fills for polygons without a colour, so that mkgmap accepts the text; do without "
                   "missing rule files");
  text_option(*create, "-o,--output", arguments.output, "FILE", "TYP text to write");
  create->get_option("--output")->required();
  for (CLI::App* command : {show, create}) {
    command->group("Commands");
    command->footer(global_hint);
  }
}

CLI::App* add_converter(CLI::App& app, const std::string& name, const std::string& help,
                        const std::string& footer_text, ConvertArguments& arguments) {
  CLI::App* command = add_command(app, name, help, footer_text);
  command->add_option("FILE", arguments.files, "Files to convert")->type_name("")->required();
  text_option(*command, "--type", arguments.type, "HEX", "Type of the lines; 16 without it");
  text_option(*command, "--label", arguments.label, "T", "Label; without it the one found in the file");
  command->add_flag("--show", arguments.show, "Show the end of the files that were written");
  return command;
}

void add_converters(CLI::App& app, GpxArguments& gpx, KmlArguments& kml) {
  CLI::App* tracks =
      add_converter(app, "gpx2mp", "Convert GPX routes and tracks to Polish MP", gpx_footer, gpx);
  tracks->add_flag("--name", gpx.offer_name, "Look for a name in the file and offer it as label");
  tracks->add_flag("--polygon", gpx.polygon, "Write polygons instead of lines");
  tracks->add_flag("--points", gpx.points, "Write points at the start, half way and the finish");
  text_option(*tracks, "--start-type", gpx.start_type, "HEX", "Type of the start point; 6412 without it");
  text_option(*tracks, "--half-way-type", gpx.half_way_type, "HEX",
              "Type of the point half way; 52 without it");
  text_option(*tracks, "--finish-type", gpx.finish_type, "HEX", "Type of the finish point; 6412 without it");
  CLI::App* placemarks = add_converter(app, "kml2mp", "Convert KML placemarks to Polish MP", kml_footer, kml);
  placemarks->add_flag("--points", kml.points, "Write placemarks with a single position as points");
  text_option(*placemarks, "--point-type", kml.point_type, "HEX", "Type of the points; 2f without it");
}

struct Parser {
  CLI::App app{"Turns OpenStreetMap data into Garmin maps."};
  GlobalOptions global;
  SettingsArguments settings;
  SplitArguments split;
  TilesArguments tiles;
  BuildArguments build;
  LanguageArguments language;
  MapsArguments maps;
  UnusedMapsArguments unused_maps;
  ElevationArguments elevation;
  AutomationArguments automation;
  DoctorArguments doctor;
  TypArguments typ;
  GpxArguments gpx;
  KmlArguments kml;

  Parser() {
    constexpr std::size_t column = 28;
    app.name("ferrowen");
    app.allow_windows_style_options(false);  // "/maps/a.pbf" is a path
    app.fallthrough();                       // options for every command may stand behind it too
    app.get_formatter()->column_width(column);
    app.get_formatter()->label("REQUIRED", "");
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.get_formatter()->label("OPTIONS", "OPTION...");
    add_global_options(app, global);
    add_settings(app, settings);
    add_split(app, split);
    add_tiles(app, tiles);
    add_build(app, build);
    add_maps(app, maps, unused_maps);
    add_elevation(app, elevation, global_hint);
    add_automation(app, automation, global_hint);
    add_doctor(app, doctor);
    add_converters(app, gpx, kml);
    add_language(app, language);
    add_typ(app, typ);
    app.require_subcommand(1);
    app.footer(main_footer);
  }

  CommandLine result() {
    if (app.got_subcommand("settings")) return {global, settings};
    if (app.got_subcommand("split")) return {global, split};
    if (app.got_subcommand("tiles")) return {global, tiles};
    if (app.got_subcommand("maps")) {
      if (app.get_subcommand("maps")->got_subcommand("unused")) return {global, unused_maps};
      return {global, maps};
    }
    if (app.got_subcommand("language")) return {global, language};
    if (app.got_subcommand("hgt")) return {global, elevation.hgt};
    if (app.got_subcommand("contours")) return {global, elevation.contours};
    if (app.got_subcommand("unzip")) return {global, elevation.unzip};
    if (app.got_subcommand("merge")) return {global, elevation.merge};
    if (app.got_subcommand("run")) return {global, automation.run};
    if (app.got_subcommand("script")) return {global, automation.script};
    if (app.got_subcommand("doctor")) {
      if (doctor.format == "json") global.json = true;
      return {global, doctor};
    }
    if (app.got_subcommand("typ")) {
      if (typ.format == "json") global.json = true;
      return {global, typ};
    }
    if (app.got_subcommand("gpx2mp")) return {global, gpx};
    if (app.got_subcommand("kml2mp")) return {global, kml};
    return {global, build};
  }
};

std::string whole_name(const CLI::App& command) {
  const CLI::App* parent = command.get_parent();
  return (parent == nullptr ? "" : whole_name(*parent) + " ") + command.get_name();
}

std::string unknown_command(const CLI::App& command, const std::string& word) {
  std::vector<std::string_view> names;
  for (const CLI::App* one : command.get_subcommands([](const CLI::App*) { return true; }))
    names.emplace_back(one->get_name());
  const std::vector<std::string> near = near_names(word, names);
  const std::string hint = near.empty() ? "" : " Did you mean " + join_texts(near, ", ") + "?";
  return "Unknown command '" + word + "'." + hint + " '" + whole_name(command) +
         " --help' lists the commands.";
}

// The option that a word names: of the command, or one that every command takes.
const CLI::Option* option_named(const CLI::App* command, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  for (; command != nullptr; command = command->get_parent()) {
    if (const CLI::Option* option = command->get_option_no_throw(name)) return option;
  }
  return nullptr;
}

bool looks_like_option(const std::string& word) {
  return word.size() > 2 && word.starts_with("--") && word[2] >= 'a' && word[2] <= 'z';
}

// What an option that takes a text would swallow by mistake. Options for mkgmap are meant to look like that.
std::string wrong_value(const CLI::Option& option, const std::string& word, const std::string& value) {
  if (!looks_like_option(value) || option.check_lname("option")) return "";
  return word + " needs a value; '" + value + "' looks like an option. If it is the value, write " + word +
         "=" + value + ".";
}

// CLI11 only says that a command is missing, and takes any word for a value; a person wants to know which
// word was not understood.
std::string mistake_in(const CLI::App& app, const std::vector<std::string>& arguments) {
  const CLI::App* command = &app;
  for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
    const std::string& word = arguments[i];
    if (word.starts_with("-")) {
      const CLI::Option* option = option_named(command, word);
      if (option == nullptr && command == &app)
        return "Unknown option " + word + ". 'ferrowen --help' lists the options.";
      if (option == nullptr || option->get_items_expected_max() == 0 || contains(word, "=")) continue;
      if (++i == arguments.size()) return "";
      if (std::string wrong = wrong_value(*option, word, arguments[i]); !wrong.empty()) return wrong;
    } else if (const auto commands = command->get_subcommands([](const CLI::App*) { return true; });
               !commands.empty()) {
      const auto named = std::find_if(commands.begin(), commands.end(),
                                      [&](const CLI::App* one) { return one->get_name() == word; });
      if (named == commands.end()) return unknown_command(*command, word);
      command = *named;
    }
  }
  return "";
}

}  // namespace

ParsedCommandLine parse_command_line(const std::vector<std::string>& arguments) {
  Parser parser;
  if (arguments.empty()) return {std::nullopt, "", parser.app.help()};
  if (const std::string mistake = mistake_in(parser.app, arguments); !mistake.empty())
    return {std::nullopt, "", mistake};
  try {
    parser.app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    std::ostringstream help;
    std::ostringstream text;
    if (parser.app.exit(error, help, text) == 0) return {std::nullopt, help.str(), ""};
    return {std::nullopt, "", std::string(trim(text.str()))};
  }
  return {parser.result(), "", ""};
}

}  // namespace ferrowen
