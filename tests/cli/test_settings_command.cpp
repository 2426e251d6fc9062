#include <doctest/doctest.h>

#include "app/program_folder.hpp"
#include "app/settings.hpp"
#include "base/files.hpp"
#include "cli_run.hpp"
#include "platform/paths.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

TEST_CASE("settings set and get") {
  const TempFolder home("h\u00f6me & co");
  const auto set = [&](const std::string& assignment) {
    return run_cli_in(home.path(), {"settings", "set", "map-name=Changed", assignment});
  };
  struct Case {
    const char *name, *value, *shown;
  };
  for (const auto& [name, value, shown] :
       {Case{"description", "K\u00f6ln = sch\u00f6n", "K\u00f6ln = sch\u00f6n"},
        Case{"routing", "off", "false"}, Case{"contour-tolerance", "0,5", "0.5"},
        Case{"options-text", R"(--a\n# \n--b=c d)", "--a\n# \n--b=c d"}, Case{"description", "", ""},
        Case{"MAX_NODES", "900000", "900000"}, Case{"editor", "nano", "nano"}}) {
    CHECK(set(std::string(name) + "=" + value).status == 0);
    CHECK(setting(home.path(), name) == shown);
  }
  CHECK(run_cli_in(home.path(), {"settings", "get", "options-text"}).output == "--a\n# \n--b=c d\n");
  CHECK(set("hgt-folder=heights").status == 0);
  CHECK(setting(home.path(), "hgt-folder") == platform::absolute("heights"));
  CHECK(set("map-name=Kept").status == 0);
  for (const auto& [assignment, said] : {std::pair{"routing=perhaps", "routing: 'perhaps' is not yes or no."},
                                         {"draw-priority=1.5", "is not a whole number."},
                                         {"max-jobs=0", "max-jobs must be > 0"},
                                         {"map-name", "NAME=VALUE"},
                                         {"map_nam=x", "Did you mean map-name"}})
    CHECK(set(assignment).told(2, said));
  CHECK(setting(home.path(), "map-name") == "Kept");
  const TempFolder blocked;
  REQUIRE(make_folder(blocked / file_name::settings).ok());
  CHECK(run_cli_in(blocked.path(), {"settings", "set", "fid=1"}).told(2, file_name::settings));
  CHECK(folder_exists(blocked / file_name::settings));
}

TEST_CASE("settings show") {
  const TempFolder home;
  REQUIRE(run_cli_in(home.path(), {"settings", "set", R"(options-text=--a\n--b\n--c)"}).status == 0);
  const CliResult table = run_cli_in(home.path(), words("settings show"));
  CHECK(contains(table.output, "\nOptions\n"));
  CHECK(contains(table.output, "--a [2 more lines]\n"));
  const nlohmann::json object = run_cli_in(home.path(), words("--json settings show")).json();
  CHECK(object.at("fields").size() == settings_fields().size());
}

TEST_CASE("settings backup, restore and reset") {
  const TempFolder home;
  const TempFolder other("backups");
  const auto run = [&](const Arguments& arguments, const std::string& answers = "") {
    return run_cli_in(home.path(), arguments, answers);
  };
  const std::string file = other / "mine.mpdat";
  REQUIRE(run({"settings", "set", "map-name=First"}).status == 0);
  CHECK(run({"settings", "backup", other / "mine"}).told(0, "Settings have been backed up."));
  CHECK(run({"settings", "backup", other / "no/such/folder/x.mpdat"}).status == 1);
  REQUIRE(run({"settings", "set", "map-name=Second"}).status == 0);
  // Without a person the answer is No; a missing, unreadable or empty backup is none.
  CHECK(run({"settings", "restore", file}).told(3, "Are you sure you want to use backup? [y/N/c] No\n"));
  CHECK(run({"settings", "reset"}).status == 3);
  for (const std::string& path : {other / "none", other.path(), other.write("empty.mpdat", "")})
    CHECK(run({"settings", "restore", path, "--yes"}).status == 2);
  CHECK(setting(home.path(), "map-name") == "Second");
  CHECK(run({"settings", "restore", file}, "what?\ny\n").status == 0);
  CHECK(setting(home.path(), "map-name") == "First");
  CHECK(run({"settings", "reset", "--yes"}).status == 0);
  CHECK(setting(home.path(), "map-name") == "Demo Map");
  CHECK(setting(home.path(), "input") == home / file_name::sample_map);
}

}  // namespace ferrowen::test
