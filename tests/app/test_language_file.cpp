#include <doctest/doctest.h>

#include <set>

#include "app/language_file.hpp"
#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "support/fake_prompts.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

namespace {

struct Languages {
  TempFolder folder{"sprachen ü"};
  Workspace workspace;

  Languages() { workspace.settings.languages_folder = folder.path(); }
  Status load(std::string_view text) { return load_language(workspace, folder.write("test.m5l", text)); }
  [[nodiscard]] std::string command(std::string_view key) const {
    return workspace.texts(Section::commands, key);
  }
};

std::string problems_of(std::string_view text) {
  std::string all;
  for (const LanguageProblem& problem : check_language(text))
    all += problem_text(problem) + "\n";
  return all;
}

// The template with one piece exchanged, and what the check says of it.
std::string problems_with(std::string_view piece, std::string_view other) {
  const std::string text = language_template();
  REQUIRE(contains(text, piece));
  return problems_of(replace_all(text, piece, other));
}

std::vector<std::string> all_english() {
  std::vector<std::string> texts;
  for (int number = 1; number <= message_count; ++number)
    texts.emplace_back(english_message(number));
  for (std::size_t section = 0; section < section_count; ++section) {
    for (const InterfaceItem& item : interface_items(static_cast<Section>(section)))
      texts.emplace_back(item.english);
  }
  return texts;
}

}  // namespace

TEST_CASE("the English lists can be carried by a language file") {
  for (const std::string& text : all_english())
    CHECK_MESSAGE(text.find_first_of("#\r\n") == std::string::npos, text);
  for (std::size_t section = 0; section < section_count; ++section) {
    std::set<std::string_view> keys;
    for (const InterfaceItem& item : interface_items(static_cast<Section>(section))) {
      CHECK_MESSAGE(keys.insert(item.key).second, item.key);
      CHECK_MESSAGE((!item.key.empty() && item.key.find_first_of("#:<> ") == std::string::npos), item.key);
      CHECK_MESSAGE(!item.english.empty(), item.key);
    }
  }
  const std::vector<InterfaceItem>& commands = interface_items(Section::commands);
  CHECK(commands.at(0).english == "Close");
  CHECK(commands.at(3).english == "Continue?");
  CHECK(commands.at(13).english == "Output Directory");
}

TEST_CASE("the settings section holds the pages and every field's label") {
  const InterfaceTexts texts;
  for (int page = 0; page <= static_cast<int>(Page::program); ++page)
    CHECK(texts(Section::settings, "set" + std::to_string(page)) == page_name(static_cast<Page>(page)));
  for (const Field& field : settings_fields())
    CHECK(texts(Section::settings, field.name) == field.label);
}

TEST_CASE("the template carries every English text, ends of lines included") {
  const std::string text = language_template();
  CHECK(problems_of(text).empty());
  CHECK(with_crlf(replace_all(text, "\r", "")) == text);
  const LanguageFile file = parse_language(text);
  CHECK(file.display_name == "English");
  for (int number = 1; number <= message_count; ++number) {
    const auto found = file.messages.find(number);
    CHECK((found == file.messages.end() ? "" : found->second.text) == english_message(number));
  }
  for (std::size_t section = 0; section < section_count; ++section) {
    const std::vector<InterfaceItem>& items = interface_items(static_cast<Section>(section));
    REQUIRE(file.texts.at(section).size() == items.size());
    for (const auto& [position, item] : file.texts.at(section))
      CHECK(item.text == items.at(position).english);
  }
}

TEST_CASE("texts of a file replace the English ones, what it leaves out stays English") {
  Languages languages;
  REQUIRE(
      languages
          .load("\xEF\xBB\xBF# 1:not read\r\nclose:not read\r\nmlanguage=Deutsch # ein Wort\r\n<language>\r\n"
                "<commands>\r\nanything: Schlie\u00dfen: ja  \r\n\r\nno "
                "text\r\nx:Weiter?#Taste\r\n</commands>\r\n"
                "<menus>\r\nmst:Einstellungen\r\n mf :Datei\r\nnew_one:x\r\n</menus>\r\n<settings>\r\n"
                "set9:skipped\r\n<messages>\r\n85: Lauf: halt. # note\r\n12abc:no\r\n-3:no\r\n0:no\r\n"
                "251:no\r\n250:last\r\n99999999999999999999:no\r\n86:nichts")
          .ok());
  CHECK(languages.command("close") == " Schlie\u00dfen: ja  ");
  CHECK(languages.command("apply") == "Apply");
  CHECK(languages.command("cancel") == "Cancel");
  CHECK(languages.command("continue") == "Weiter?");
  CHECK(languages.command("split_map") == "Split Map");
  CHECK(languages.workspace.texts(Section::menus, "mst") == "Einstellungen");
  CHECK(languages.workspace.texts(Section::menus, "mf") == "Datei");
  CHECK(languages.workspace.texts(Section::settings, "set9") == "Settings");
  CHECK(languages.workspace.message(85) == " Lauf: halt. ");
  CHECK(languages.workspace.message(86) == "nichts");
  CHECK(languages.workspace.message(250) == "last");
  CHECK(languages.workspace.message(12) == english_message(12));
  // The next language begins with English again.
  REQUIRE(languages.load("<language>\n<commands>\n:Fermer</commands>\n").ok());
  CHECK(languages.command("close") == "Fermer");
  CHECK(languages.command("continue") == "Continue?");
  CHECK(languages.workspace.message(85) == "Run halted. Continue?");
}

TEST_CASE("what is no language file changes nothing and says why") {
  Languages languages;
  REQUIRE(languages.load("<language>\n<messages>\n3:kept\n").ok());
  struct Case {
    std::string text, said;
  };
  for (const auto& [text, said] :
       {Case{"", "is empty"}, Case{"mlanguage=X\n<messages>\n3:new\n", "<language>"},
        Case{"\x7f\x45LF\x01\xfe\xff", "line 1 is not UTF-8"},
        Case{"<language>\n<messages>\n3:K\xf6ln\n", "line 3"},
        Case{std::string("<language>\n<messages>\n3:a\0b\n", 27), "line 3"},
        Case{"<language>\n" + std::string(64ULL << 20U, 'x'), "too large"}}) {
    CHECK(contains(languages.load(text).error, said));
    CHECK(languages.workspace.message(3) == "kept");
  }
  CHECK(contains(load_language(languages.workspace, languages.folder / "none").error, "no such file"));
  std::string many = "<language>\n<messages>\n";
  for (int number = 1; number <= 10000; ++number)
    many += std::to_string(number) + ":x\n";
  CHECK(languages.load(many).ok());
  CHECK(languages.workspace.message(250) == "x");
  CHECK(check_language(many).size() < 1100);
}

TEST_CASE("the languages of the folder, and the one that is chosen") {
  Languages languages;
  languages.folder.write("b.m5l", "mlanguage=Deutsch\n<language>\n<messages>\n3:Keine Daten\n");
  languages.folder.write("a.m5l", "mlanguage=svenska\n<language>\n");
  languages.folder.write("Nameless.m5l", "<language>\nmlanguage= # none");
  languages.folder.write("none.m5l", "mlanguage=None\n");
  languages.folder.write("deutsch.txt", "mlanguage=Text\n<language>\n");
  std::string found;
  for (const Language& language : loadlanguages(languages.workspace))
    found += language.display_name + "=" + language.file + " ";
  CHECK(found == "Deutsch=b.m5l Nameless=Nameless.m5l svenska=a.m5l ");

  Workspace& workspace = languages.workspace;
  CHECK(choose_language(workspace, " b.m5l").ok());
  CHECK_FALSE(choose_language(workspace, "none.m5l").ok());
  CHECK(workspace.settings.language == "b.m5l");
  CHECK(workspace.message(3) == "Keine Daten");
  CHECK(choose_language(workspace, "").ok());
  CHECK(workspace.settings.language.empty());
  CHECK(workspace.message(3) == "No data");
}

TEST_CASE("start-up loads the chosen language, or tells and uses English") {
  const TempFolder home;
  home.write("languages/de.m5l", "<language>\n<messages>\n3:Keine Daten\n");
  const auto start = [&](const std::string& language, FakePrompts& prompts) {
    Workspace workspace;
    workspace.folder = ProgramFolder(home.path());
    workspace.settings = default_settings(home.path());
    workspace.settings.language = language;
    REQUIRE(savedata(workspace).ok());
    workspace.messages.set(3, "of a language before");
    REQUIRE(start_up(workspace, prompts).ok());
    CHECK(workspace.settings.language == language);
    return workspace.message(3);
  };
  FakePrompts prompts;
  CHECK(start("de.m5l", prompts) == "Keine Daten");
  CHECK(prompts.tells().size() == 1);
  CHECK(start("gone.m5l", prompts) == "No data");
  CHECK(contains(prompts.tells().at(1), "gone.m5l: no such file\r\n\r\nEnglish is used."));
}

TEST_CASE("the check names the line and what is wrong with it") {
  struct Case {
    const char *piece, *other, *said;
  };
  for (const Case& one :
       {Case{"<language>", "<sprache>", "this is no language file"},
        Case{"mlanguage=", "language=", "the language's name is missing"},
        Case{"</menus>", "", "<menus> is not read: it has no </menus>."},
        Case{"<settings>", "<set>", "<settings> is missing"},
        Case{"<labels>", "<menus>\r\n</menus>\r\n<labels>", "A second section <menus>"},
        Case{"<commands>\r\n", "<commands>", "behind a section's tag is not read"},
        Case{"apply:Apply\r\n", "", "'cancel' stands in the place of 'apply'"},
        Case{"apply:Apply\r\n", "apply\r\n", "in the place of 'apply', but has no ':'"},
        Case{"</commands>", "more:x\r\n</commands>", "superfluous: there are"},
        Case{"mf:File\r\n", "", "<menus>: 'mf' is missing: \"File\""},
        Case{"mf:File", "mf:File\r\nmf:", "'mf' stands here for the second time"},
        Case{"mf:File", "mx:File", "'mx' is superfluous: <menus> has no such key."},
        Case{"12:Cannot find map. Checking", "251:x", "Number 251 is out of range"},
        Case{"\r\n12:", "\r\n0:", "Number 0 is out of range"},
        Case{"\r\n12:", "\r\n19:", "Message 19 is superfluous"},
        Case{"\r\n12:", "\r\n12 ", "does not begin with a message number"},
        Case{"\r\n12:", "\r\n11:", "Message 11 stands here for the second time"},
        Case{"35:Cannot find file #", "35:Cannot find file", "English text ends with a blank"},
        Case{"16: exists", "16:exists", "English text begins with a blank"},
        Case{"12:Cannot find map. Checking for possible maps?", "12:x ", "ends with a blank not"},
        Case{"remove this file:'", "remove this file:", "ends with '"},
        Case{"option_used:line %1", "option_used:line 1", "The places (%1"},
        Case{"3:No data", "3:", "The text is empty. English: \"No data\""},
        Case{"3:No data", "3:\xff", "not UTF-8 text"}})
    CHECK_MESSAGE(contains(problems_with(one.piece, one.other), one.said), one.said);
  CHECK(problems_of("<language>\n<messages>\n\n500:x\n").find("line 4: Number 500") != std::string::npos);
}

// Names and words that are the same in another language: one English text per line.
std::set<std::string> same_words() {
  const std::string path = std::string(FERROWEN_SOURCE_FOLDER) + "/tests/fixtures/languages/same_words.txt";
  const std::vector<std::string> lines = split_lines(replace_all(read_whole_file(path), "\r", ""));
  return {lines.begin(), lines.end()};
}

std::string same_as_english(const LanguageFile& file) {
  static const std::set<std::string> allowed = same_words();
  std::string all;
  const auto compare = [&](std::string_view english, const LanguageText& translated) {
    const bool is_translated = translated.text != english || allowed.contains(translated.text);
    // An entry with dots opens a window in every language.
    if (!is_translated || english.ends_with("...") != translated.text.ends_with("..."))
      all += std::to_string(translated.line) + ": " + translated.text + "\n";
  };
  for (const auto& [number, translated] : file.messages)
    compare(english_message(number), translated);
  for (std::size_t section = 0; section < section_count; ++section) {
    for (const auto& [position, translated] : file.texts.at(section))
      compare(interface_items(static_cast<Section>(section)).at(position).english, translated);
  }
  return all;
}

TEST_CASE("the shipped language files are complete") {
  const auto incomplete = [](const std::string& folder) {
    std::string all;
    for (const std::string& file : list_files(folder, {".m5l"}))
      all += problems_of(read_whole_file(platform::join(folder, file)));
    return all;
  };
  const std::string source = FERROWEN_SOURCE_FOLDER;
  const std::string shipped = source + "/assets/languages";
  CHECK(incomplete(shipped) == "");
  CHECK(contains(incomplete(source + "/tests/fixtures/languages"), "Message 12 is missing"));
  std::string names;
  for (const std::string& file : list_files(shipped, {".m5l"})) {
    const LanguageFile language = parse_language(read_whole_file(platform::join(shipped, file)));
    names += language.display_name + " ";
    CHECK_MESSAGE(same_as_english(language) == "", file);
  }
  CHECK(names == "Deutsch Français ");
  CHECK_FALSE(same_as_english(parse_language(language_template())).empty());
}

TEST_CASE(
    "shipped language files come into the program folder, and newer ones unless somebody changed them") {
  const TempFolder folder;
  const ProgramFolder program(folder / "home");
  const std::string mine = program / "languages/x.m5l";
  const auto ship = [&](std::string_view text) {
    folder.write("share/languages/x.m5l", text);
    REQUIRE(program.copy_assets(folder / "share").ok());
    return read_whole_file(mine);
  };
  REQUIRE(program.create_layout().ok());
  CHECK(ship("one") == "one");
  CHECK(ship("two") == "two");
  folder.write("home/languages/x.m5l", "my own words");
  CHECK(ship("three") == "my own words");
  CHECK(ship("four") == "my own words");
  REQUIRE(remove_file(mine).ok());
  CHECK(ship("four") == "four");
  CHECK(ship("five") == "five");
}
