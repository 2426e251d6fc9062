#include "app/option_sets.hpp"

#include <doctest/doctest.h>

#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

struct Sets {
  Sets() { workspace.folder = ProgramFolder(home.path()); }
  [[nodiscard]] std::string file() const { return read_whole_file(home / "mkopts"); }
  bool save(const std::string& name) {
    return save_option_set(workspace, prompts, OptionKeeper::mkgmap, name);
  }
  bool recall(const std::string& name) {
    return recall_option_set(workspace, prompts, OptionKeeper::mkgmap, name);
  }
  bool remove(const std::string& name) {
    return delete_option_set(workspace, prompts, OptionKeeper::mkgmap, name);
  }
  test::TempFolder home{"opt sets"};
  test::FakePrompts prompts;
  Workspace workspace;
};

}  // namespace

TEST_CASE("a plain list of options is the set without a name; named ones follow behind the end mark") {
  Sets test;
  const std::string shipped = "# first\n--route\n";
  test.home.write("mkopts", shipped);
  take_option_sets(test.workspace);
  CHECK(test.workspace.settings.options_text == "# first\r\n--route\r\n");
  test.workspace.settings.options_text = "--index\r\n<dem>\r\n--dem-dists=1\r\n</dem>\r\n";
  REQUIRE(test.save(" Köln "));
  CHECK(test.prompts.tells() == Texts{"Options saved."});
  CHECK(test.workspace.settings.option_set == "Köln");
  CHECK(test.file() ==
        "# first\r\n--route\r\n##\r\n[Köln]\r\n--index\r\n<dem>\r\n--dem-dists=1\r\n</dem>\r\n");
  // A fresh record takes the first set alone.
  test.workspace.settings.options_text.clear();
  take_option_sets(test.workspace);
  CHECK(test.workspace.settings.options_text == "# first\r\n--route\r\n");
}

TEST_CASE("broken brackets, doubled and hostile names are told, and no line is lost") {
  const MessageTable messages;
  const OptionSets read = parse_option_sets(
      "--a\n[open\nclosed]\n--b=[x]\n#c]\n[one] --d\n[ONE]\n--e\n[]\n[x][y]\n--f", messages);
  CHECK(read.problems == Texts{"line 2: Error:Found [ but not ] . [open",
                               "line 3: Error: [ or ] missing. closed]",
                               "line 7: [ONE] exists. --> [ONE (2)]", "line 9: Error: [ or ] missing. []"});
  const std::vector<std::pair<std::string, std::string>> sets = {
      {"", "--a\r\n[open\r\nclosed]\r\n--b=[x]\r\n#c]\r\n"},
      {"one", "--d\r\n"},
      {"ONE (2)", "--e\r\n"},
      {"?", ""},
      {"x", ""},
      {"y", "--f\r\n"}};
  REQUIRE(read.sets.size() == sets.size());
  for (std::size_t i = 0; i < sets.size(); ++i) {
    CHECK(read.sets[i].name == sets[i].first);
    CHECK(read.sets[i].text == sets[i].second);
  }
  for (const auto& [name, text, problem] : std::vector<std::tuple<std::string, std::string, std::string>>{
           {"a]b", "", "Error: [ or ] missing. a]b"},
           {"a", "--x\r\n[b]\r\n", "Error: [ or ] missing. [b]"},
           {"a", "[b\r\n", "Error:Found [ but not ] . [b"},
           {"a\nb", "", "'a\nb' cannot be the name of an option set."},
           {"ok", "--a=[b]\r\n", ""}})
    CHECK(check_option_set(name, text, messages).error == problem);
}

TEST_CASE("saving, recalling, deleting and clearing ask before something is lost") {
  Sets test;
  std::string& options = test.workspace.settings.options_text;
  options = "--a\r\n";
  REQUIRE(test.save("one"));
  REQUIRE(test.save("ONE"));  // the same text again
  options = "--b\r\n";
  test.prompts.answers = {Answer::no, Answer::no,  Answer::yes, Answer::no,
                          Answer::no, Answer::yes, Answer::yes};
  CHECK_FALSE(test.save("one"));
  CHECK_FALSE(test.recall("one"));
  CHECK(options == "--b\r\n");
  CHECK(test.recall("One"));
  CHECK(options == "--a\r\n");
  CHECK_FALSE(clear_options(test.workspace, test.prompts, OptionKeeper::mkgmap));
  CHECK_FALSE(test.remove("one"));
  CHECK(contains(test.file(), "[one]"));
  CHECK(test.remove("one"));
  CHECK(test.file().empty());
  CHECK(test.workspace.settings.option_set.empty());
  CHECK(clear_options(test.workspace, test.prompts, OptionKeeper::mkgmap));
  CHECK(options.empty());
  CHECK(test.prompts.asks() ==
        Texts{"[one] exists.\r\nContinue anyway?", "This will clear your options. Continue?",
              "This will clear your options. Continue?", "This will clear your options. Continue?",
              "Remove [one]?", "Remove [one]?", "This will clear your options. Continue?"});
  CHECK_FALSE(test.recall("none"));
  CHECK(test.prompts.tells().back() == "Cannot find [none]");
}

TEST_CASE("options are backed up with their sets") {
  Sets test;
  test.home.write("mkopts", "--a\n");
  test.workspace.settings.splitter_options = "--mixed";
  REQUIRE(back_up_option_sets(test.workspace, test.prompts, 1700000000));
  const std::string told = test.prompts.tells().back();
  REQUIRE(told.starts_with("Options backed up in "));
  const std::string folder = told.substr(std::string("Options backed up in ").size());
  CHECK(read_whole_file(platform::join(folder, "mkopts")) == "--a\n");
  CHECK(read_whole_file(platform::join(folder, "splopts-in-use")) == "--mixed");
}
