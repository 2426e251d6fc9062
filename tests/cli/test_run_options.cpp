#include <doctest/doctest.h>

#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/run_options.hpp"
#include "cli/run_settings.hpp"
#include "platform/paths.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

namespace {

struct Record {
  explicit Record() {
    workspace.folder = ProgramFolder(home.path());
    workspace.settings = default_settings(home.path());
  }
  [[nodiscard]] Settings saved() const {
    return parse_settings(read_whole_file(workspace.path(file_name::settings)), home.path()).settings;
  }
  TempFolder home;
  Workspace workspace;
};

}  // namespace

TEST_CASE("options of a run leave the stored values alone, all else is kept") {
  Record record;
  Settings& settings = record.workspace.settings;
  settings.description = "";
  settings.hgt_folders[2] = "/three";
  settings.max_nodes = "60000";
  RunSettings run(record.workspace);
  CHECK(run.set("map-name", "For this run").ok());
  CHECK(run.set("description", "now").ok());
  CHECK(run.set("hgt-folder-3", "/now").ok());
  CHECK(run.set("dem", "1").ok());
  CHECK_FALSE(run.set("dem", "perhaps").ok());
  CHECK_FALSE(run.set("no-such-name", "1").ok());
  CHECK(settings.map_name == "For this run");
  CHECK(settings.hgt_folders[2] == "/now");
  // what the run itself changes
  settings.last_split_input = "/map.pbf";
  settings.max_nodes = "800000";
  settings.fid = "4711";
  settings.map_name = "changed again by the run";
  REQUIRE(run.save(false).ok());
  const Settings saved = record.saved();
  CHECK(saved.map_name == "Demo Map");
  CHECK(saved.description.empty());
  CHECK(saved.hgt_folders[2] == "/three");
  CHECK_FALSE(saved.dem);
  CHECK(saved.last_split_input == "/map.pbf");
  CHECK(saved.max_nodes == "800000");
  CHECK(saved.fid == "4711");
  CHECK_FALSE(file_exists(record.home / file_name::settings_backup));
  REQUIRE(run.save(true).ok());
  CHECK(file_exists(record.home / file_name::settings_backup));
}

TEST_CASE("options of build in the record") {
  Record record;
  Settings& settings = record.workspace.settings;
  settings.options_text = "--stored\r\n## end\r\nignored";
  settings.hgt_slot = 7;  // of a damaged file
  settings.fid = "99";
  RunSettings run(record.workspace);
  BuildArguments arguments;
  SUBCASE("everything given") {
    arguments.input = "in.pbf";
    arguments.typ = "my.typ";
    arguments.output = "out";
    arguments.memory = "3000";
    arguments.contours = "clip";
    arguments.hgt = "hgt";
    arguments.fid = "auto";
    arguments.options = {"--x", "--y=z"};
    REQUIRE(apply_options(record.workspace, run, arguments).ok());
    CHECK(settings.input == platform::absolute("in.pbf"));
    CHECK(settings.typ == platform::absolute("my.typ"));
    CHECK(settings.output_folder == platform::absolute("out"));
    CHECK(settings.java_options == "-Xmx3000m");
    CHECK(settings.contours);
    CHECK(settings.clip_contours);
    CHECK(settings.hgt_slot == 0);
    CHECK(settings.hgt_folders[0] == platform::absolute("hgt"));
    CHECK(settings.fid.empty());
    CHECK(settings.options_text == "--stored\r\n--x\r\n--y=z\r\n## end\r\nignored");
    run.put_back();
    CHECK(settings.input == platform::absolute("in.pbf"));
    CHECK(settings.options_text == "--stored\r\n## end\r\nignored");
    CHECK(settings.hgt_slot == 7);
  }
  SUBCASE("a stored options text that is switched off stays out") {
    settings.use_options_text = false;
    RunSettings second(record.workspace);
    arguments.options = {"--x"};
    REQUIRE(apply_options(record.workspace, second, arguments).ok());
    CHECK(settings.use_options_text);
    CHECK(settings.options_text == "--x");
  }
  SUBCASE("a device image unless the settings want something else") {
    REQUIRE(apply_options(record.workspace, run, arguments).ok());
    CHECK(settings.device_image);
    run.put_back();
    CHECK_FALSE(settings.device_image);
    settings.register_map = true;
    RunSettings second(record.workspace);
    REQUIRE(apply_options(record.workspace, second, arguments).ok());
    CHECK_FALSE(settings.device_image);
  }
  SUBCASE("wrong memory, and a locked family ID") {
    arguments.memory = "2g";
    CHECK_FALSE(apply_options(record.workspace, run, arguments).ok());
    arguments.memory.reset();
    settings.fid_locked = true;
    arguments.fid = "auto";
    CHECK(apply_options(record.workspace, run, arguments).ok());
    CHECK(settings.fid == "99");
  }
}

}  // namespace ferrowen::test
