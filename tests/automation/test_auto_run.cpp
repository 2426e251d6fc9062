#include "automation/auto_run.hpp"

#include <doctest/doctest.h>

#include "automation/auto_editor.hpp"
#include "automation/auto_log.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/build.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

struct Automat : test::StandIn {
  Automat() : StandIn("auto & mat") {
    set("map-name=My Map; use-options-text=1; gmapsupp-folder={home}/images; scripts-folder={home}/scripts");
    workspace.settings.options_text = "--name-tag-list=name:de,name\r\n--x=1";
    home.write("scripts/x", "");
  }
  std::string script(const std::string& lines) {
    return home.write("scripts/one.auto",
                      "<ferrowen>\n<file>" + (home / "map.osm") + "</file>\n" + lines + "</ferrowen>\n");
  }
  AutoReport run(const std::string& path) { return run_auto_script(workspace, progress, path); }
  [[nodiscard]] bool heard(const AutoReport& report, std::string_view part) const {
    for (const QuietMessage& message : report.messages) {
      if (contains(message.text, part)) return true;
    }
    return false;
  }
};

}  // namespace

TEST_CASE("a script builds its map without a question; the settings come back") {
  Automat test;
  test.home.write("images/MyMap.img", "older");
  test.set("confirm-image-overwrite=1");
  const AutoReport report = test.run(
      test.script("<mapname>Alps</mapname>\n<GMAPSUPP>YES</GMAPSUPP>\n<fid>auto</fid>\n"
                  "<gmapsupp_name>MyMap</gmapsupp_name>\n<option>--y=2</option>\n<option>--y=2</option>\n"));
  CAPTURE(join_texts(report.problems, "\n"));
  REQUIRE(report.result == StageResult::done);
  CHECK(test.prompts.said.empty());
  CHECK(report.build.image == test.home / "images" + platform::separator + "MyMap.img");
  CHECK(read_whole_file(report.build.image) == "device image");  // the first name is taken, and overwritten
  CHECK(contains(report.build.command, "--y=2 --y=2"));
  CHECK_FALSE(contains(report.build.command, "--x=1"));
  CHECK(contains(report.build.command, "Alps"));
  CHECK_FALSE(test.workspace.script_running);
  CHECK(test.workspace.settings.map_name == "My Map");
  CHECK(test.workspace.settings.options_text == "--name-tag-list=name:de,name\r\n--x=1");
  CHECK(test.workspace.settings.fid == "1234");
  CHECK(lenient_whole_number(report.build.fid) >= 200);
  const std::string log = read_whole_file(report.log);
  CHECK(report.log == test.home / "logs" + platform::separator + "one.auto.log");
  CHECK(contains(log, "one.auto: done"));
  CHECK(contains(log, "Mkgmap version 4905"));
  CHECK(contains(summary_text({report}), "1 of 1 maps were made."));
  // A later run over the same files.
  AutoReport later = report;
  later.script = test.home / "scripts/two.auto";
  CHECK(replaced_by({report, later}, 0) == later.script);
  CHECK(replaced_by({report, later}, 1).empty());
  CHECK(contains(summary_text({report, later}), "(replaced by two.auto)\n"));
}

TEST_CASE("a script of the current settings makes the same argument files") {
  Automat test;
  const auto arguments = [&] {
    std::string all;
    for (const std::string& name : list_files(test.workspace.settings.argument_folder, {""}))
      all += name + "\n" + read_whole_file(platform::join(test.workspace.settings.argument_folder, name));
    return all + read_whole_file(test.home / "stand-in-arguments");
  };
  test.home.write("newscrpt", read_whole_file(FERROWEN_SOURCE_FOLDER "/assets/newscrpt"));
  const BuildReport by_hand = make_map(test.workspace, test.prompts, test.progress, {}, {});
  REQUIRE(by_hand.result == StageResult::done);
  const std::string before = arguments();
  const std::string path = test.home.write("scripts/same.auto", new_script(test.workspace));
  test.set("map-name=Other; gmapsupp=0; options-text=--other");
  const AutoReport replayed = test.run(path);
  CAPTURE(join_texts(replayed.problems, "\n"));
  REQUIRE(replayed.result == StageResult::done);
  CHECK(arguments() == before);
  CHECK(replayed.build.command == by_hand.command);
}

TEST_CASE("a blank image name means that of the map; what was kept back is in the report") {
  Automat test;
  test.set("image-named-after-map=0; image-name=Other");
  const AutoReport report = test.run(
      test.script("<mapname>Alps</mapname>\n<gmapsupp>yes</gmapsupp>\n<gmapsupp_name></gmapsupp_name>\n"));
  REQUIRE(report.result == StageResult::done);
  CHECK(report.build.image == test.home / "images" + platform::separator + "Alps.img");
  CHECK(test.heard(report, "Copied as '" + report.build.image + "'"));
  CHECK(test.workspace.settings.image_name == "Other");
}

TEST_CASE("nothing is started for a script with a mistake, and no later stage behind a bad one") {
  Automat test;
  const AutoReport wrong = test.run(test.script("<mapid>1234567</mapid>\n"));
  CHECK(wrong.problems == Texts{"line 3: <mapid>: '1234567' is no map ID: 8 digits are needed."});
  CHECK(wrong.stages.empty());
  CHECK_FALSE(file_exists(test.home / "out"));
  CHECK(test.run(test.home / "none.auto").problems.size() == 1);

  test.set_mode("style-error");
  const AutoReport failed = test.run(test.script("<gmapsupp>yes</gmapsupp>\n"));
  CHECK(failed.result == StageResult::failed);
  CHECK(test.heard(failed, "Error in style"));
  CHECK(failed.build.image.empty());
  CHECK(contains(read_whole_file(failed.log), "error: "));
  test.set_mode("");
  CHECK(test.run(test.script("")).result == StageResult::done);

  const AutoReport flat = test.run(test.script("<contours>yes</contours>\n"));
  CHECK(flat.result == StageResult::failed);
  CHECK(test.heard(flat, "Can't find HGT files"));
  CHECK_FALSE(test.workspace.tiles.empty());
  CHECK(std::none_of(test.workspace.tiles.begin(), test.workspace.tiles.end(),
                     [](const Tile& tile) { return tile.selected; }));

  test.progress.stop = true;
  CHECK(test.run(test.script("")).result != StageResult::done);
}

TEST_CASE("a tool that says too much costs the log nothing of the run itself") {
  Automat test;
  AutoLog log(test.workspace, test.home / "scripts/one.auto");
  log.tool_output(std::string(std::size_t{9} << 20, 'x'));
  log.tool_output("unheard\n");
  log.line("Copied\n");
  REQUIRE(log.finish("one.auto: done").ok());
  CHECK(read_whole_file(log.path()) == "\r\n[...]\r\nCopied\r\n\r\none.auto: done");
}

TEST_CASE("quiet prompts answer Yes, but not for ever") {
  QuietPrompts prompts;
  int yes = 0;
  for (int i = 0; i < 10; ++i)
    yes += prompts.ask("Try again?", Buttons::yes_no, Icon::question) == Answer::yes ? 1 : 0;
  CHECK(yes == 3);
  CHECK_FALSE(prompts.choose_folder("Where?", ""));
  CHECK(message_line(prompts.messages().back()) == "Where? [nothing chosen]");
  CHECK(message_line({"a\r\nb", Icon::critical, Answer::no}) == "error: a b [no]");
}

TEST_CASE("starting a script from the window") {
  Automat test;
  test.prompts.answers = {Answer::no, Answer::yes};
  CHECK_FALSE(script_is_wanted(test.workspace, test.prompts, "/s/a.auto"));
  CHECK(script_is_wanted(test.workspace, test.prompts, "/s/a.auto"));
  CHECK(test.workspace.settings.last_script == "/s/a.auto");
  test.workspace.script_running = true;
  CHECK_FALSE(script_is_wanted(test.workspace, test.prompts, "/s/a.auto"));
  CHECK(test.prompts.texts() == Texts{"/s/a.auto\r\n\r\nAuto Create?", "/s/a.auto\r\n\r\nAuto Create?",
                                      "Auto Script already running"});
}
