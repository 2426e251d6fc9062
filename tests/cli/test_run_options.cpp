#include <doctest/doctest.h>

#include "app/run_settings.hpp"
#include "app/start_up.hpp"
#include "base/files.hpp"
#include "cli/run_options.hpp"
#include "platform/paths.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

namespace {

struct Record {
  Record() {
    workspace.folder = ProgramFolder(home.path());
    settings = default_settings(home.path());
  }
  bool apply(RunSettings& run) { return apply_options(workspace, run, arguments).ok(); }
  TempFolder home;
  Workspace workspace;
  Settings& settings = workspace.settings;
  BuildArguments arguments;
};

}  // namespace

TEST_CASE("options of a run leave the stored values alone, all else is kept") {
  Record record;
  Settings& settings = record.settings;
  settings.hgt_folders[2] = "/three";
  settings.max_nodes = "60000";
  RunSettings run(record.workspace);
  CHECK(run.set("map-name", "For this run").ok());
  CHECK(run.set("hgt-folder-3", "/now").ok());
  CHECK_FALSE(run.set("dem", "perhaps").ok());
  CHECK(settings.hgt_folders[2] == "/now");
  settings.max_nodes = "800000";  // by the run itself
  settings.map_name = "changed again by the run";
  const std::string backup = record.home / file_name::settings_backup;
  for (const bool run_was_good : {false, true}) {
    REQUIRE(run.save(run_was_good).ok());
    CHECK(file_exists(backup) == run_was_good);
  }
  const Settings saved = parse_settings(read_whole_file(backup), record.home.path()).settings;
  CHECK(saved.map_name == "Demo Map");
  CHECK(saved.hgt_folders[2] == "/three");
  CHECK(saved.max_nodes == "800000");
}

TEST_CASE("options of build in the record") {
  Record record;
  Settings& settings = record.settings;
  settings.options_text = "--stored\r\n## end\r\nignored";
  settings.hgt_slot = 7;  // of a damaged file
  RunSettings run(record.workspace);
  record.arguments.input = "in.pbf";
  record.arguments.memory = "3000";
  record.arguments.contours = "clip";
  record.arguments.hgt = "hgt";
  record.arguments.fid = "auto";
  record.arguments.options = {"--x", "--y=z"};
  REQUIRE(record.apply(run));
  CHECK(settings.clip_contours);
  CHECK(settings.hgt_folders[0] == platform::absolute("hgt"));
  CHECK(settings.fid.empty());
  CHECK(settings.options_text == "--stored\r\n--x\r\n--y=z\r\n## end\r\nignored");
  CHECK(settings.device_image);
  run.put_back();
  CHECK(settings.input == platform::absolute("in.pbf"));
  CHECK(settings.options_text == "--stored\r\n## end\r\nignored");
  CHECK(settings.hgt_slot == 7);
  CHECK_FALSE(settings.device_image);
  // A stored text that is switched off stays out, a locked family ID stays, one kind of map is enough.
  settings.use_options_text = false;
  settings.fid = "99";
  settings.fid_locked = settings.register_map = true;
  RunSettings second(record.workspace);
  REQUIRE(record.apply(second));
  CHECK(settings.options_text == "--x\r\n--y=z");
  CHECK(settings.fid == "99");
  CHECK_FALSE(settings.device_image);
}

}  // namespace ferrowen::test
