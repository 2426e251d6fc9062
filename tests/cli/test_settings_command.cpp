#include <doctest/doctest.h>

#include "app/program_folder.hpp"
#include "app/settings.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/near_names.hpp"
#include "cli_run.hpp"
#include "platform/paths.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

TEST_CASE("settings set and get") {
  const TempFolder home("h\u00f6me & co");
  SUBCASE("values come back as they were set") {
    struct Case {
      const char *name, *value, *shown;
    };
    for (const Case& one : {Case{"map-name", "K\u00f6ln = sch\u00f6n", "K\u00f6ln = sch\u00f6n"},
                            Case{"routing", "off", "false"}, Case{"draw-priority", "30", "30"},
                            Case{"contour-tolerance", "0,5", "0.5"},
                            Case{"options-text", R"(--a\n# \n--b=c d)", "--a\n# \n--b=c d"},
                            Case{"description", "", ""}, Case{"MAX_NODES", "900000", "900000"}}) {
      CAPTURE(one.name);
      CHECK(run_cli_in(home.path(), {"settings", "set", std::string(one.name) + "=" + one.value}).status ==
            0);
      CHECK(setting(home.path(), one.name) == one.shown);
    }
    const CliResult lines = run_cli_in(home.path(), {"settings", "get", "options-text"});
    CHECK(lines.output == "--a\n# \n--b=c d\n");
  }
  SUBCASE("relative paths become absolute, bare program names stay") {
    CHECK(run_cli_in(home.path(), {"settings", "set", "hgt-folder=heights", "editor=nano", "country=Malta"})
              .status == 0);
    CHECK(setting(home.path(), "hgt-folder") == platform::absolute("heights"));
    CHECK(setting(home.path(), "editor") == "nano");
    CHECK(setting(home.path(), "country") == "Malta");
  }
  SUBCASE("one wrong assignment changes nothing") {
    struct Case {
      const char *assignment, *said;
    };
    for (const Case& one :
         {Case{"routing=perhaps", "routing: 'perhaps' is not yes or no."},
          Case{"draw-priority=1.5", "is not a whole number."}, Case{"max-jobs=0", "max-jobs must be > 0"},
          Case{"map-name", "NAME=VALUE"}, Case{"map_nam=x", "Did you mean map-name"}}) {
      const CliResult result =
          run_cli_in(home.path(), {"settings", "set", "map-name=Changed", one.assignment});
      CAPTURE(one.assignment);
      CHECK(result.status == 2);
      CHECK(contains(result.error, one.said));
      CHECK(result.output.empty());
    }
    CHECK(setting(home.path(), "map-name") == "Demo Map");
  }
  SUBCASE("an unknown name is no value") {
    const CliResult result = run_cli_in(home.path(), {"settings", "get", "max-node"});
    CHECK(result.status == 2);
    CHECK(result.error == "There is no setting 'max-node'. Did you mean max-nodes?\n");
  }
  SUBCASE("settings that cannot be read are not overwritten") {
    REQUIRE(make_folder(home / file_name::settings).ok());
    const CliResult result = run_cli_in(home.path(), {"settings", "set", "map-name=x"});
    CHECK(result.status == 2);
    CHECK(contains(result.error, std::string(file_name::settings)));
    CHECK(folder_exists(home / file_name::settings));
  }
}

TEST_CASE("settings show") {
  const TempFolder home;
  REQUIRE(run_cli_in(home.path(), {"settings", "set", R"(options-text=--a\n--b\n--c)"}).status == 0);
  const CliResult table = run_cli_in(home.path(), {"settings", "show"});
  CHECK(table.status == 0);
  CHECK(contains(table.output, "\nOptions\n"));
  CHECK(contains(table.output, "--a [2 more lines]\n"));
  CHECK_FALSE(contains(table.output, "Most nodes"));
  CHECK(contains(run_cli_in(home.path(), {"settings", "show", "-v"}).output,
                 "(Splitter: most nodes in a tile.)"));
  const nlohmann::json object = run_cli_in(home.path(), {"--json", "settings", "show"}).json();
  CHECK(object.at("fields").size() == settings_fields().size());
  CHECK(object.at("program_folder") == home.path());
}

TEST_CASE("settings backup, restore and reset") {
  const TempFolder home;
  const TempFolder other("backups");
  const std::string file = other / "mine.mpdat";
  REQUIRE(run_cli_in(home.path(), {"settings", "set", "map-name=First"}).status == 0);
  const CliResult backup = run_cli_in(home.path(), {"settings", "backup", other / "mine"});
  CHECK(backup.status == 0);
  CHECK(contains(backup.error, "Settings have been backed up."));
  REQUIRE(run_cli_in(home.path(), {"settings", "set", "map-name=Second"}).status == 0);

  SUBCASE("without a person the answer is No") {
    const CliResult result = run_cli_in(home.path(), {"settings", "restore", file});
    CHECK(result.status == 3);
    CHECK(contains(result.error, "Are you sure you want to use backup? [y/N/c] No\n"));
    CHECK(setting(home.path(), "map-name") == "Second");
  }
  SUBCASE("--yes and a person's yes restore") {
    CHECK(run_cli_in(home.path(), {"settings", "restore", file, "--yes"}).status == 0);
    CHECK(setting(home.path(), "map-name") == "First");
    CHECK(run_cli_in(home.path(), {"settings", "set", "map-name=Third"}).status == 0);
    CHECK(run_cli_in(home.path(), {"settings", "restore", file}, "what?\ny\n").status == 0);
    CHECK(setting(home.path(), "map-name") == "First");
  }
  SUBCASE("a backup that is missing, a folder or empty is no backup") {
    CHECK(contains(run_cli_in(home.path(), {"settings", "restore", other / "none", "--yes"}).error,
                   "Cannot find backup."));
    for (const std::string& path : {other / "none", other.path(), other.write("empty.mpdat", "")}) {
      CAPTURE(path);
      CHECK(run_cli_in(home.path(), {"settings", "restore", path, "--yes"}).status == 2);
    }
    CHECK(setting(home.path(), "map-name") == "Second");
  }
  SUBCASE("a backup that cannot be written") {
    CHECK(run_cli_in(home.path(), {"settings", "backup", other / "no/such/folder/x.mpdat"}).status == 1);
  }
  SUBCASE("reset asks and then forgets") {
    CHECK(run_cli_in(home.path(), {"settings", "reset"}).status == 3);
    CHECK(setting(home.path(), "map-name") == "Second");
    CHECK(run_cli_in(home.path(), {"settings", "reset"}, "y\n").status == 0);
    CHECK(setting(home.path(), "map-name") == "Demo Map");
    CHECK(setting(home.path(), "input") == home / file_name::sample_map);
  }
}

TEST_CASE("near names") {
  CHECK(edit_distance("kitten", "sitting") == 3);
  CHECK(edit_distance("", "abc") == 3);
  const std::vector<std::string_view> names = {"max-nodes", "max-areas", "max-jobs",
                                               "typ",       "fid",       "hgt-folder-1"};
  CHECK(near_names("Max-Node", names) == std::vector<std::string>{"max-nodes"});
  CHECK(near_names("folder", names) == std::vector<std::string>{"hgt-folder-1"});
  CHECK(near_names("something-else", names).empty());
}

}  // namespace ferrowen::test
