// Everything that lives as long as the program: the settings record and the module-level state of the map in
// work. Made once, passed by reference to every stage.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/interface_texts.hpp"
#include "app/program_folder.hpp"
#include "app/settings.hpp"
#include "app/tile.hpp"
#include "base/message_table.hpp"
#include "runner/dos_outputs.hpp"

namespace ferrowen {

// Split state of the current input; the numbers are those that the indicator has always used.
enum class SplitState : std::uint8_t {
  no_files = 0,
  input_missing = 1,
  unknown = 2,
  no_need_to_split = 10,
  needs_splitting = 12,
  not_up_to_date = 13,
};

inline constexpr const char* java_not_installed = "Java not installed";

struct Workspace {
  ProgramFolder folder;
  Settings settings;
  MessageTable messages;
  InterfaceTexts texts;
  RunFlags flags;
  std::string java_version = java_not_installed;

  TileList tiles;  // of the split output folder, in the order of areas.list
  SplitState split_state = SplitState::unknown;
  std::string land_list;               // names of all height cells with land; "" until it is needed
  bool saved_selection = false;        // the selection came from a saved argument file
  bool settings_were_damaged = false;  // found so at this start
  bool script_running = false;         // an automation script runs: no confirmations, no results told
  bool splitting = false;              // a split runs
  std::size_t expected_tiles = 0;      // of the split that runs
  std::string registered_fids = ",";   // comma lists, filled by the collection of registered maps
  std::string registered_names = ",";
  std::vector<std::string> registered_products;  // the same names: a comma may stand in one
  bool registered_are_known = false;             // they were collected since the start
  std::string product_to_replace;                // a map of this name was found registered
  std::string chosen_image_folder;               // for the image of this build alone; "" as the settings say
  std::string device_map_ids = ",";              // mapids.txt
  std::string avoided_fids = ",";                // mapfids.txt
  std::vector<std::string> built_files;          // full paths of what the last good build made

  [[nodiscard]] std::string path(std::string_view name) const { return folder / name; }
  [[nodiscard]] std::string message(int number) const { return messages(number); }
};

// The folder that builds write to: the output folder, or the default map folder when none is set.
std::string build_output_folder(const Settings& settings);
// The split output folder: that of the settings, or "temp" in the program folder when none is set.
std::string split_folder(const Workspace& workspace);

}  // namespace ferrowen
