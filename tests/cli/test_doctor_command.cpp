#include <filesystem>

#include "base/files.hpp"
#include "cli/cli_run.hpp"
#include "styletools/typ_file_bytes.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using test::run_cli;
using test::run_cli_in;

TEST_CASE("doctor: findings with file and line, and the exit status of a linter") {
  const test::TempFolder folder("my styles");
  folder.write("one/lines", "highway=primary [0x03 road_class=4 resolution 20]\n#a=b [0x01]\n");
  folder.write("one/points", "a=b [0x2a00 resolution 24]\n");
  const std::string style = folder / "one";
  const std::string place = folder / "one/lines";

  const test::CliResult all = run_cli({"doctor", style});
  CHECK(all.told(1, "Without --typ FILE"));
  CHECK(contains(all.output, place + ":1: warning: [road-class] Lines 00300: (change road_class:3)"));
  CHECK(contains(all.output, place + ":2: hint: [unused] Lines: Not Used: #a=b [0x01]\n"));
  CHECK_FALSE(contains(all.output, "resolution]"));

  CHECK(run_cli({"doctor", style, "--kind", "points", "--check", "style"}).told(0, "No issues found."));
  const test::CliResult listed = run_cli({"doctor", style, "--check", "resolution"});
  CHECK(listed.status == 0);
  CHECK(contains(listed.output, "Points 02A00: 1: a=b [0x2a00 resolution 24]\n"));

  const test::CliResult csv =
      run_cli({"doctor", style, "--format", "csv", "--check", "unused", "--kind", "lines"});
  CHECK(csv.output == "check,weight,kind,type,file,line,finding,detail,earlier\r\nunused,hint,\"Lines\",,\"" +
                          place + "\",2,\"Not Used\",\"#a=b [0x01]\",\"\"\r\n");
  for (const test::Arguments& json : {test::Arguments{"--format", "json"}, test::Arguments{"--json"}}) {
    test::Arguments arguments{"doctor", style, "--check", "unused"};
    arguments.insert(arguments.end(), json.begin(), json.end());
    const test::CliResult result = run_cli(arguments);
    CHECK(result.status == 1);
    CHECK(result.json()["issues"] == 1);
    CHECK(result.json()["findings"][0]["line"] == 2);
    CHECK(result.json()["findings"][0]["file"] == place);
  }
}

TEST_CASE("doctor: a style by its name, and what cannot be read") {
  const test::TempFolder home;
  home.write("styles/mine/points", "place=city [0x0400 resolution 15]\n");
  home.write("styles/empty/info", "");
  const std::string no_typ = home.write("no.typ", "this is no TYP file");
  CHECK(contains(run_cli_in(home.path(), {"doctor", "mine", "--check", "places"}).output, " BOLD & BIG\n"));
  CHECK(run_cli_in(home.path(), {"doctor", "gone"}).told(2, "Cannot locate style."));
  CHECK(run_cli_in(home.path(), {"doctor", "empty"}).told(2, "No style data"));
  CHECK(run_cli_in(home.path(), {"doctor", "mine", "--check", "typ"}).told(2, "Can't find TYP file. "));
  CHECK(run_cli_in(home.path(), {"doctor", "mine", "--typ", home / "gone.typ"})
            .told(2, "Can't find TYP file. Please select."));
  CHECK(run_cli_in(home.path(), {"doctor", "mine", "--typ", no_typ}).told(2, "no.typ"));
  CHECK(run_cli({"doctor", "mine", "--check", "roads"}).status == 2);
}

TEST_CASE("doctor: what was not looked at has not passed") {
  const test::TempFolder folder;
  const std::string lines = folder.write("one/lines", "a=b [0x01]\n");
  const std::string style = folder / "one";
  std::string bytes = test::typ_file_bytes();
  test::set_number(bytes, 0x15, 12345, 2);
  const std::string damaged = folder.write("damaged.typ", bytes);
  const test::CliResult points = run_cli({"doctor", style, "--check", "places"});
  CHECK(points.told(2, "has nothing to look at"));
  CHECK_FALSE(contains(points.error, "No issues found."));
  folder.write("one/points", "a=b [0x2a00]\n");
  CHECK(run_cli({"doctor", style, "--check", "road-class", "--kind", "points"}).told(2, "for lines alone"));
  // The TYP file matters to its own check alone.
  const test::CliResult other = run_cli({"doctor", style, "--check", "style", "--typ", folder / "gone.typ"});
  CHECK(other.told(0, "The style has no rules for polygons."));
  CHECK_FALSE(contains(run_cli({"doctor", style, "--check", "style"}).error, "--typ"));
  const test::CliResult typ = run_cli({"doctor", style, "--check", "typ", "--typ", damaged});
  CHECK(typ.status == 1);
  CHECK(typ.output.starts_with("error: [typ] Check: TYP file, byte 21: the code page 12345"));
  std::filesystem::resize_file(platform::file_system_path(lines), (64ULL << 20U) + 1);
  CHECK(run_cli({"doctor", style, "--check", "unused"}).told(2, lines));
  CHECK(run_cli_in(folder.path(), {"typ", "new", folder / "gone", "-o", folder / "x.txt"})
            .told(2, "Cannot locate style."));
}
