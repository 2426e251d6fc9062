// The settings record: one instance, owned by the Workspace, read by every stage. The table of settings.hpp
// says where each field stands in the settings file, its default and its meaning.
#pragma once

#include <array>
#include <string>

namespace ferrowen {

inline constexpr int hgt_folder_slots = 6;
inline constexpr int clip_folder_slots = 5;

struct Settings {
  // the map
  std::string input, map_name, country, description, overview_name, style, typ;
  bool use_typ = true, unsplit_input = false;
  std::string last_split_input;
  // options of the mkgmap command
  bool routing = true, sea = true, address_search = true, unicode = true, drive_on_left = false;
  bool transparent = false, map_name_option = true, use_max_jobs = false, tdb_file = true;
  bool pois_to_areas = true, pois_to_lines = false, installer = false, use_options_text = true;
  int max_jobs = 0, draw_priority = 25;
  std::string options_text;
  // splitter and Java
  std::string max_nodes, max_areas, first_map_id = "13224385", splitter_options, java_options,
                                    thread_priority;
  // identity
  std::string fid, map_id;
  bool fid_locked = false, map_id_locked = false, fid_from_base = false, auto_add_fid = false;
  bool show_map_id_warnings = false, always_collect_fids = false, register_map = false;
  std::string fid_base;
  // device image
  bool device_image = false, image_named_after_map = true, confirm_image_overwrite = true;
  bool keep_image_in_output = false;
  std::string image_name, image_folder;
  // elevation
  bool dem = false, contours = false, clip_contours = false, hgt_auto_search = false;
  std::array<std::string, hgt_folder_slots> hgt_folders;
  std::array<std::string, clip_folder_slots> clip_folders;
  int hgt_slot = 0, clip_slot = 0;
  std::string hgt_folder, dem_options, contour_options, contour_work_folder, srtm_address;
  double contour_tolerance = 0;
  // folders
  std::string output_folder, styles_folder, split_folder, gmapsupp_folder, scripts_folder, languages_folder;
  std::string argument_folder, archive_folder, argument_backup_folder, archive_date_format, map_folder;
  std::string mapsource_tile_cache, basecamp_tile_cache;
  // tools
  std::string java, mkgmap_jar, splitter_jar, osmconvert, contour_tool, seven_zip, makensis, editor,
      typ_editor;
  std::string basecamp, mapsource, wine_prefix, launch_program, home_port;
  // the program
  bool keep_log = false, keep_error_stream = true, keep_console_open = false, own_script = false;
  bool confirmations_off = false, show_all_output = false;
  std::string language, last_script, doctor_typ, recent_files, window_layout, option_set, colour;
  int state_1 = 0, list_selection = 0;
  std::string path_2, file_menu_state, state_48;
  // no setting of a person's, and not in the table: the program folder that the paths above were saved in
  std::string program_folder;
};

}  // namespace ferrowen
