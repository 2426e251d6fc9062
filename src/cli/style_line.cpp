#include "cli/style_line.hpp"

#include "cli/line_parts.hpp"
#include "styletools/doctor_report.hpp"

namespace ferrowen {

namespace {

constexpr const char* doctor_footer =
    R"(Checks: typ (needs a TYP file), road-class, resolution, level, tags, unused, style, places,
mkgmap, names.
All of them when none is named; lists of what is in order come with --check or --verbose.
Examples:
  ferrowen doctor styles/mystyle --typ mystyle.typ
  ferrowen doctor default --check style --kind lines
  ferrowen doctor . --typ ../my.typ --format csv > report.csv

Exit status: 0 nothing found, 1 something found, 2 unreadable.)";

constexpr const char* typ_footer = R"(Examples:
  ferrowen typ show mapnik65001.typ
  ferrowen typ show mapnik65001.typ -o mapnik.txt     (in the code page of the file, for mkgmap)
  ferrowen typ show mapnik65001.typ --format csv
  ferrowen typ new mystyle --fid 1234 --complete -o mystyle.txt)";

std::vector<std::string> check_names() {
  std::vector<std::string> names;
  for (const DoctorCheck check : doctor_checks)
    names.emplace_back(check_name(check));
  return names;
}

}  // namespace

void add_doctor(CLI::App& app, DoctorArguments& arguments, const std::string& hint) {
  CLI::App* doctor = add_command(app, "doctor", "Check an mkgmap style, alone and against a TYP file",
                                 with_hint(doctor_footer, hint));
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

void add_typ(CLI::App& app, TypArguments& arguments, const std::string& hint) {
  CLI::App* typ = add_command(app, "typ", "Show a compiled TYP file, or begin one for a style",
                              with_hint(typ_footer, hint));
  typ->require_subcommand(1);
  CLI::App* show = add_command(*typ, "show", "Print a compiled TYP file as TYP text", hint);
  show->callback([&arguments] { arguments.action = TypArguments::Action::show; });
  show->add_option("FILE", arguments.file, "Compiled TYP file")->type_name("")->required();
  show->add_option("--format", arguments.format, "text: TYP text; csv: one line per definition")
      ->type_name("text|csv|json")
      ->take_last()
      ->check(CLI::IsMember({"text", "csv", "json"}).description(""));
  text_option(*show, "-o,--output", arguments.output, "FILE", "Write it to a file instead");
  text_option(*show, "--editor-files", arguments.editor_files, "FILE",
              "Write FILE_polygons.tvkx, FILE_lines.tvkx and FILE_points.tvkx instead");
  CLI::App* create =
      add_command(*typ, "new", "Write a first TYP text that draws every type of a style", hint);
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
}

}  // namespace ferrowen
