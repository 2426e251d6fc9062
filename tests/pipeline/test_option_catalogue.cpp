#include "pipeline/option_catalogue.hpp"

#include <doctest/doctest.h>

#include "support/stand_in.hpp"

using namespace ferrowen;

namespace {

constexpr const char* mkgmap_help =
    "=== Java options ===\n\n-ea\n    Java's own.\n\n"
    "=== File options ===\n\nThese words belong to no option --really.\n\n"
    "-c filename\n--read-config=filename\n"
    "    Each line of the named file contains a command option in the form option of\r\n"
    "    arguments.\n\n     A second paragraph:\n        - one\n        - two\n\n"
    "--gmapi-minimal[=<include-pattern>]\n    Optional.\n"
    "=== Deprecated and Obsolete Options ===\n--drive-on-left\n--drive-on-right\n    Both.\n\n"
    "Text that is not indented ends the help.\n    And this is lost.\n--name=a=b [x]\n";

struct Wanted {
  const char *name, *hint, *section, *help;
  OptionKind kind;
};

void check_options(const std::vector<CatalogueOption>& options, const std::vector<Wanted>& wanted) {
  REQUIRE(options.size() == wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    CHECK(options[i].name == wanted[i].name);
    CHECK(options[i].hint == wanted[i].hint);
    CHECK(options[i].section == wanted[i].section);
    CHECK(options[i].help == wanted[i].help);
    CHECK(options[i].kind == wanted[i].kind);
  }
}

}  // namespace

TEST_CASE("mkgmap's help as a list of options") {
  check_options(read_mkgmap_options(mkgmap_help),
                {{"--read-config", "filename", "File",
                  "Each line of the named file contains a command option in the form option of arguments.\n\n"
                  "A second paragraph:\n- one\n- two",
                  OptionKind::value},
                 {"--gmapi-minimal", "<include-pattern>", "File", "Optional.", OptionKind::optional_value},
                 {"--drive-on-left", "", "Deprecated and Obsolete", "Both.", OptionKind::flag},
                 {"--drive-on-right", "", "Deprecated and Obsolete", "Both.", OptionKind::flag},
                 {"--name", "a=b [x]", "Deprecated and Obsolete", "", OptionKind::value}});
  for (const char* rubbish :
       {"", "--", "-\n---\n----x\n", "no help\n", "Error: Invalid or corrupt jarfile x\n"})
    CHECK(read_mkgmap_options(rubbish).empty());
}

TEST_CASE("the splitter's help as a list of options") {
  check_options(read_splitter_options("Usage: java --not-one\nOptions:\n"
                                      " --cache                   Deprecated, now does nothing \n"
                                      " --keep-complete           Write complete ways --overlap=0 \n"
                                      "                           Default is true. \n"
                                      " --overlap\n                           Deprecated. Default is auto. \n"
                                      " --output-dir              The path.\n"),
                {{"--cache", "", "", "Deprecated, now does nothing", OptionKind::flag},
                 {"--keep-complete", "true|false", "", "Write complete ways --overlap=0 Default is true.",
                  OptionKind::optional_value},
                 {"--overlap", "", "", "Deprecated. Default is auto.", OptionKind::value},
                 {"--output-dir", "", "", "The path.", OptionKind::value}});
}

TEST_CASE("the installed tools are asked; words that end other captured runs do not end this one") {
  test::StandIn stand("some tools");
  const auto ask = [&](OptionTool tool) {
    return query_option_catalogue(stand.workspace, stand.prompts, stand.progress, tool);
  };
  CHECK(ask(OptionTool::mkgmap).value.size() == 1);
  CHECK(ask(OptionTool::mkgmap).value.front().help == "Could not be reduced.");
  CHECK(ask(OptionTool::splitter).value.size() == 2);
  CHECK(stand.progress.output_text().empty());
  std::string& jar = stand.workspace.settings.mkgmap_jar;
  jar = stand.workspace.settings.splitter_jar;
  stand.workspace.settings.splitter_jar = "";
  stand.home.write("mode", "");
  CHECK(ask(OptionTool::splitter).error == "Please locate splitter.jar in Settings");
  jar = stand.home / "none.jar";
  CHECK(ask(OptionTool::mkgmap).error == "Cannot find " + jar);
  jar = "";
  CHECK(ask(OptionTool::mkgmap).error == "Please locate mkgmap.jar in Settings");
  stand.workspace.settings.mkgmap_jar = stand.home / "mkgmap.jar";
  stand.workspace.settings.java = stand.home / "none";
  CHECK(ask(OptionTool::mkgmap).error == "Please install Java or restart Ferrowen.");
}
