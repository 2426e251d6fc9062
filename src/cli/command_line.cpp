#include "cli/command_line.hpp"

#include <algorithm>
#include <sstream>

#include "app/version.hpp"
#include "base/text.hpp"
#include "cli/automation_line.hpp"
#include "cli/completion.hpp"
#include "cli/converter_line.hpp"
#include "cli/elevation_line.hpp"
#include "cli/line_parts.hpp"
#include "cli/near_names.hpp"
#include "cli/style_line.hpp"

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

std::string footer(const std::string& text) { return with_hint(text, global_hint); }

void add_global_options(CLI::App& app, GlobalOptions& global) {
  text_option(app, "--home", global.home, "DIR", "Program folder: settings, tiles and work files");
  app.add_flag("-y,--yes", global.yes, "Answer every question with Yes");
  app.add_flag("-q,--quiet", global.quiet, "No notes and no progress; warnings and errors still");
  app.add_flag("--json", global.json, "Print the result and every message as one JSON object");
  app.add_flag("-v,--verbose", global.verbose, "Show more: the tools' own lines, labels of settings");
  app.set_version_flag("--version", std::string("ferrowen ") + version_text, "Print the version");
}

void add_settings(CLI::App& app, SettingsArguments& arguments) {
  using Action = SettingsArguments::Action;
  CLI::App* settings =
      add_command(app, "settings", "Show, change, back up or restore the settings", footer(settings_footer));
  settings->require_subcommand(1);
  const auto add = [&](const std::string& name, Action action, const std::string& help) {
    CLI::App* command = add_command(*settings, name, help, global_hint);
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
  CLI::App* split = add_command(app, "split", "Cut a large map file into tiles", footer(split_footer));
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
  CLI::App* tiles = add_command(app, "tiles", "Show the tiles of the last split", footer(""));
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
      add_command(app, "build", "Build a Garmin map, splitting first where needed", footer(build_footer));
  add_map_options(*build, arguments);
  add_run_options(*build, arguments);
}

void add_language(CLI::App& app, LanguageArguments& arguments) {
  using Action = LanguageArguments::Action;
  CLI::App* language =
      add_command(app, "language", "List, begin or check language files", footer(language_footer));
  language->require_subcommand(1);
  const auto add = [&](const std::string& name, Action action, const std::string& help) {
    CLI::App* command = add_command(*language, name, help, global_hint);
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

void add_unused_maps(CLI::App& maps, UnusedMapsArguments& arguments) {
  CLI::App* unused = add_command(maps, "unused", "List, delete or recover maps that nothing uses any more",
                                 footer(unused_maps_footer));
  CLI::Option* remove =
      unused->add_option("--delete", arguments.remove, "Delete these folders; asks first")->type_name("DIR");
  unused->add_option("--recover", arguments.recover, "Register the map of this folder again")
      ->type_name("DIR")
      ->take_last()
      ->excludes(remove);
}

void add_maps(CLI::App& app, MapsArguments& arguments, UnusedMapsArguments& unused) {
  CLI::App* maps = add_command(app, "maps", "Maps that are kept on this machine", footer(maps_footer));
  maps->require_subcommand(1);
  CLI::App* list = add_command(*maps, "list", "Show the maps that BaseCamp and MapSource know", global_hint);
  list->callback([&arguments] { arguments.action = MapsArguments::Action::list; });
  CLI::App* remove =
      add_command(*maps, "remove", "Remove a registered map and its files; asks first", global_hint);
  remove->callback([&arguments] { arguments.action = MapsArguments::Action::remove; });
  remove->add_option("NAME", arguments.name, "Product name of the map")->type_name("")->required();
  remove->add_option("--fid", arguments.fid, "Family ID, where several maps have this name")
      ->type_name("N")
      ->take_last();
  add_unused_maps(*maps, unused);
}

constexpr const char* completion_footer = R"(Examples:
  ferrowen completion bash > ~/.local/share/bash-completion/completions/ferrowen
  ferrowen completion zsh > ~/.zsh/completions/_ferrowen      (a folder of zsh's fpath))";

void add_completion(CLI::App& app, std::string& shell) {
  add_command(app, "completion", "Print the completion function for a shell", footer(completion_footer))
      ->add_option("SHELL", shell, "bash or zsh")
      ->type_name("")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh"}).description(""));
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
  StyleArguments style;
  ConverterArguments converters;
  std::string completion_shell;

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
    add_doctor(app, style.doctor, global_hint);
    add_converters(app, converters, global_hint);
    add_language(app, language);
    add_typ(app, style.typ, global_hint);
    add_completion(app, completion_shell);
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
      if (style.doctor.format == "json") global.json = true;
      return {global, style.doctor};
    }
    if (app.got_subcommand("typ")) {
      if (style.typ.format == "json") global.json = true;
      return {global, style.typ};
    }
    if (app.got_subcommand("gpx2mp")) return {global, converters.gpx};
    if (app.got_subcommand("kml2mp")) return {global, converters.kml};
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
  if (parser.completion_shell == "bash") return {std::nullopt, bash_completion(parser.app), ""};
  if (parser.completion_shell == "zsh") return {std::nullopt, zsh_completion(parser.app), ""};
  return {parser.result(), "", ""};
}

}  // namespace ferrowen
