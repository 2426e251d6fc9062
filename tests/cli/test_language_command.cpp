#include <doctest/doctest.h>

#include "app/language_file.hpp"
#include "base/files.hpp"
#include "cli_run.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

TEST_CASE("language list, template and check") {
  const TempFolder home("h\u00f6me");
  const auto run = [&](const Arguments& arguments) { return run_cli_in(home.path(), arguments); };
  const std::string file = home / "english.m5l";
  CHECK(run({"language", "template", file}).told(0, file));
  CHECK(read_whole_file(file) == language_template());
  CHECK(run({"language", "check", file}).told(0, "nothing is wrong"));
  REQUIRE(safe_write(file, "mlanguage=X\n<language>\n<messages>\n300:x\n").ok());
  CHECK(run({"language", "template", file}).told(3, "File exists. Overwrite?"));
  const CliResult checked = run({"language", "check", file});
  CHECK(checked.status == 1);
  CHECK(contains(checked.output, "line 4: Number 300 is out of range"));
  const nlohmann::json object = run({"language", "check", file, "--json"}).json();
  CHECK(object.at("result") == "problems found");
  CHECK(object.at("problems").back().at("line") == 4);
  CHECK(run({"language", "template", file, "--yes"}).status == 0);
  CHECK(read_whole_file(file) == language_template());
  CHECK(run({"language", "template", home / "no/such/folder/x.m5l"}).status == 1);
  for (const std::string& path :
       {home / "none.m5l", home.path(), home.write("big", std::string(5U << 20U, 'x'))})
    CHECK(run({"language", "check", path}).told(2, path));

  home.write("languages/de.m5l", "mlanguage=Deutsch\n<language>\n<messages>\n57:Ersetzen?\n");
  REQUIRE(run({"settings", "set", "language=de.m5l"}).status == 0);
  const CliResult listed = run({"language", "list"});
  CHECK(contains(listed.output, "*  Deutsch   de.m5l\n"));
  // English, this one, and those that are shipped where they lie beside the program.
  CHECK(run({"language", "list", "--json"}).json().at("languages").size() >= 2);
  CHECK(run({"language", "template", file}).told(3, "Ersetzen?"));
}

}  // namespace ferrowen::test
