#include "cli/converter_line.hpp"

#include "cli/line_parts.hpp"

namespace ferrowen {

namespace {

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

CLI::App* add_converter(CLI::App& app, const std::string& name, const std::string& help,
                        const std::string& footer, ConvertArguments& arguments) {
  CLI::App* command = add_command(app, name, help, footer);
  command->add_option("FILE", arguments.files, "Files to convert")->type_name("")->required();
  text_option(*command, "--type", arguments.type, "HEX", "Type of the lines; 16 without it");
  text_option(*command, "--label", arguments.label, "T", "Label; without it the one found in the file");
  command->add_flag("--show", arguments.show, "Show the end of the files that were written");
  return command;
}

}  // namespace

void add_converters(CLI::App& app, ConverterArguments& arguments, const std::string& hint) {
  auto& [gpx, kml] = arguments;
  CLI::App* tracks = add_converter(app, "gpx2mp", "Convert GPX routes and tracks to Polish MP",
                                   with_hint(gpx_footer, hint), gpx);
  tracks->add_flag("--name", gpx.offer_name, "Look for a name in the file and offer it as label");
  tracks->add_flag("--polygon", gpx.polygon, "Write polygons instead of lines");
  tracks->add_flag("--points", gpx.points, "Write points at the start, half way and the finish");
  text_option(*tracks, "--start-type", gpx.start_type, "HEX", "Type of the start point; 6412 without it");
  text_option(*tracks, "--half-way-type", gpx.half_way_type, "HEX",
              "Type of the point half way; 52 without it");
  text_option(*tracks, "--finish-type", gpx.finish_type, "HEX", "Type of the finish point; 6412 without it");
  CLI::App* placemarks =
      add_converter(app, "kml2mp", "Convert KML placemarks to Polish MP", with_hint(kml_footer, hint), kml);
  placemarks->add_flag("--points", kml.points, "Write placemarks with a single position as points");
  text_option(*placemarks, "--point-type", kml.point_type, "HEX", "Type of the points; 2f without it");
}

}  // namespace ferrowen
