#include "cli/build_table.hpp"

#include "base/text.hpp"
#include "cli/table.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t most_tiles_shown = 12;
constexpr std::size_t tile_digits = 8;

// "13224385.img" and its overview "ovm_13224385.img".
bool is_tile_image(const std::string& path) {
  std::string name = platform::name_of(path);
  if (name.starts_with("ovm_")) name.erase(0, 4);
  return name.size() == tile_digits + 4 && name.ends_with(".img") && is_digits(name.substr(0, tile_digits));
}

std::string stages_text(const BuildReport& report) {
  Table table({{"Stage"}, {"Seconds", Table::Align::right}});
  double sum = 0;
  for (const StageTime& stage : report.stages) {
    table.add({stage.stage, fixed_text(stage.seconds, 1)});
    sum += stage.seconds;
  }
  if (report.stages.size() > 1) table.add({"all", fixed_text(sum, 1)});
  return table.text();
}

std::string files_text(const BuildReport& report) {
  std::size_t tiles = 0;
  unsigned long long tile_bytes = 0;
  for (const MadeFile& file : report.files) {
    tiles += is_tile_image(file.path) ? 1 : 0;
    tile_bytes += is_tile_image(file.path) ? file.size : 0;
  }
  const bool sum_up = tiles > most_tiles_shown;
  Table table({{"File"}, {"Size", Table::Align::right}});
  if (sum_up) table.add({std::to_string(tiles) + " tile images", size_text(tile_bytes)});
  const std::string folder = platform::folder_of(report.files.front().path);
  for (const MadeFile& file : report.files) {
    const bool is_there = platform::folder_of(file.path) == folder;
    if (!sum_up || !is_tile_image(file.path))
      table.add({is_there ? platform::name_of(file.path) : file.path, size_text(file.size)});
  }
  const std::string where = report.result == StageResult::done ? "Made in " : "Left for a look in ";
  return table.text() + "\n" + where + folder + "\n";
}

std::string image_text(const BuildReport& report) {
  return report.image.empty() ? "" : "Device image: " + report.image + "\n";
}

}  // namespace

std::string report_text(const BuildReport& report) {
  std::string text;
  if (!report.stages.empty() && !report.command.empty()) text += stages_text(report);
  if (!report.files.empty())
    text += (text.empty() ? "" : "\n") + files_text(report) + image_text(report) +
            (report.registered_folder.empty() ? "" : "Registered: " + report.registered_folder + "\n") +
            "Family ID: " + report.fid + "\n";
  return text;
}

void show_report(Session& session, const BuildReport& report) {
  session.show(terminal_text(report_text(report)) + (report_text(report).empty() ? "" : "\n"));
  session.json["command"] = report.command;
  session.json["tiles"] = report.tiles;
  session.json["image"] = report.image;
  session.json["registered_folder"] = report.registered_folder;
  session.json["fid"] = report.fid;
  session.json["stages"] = Json::array();
  for (const StageTime& stage : report.stages)
    session.json["stages"].push_back({{"stage", stage.stage}, {"seconds", stage.seconds}});
  session.json["files"] = Json::array();
  for (const MadeFile& file : report.files)
    session.json["files"].push_back({{"path", file.path}, {"size", file.size}});
}

}  // namespace ferrowen
