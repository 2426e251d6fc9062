#include "picture_samples.hpp"

#include <filesystem>

#include "app/tools.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/registration.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

struct SampleFile {
  const char *path, *text;
};

constexpr SampleFile files[] = {
    {"styles/walking/version", "1\n"},
    {"styles/walking/info", "summary: A map for walkers\nversion: 1.0\n"},
    {"styles/walking/polygons",
     "# Land and water\n"
     "natural=water [0x3c resolution 20]\n"
     "natural=wood | landuse=forest [0x50 resolution 20]\n"
     "landuse=residential [0x10 resolution 22]\n"
     "leisure=park [0x17 resolution 22]\n"
     "#landuse=cemetery [0x1a resolution 22]\n"},
    {"styles/walking/lines",
     "# Roads and paths\n"
     "highway=* & name=* {name '${name}'}\n"
     "highway=primary [0x04 road_class=3 road_speed=4 resolution 20]\n"
     "highway=primary & ref=* [0x04 road_class=3 road_speed=4 resolution 20]\n"
     "highway=tertiary [0x06 road_class=3 road_speed=3 resolution 21]\n"
     "highway=path & sac_scale=hiking {set trail=yes} [0x16 resolution 22]\n"
     "highway=footway {name '${tmp:walk}'} [0x16 road_class=0 road_speed=0 resolution 22]\n"
     "highway=track {colour red} [0x0a road_class=0 road_speed=1 resolution 22]\n"
     "waterway=river [0x1f resolution=20]\n"
     "contour=elevation & contour_ext=elevation_major [0x22 resolution 20]\n"
     "include 'inc/ferries';\n"},
    {"styles/walking/points",
     "place=village [0x0b00 resolution 20]\n"
     "amenity=parking [0x2f0b resolution 22]\n"
     "natural=peak [0x6616 resolution 20]\n"},
    {"tracks/torshavn.gpx",
     "<?xml version='1.0'?>\n<gpx version='1.1' creator='sample'><trk><name>Kirkjubøur</name><trkseg>\n"
     "<trkpt lat='62.0117' lon='-6.7711'></trkpt>\n<trkpt lat='62.0083' lon='-6.7846'></trkpt>\n"
     "<trkpt lat='61.9990' lon='-6.7938'></trkpt>\n<trkpt lat='61.9904' lon='-6.7893'></trkpt>\n"
     "<trkpt lat='61.9789' lon='-6.8012'></trkpt>\n<trkpt lat='61.9672' lon='-6.7992'></trkpt>\n"
     "<trkpt lat='61.9571' lon='-6.7934'></trkpt>\n</trkseg></trk></gpx>\n"},
    {"tracks/torshavn.kml",
     "<?xml version='1.0'?>\n<kml><Document>\n<Placemark><coordinates>-6.7711,62.0117,0 -6.7688,62.0143,0 "
     "-6.7742,62.0178,0 -6.7835,62.0181,0 -6.7890,62.0149,0</coordinates></Placemark>\n"
     "<Placemark><coordinates>-6.7753,62.0069,0</coordinates></Placemark>\n</Document></kml>\n"},
    {"scripts/faroe-islands.auto",
     "<ferrowen>\n<file>faroe-islands.osm.pbf</file>\n<mapname>Faroe "
     "Islands</mapname>\n<basecamp>yes</basecamp>\n"
     "<gmapsupp>perhaps</gmapsupp>\n<fid>auto</fid>\n<dem>no</dem>\n<contours>no</contours>\n</ferrowen>\n"},
};

// Cells of the right size without any height, an archive without any file.
Status write_heights(const std::string& folder) {
  constexpr std::size_t bytes_of_a_cell = 2884802;
  const std::string archive = std::string("PK\x05\x06", 4) + std::string(18, '\0');
  for (const char* name : {"N61W007.hgt", "N61W008.hgt"})
    if (Status written = safe_write(platform::join(folder, name), std::string(bytes_of_a_cell, '\0'));
        !written.ok())
      return written;
  for (const char* name : {"N62W007.hgt.zip", "N62W008.hgt.zip"})
    if (Status written = safe_write(platform::join(folder, name), archive); !written.ok()) return written;
  return {};
}

Status write_files(const Workspace& workspace) {
  for (const SampleFile& file : files) {
    const std::string path = workspace.path(file.path);
    if (Status made = make_folder(platform::folder_of(path)); !made.ok()) return made;
    if (Status written = safe_write(path, file.text); !written.ok()) return written;
  }
  return {};
}

// The registered map once more, in a folder that nothing is registered for.
Status copy_map(const Settings& settings) {
  const std::string folder = registered_map_folder(settings);
  std::error_code error;
  std::filesystem::copy(
      platform::file_system_path(folder),
      platform::file_system_path(platform::join(platform::folder_of(folder), "Faroe_Islands_2025")),
      std::filesystem::copy_options::recursive, error);
  return error ? Status{folder + ": " + error.message()} : Status{};
}

}  // namespace

Result<PictureSamples> make_picture_samples(Workspace& workspace, const std::string& contour_tool) {
  Settings& settings = workspace.settings;
  const std::string tool = workspace.path(platform::name_of(contour_tool));
  const std::string heights = settings.hgt_folders.at(0);
  for (const Status& step : {write_files(workspace), make_folder(heights), write_heights(heights),
                             copy_map(settings), copy_file(contour_tool, tool)})
    if (!step.ok()) return failed<PictureSamples>(step.error);
  settings.contour_tool = tool;
  settings.style = "walking";
  settings.last_script = workspace.path("scripts/faroe-islands.auto");
  return {{workspace.path("tracks/torshavn.gpx"), workspace.path("tracks/torshavn.kml"),
           workspace.path("files/contours.osm.pbf"), workspace.path("faroe-islands.osm.pbf")},
          ""};
}

}  // namespace ferrowen
