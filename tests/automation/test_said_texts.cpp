#include <doctest/doctest.h>

#include "app/interface_lists.hpp"
#include "app/language_file.hpp"
#include "app/osm_tag_keys.hpp"
#include "app/said_texts.hpp"
#include "app/settings.hpp"
#include "app/tool_states.hpp"
#include "app/workspace.hpp"
#include "automation/auto_script.hpp"
#include "base/text.hpp"
#include "elevation/download_help.hpp"
#include "mp/mp_types.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "styletools/rule_mistakes.hpp"
#include "styletools/style_doctor.hpp"
#include "styletools/typ_reader.hpp"

using namespace ferrowen;

namespace {

// Every text of the labels and the pages with "«" in front and "»" behind: the places are kept.
InterfaceTexts marked_texts() {
  InterfaceTexts texts;
  for (const Section section : {Section::settings, Section::labels}) {
    const std::vector<InterfaceItem>& items = interface_items(section);
    for (std::size_t position = 0; position < items.size(); ++position)
      texts.set(section, position, "«" + std::string(items[position].english) + "»");
  }
  return texts;
}

// What the core says stays English without its list entry; the check of a language file cannot know that.
void check_is_known(std::string_view english) {
  static const InterfaceTexts texts = marked_texts();
  for (const std::string& line : split_lines(replace_all(said(texts, english), "\r", "")))
    CHECK_MESSAGE((trim(line).empty() || trim(line).starts_with("«")), line);
}

std::string in_german(std::string_view english) {
  InterfaceTexts texts;
  const auto put = [&](Section section, std::string_view wanted, std::string_view text) {
    const std::vector<InterfaceItem>& items = interface_items(section);
    for (std::size_t position = 0; position < items.size(); ++position)
      if (items[position].english == wanted) texts.set(section, position, text);
  };
  put(Section::settings, "Tools", "Werkzeuge");
  put(Section::labels, "%1 --> %2", "%1 → %2");
  put(Section::labels, "Cannot find %1", "Nicht gefunden: %1");
  put(Section::labels, "Try again?", "Noch einmal?");
  put(Section::labels, "line %1: %2", "Zeile %1: %2");
  put(Section::labels, "%1 must be %2.", "%1 muss %2 sein.");
  put(Section::labels, "%1 or %2", "%1 oder %2");
  put(Section::labels,
      "mkgmap does not take %1 type %2: it will build no map from the file, and not say why.",
      "Typ %2 (%1) geht nicht.");
  put(Section::labels, "line", "Linie");
  put(Section::labels, "Lake", "See");
  return said(texts, english);
}

}  // namespace

TEST_CASE("what the core says is shown in the language of the windows, line by line") {
  for (const auto& [english, german] : std::vector<std::pair<std::string, std::string>>{
           {"", ""},
           {"/maps/a.pbf", "/maps/a.pbf"},
           {"Cannot find /x.jar --> Tools", "Nicht gefunden: /x.jar → Werkzeuge"},
           {"Cannot find /a\r\n\r\n  Try again? \r\n/b", "Nicht gefunden: /a\r\n\r\n  Noch einmal? \r\n/b"},
           {"line 3: \"x\" must be \"yes\" or \"no\".", "Zeile 3: \"x\" muss \"yes\" oder \"no\" sein."},
           {"mkgmap does not take line type 3f: it will build no map from the file, and not say why.",
            "Typ 3f (Linie) geht nicht."},
           {"Lake", "See"},
           {"Cannot find Lake", "Nicht gefunden: Lake"},
           {"Cannot find %1", "Nicht gefunden: %1"},
           {"Nicht gefunden: /x.jar", "Nicht gefunden: /x.jar"}})
    CHECK(in_german(english) == german);
}

TEST_CASE("every English line stays as it is without a language file") {
  const InterfaceTexts texts;
  for (const auto* items : {&said_items(), &finding_items(), &word_items()}) {
    for (const InterfaceItem& item : *items)
      CHECK(said(texts, item.english) == item.english);
  }
}

TEST_CASE("the words that the core hands to the windows are in the lists") {
  for (const ToolAdvice& advice : tool_advice()) {
    check_is_known(advice.linux_text);
    check_is_known(advice.windows_text);
    if (contains(advice.label, " ")) check_is_known(advice.label);
  }
  for (const AutoTag& tag : auto_tags())
    check_is_known(tag.meaning);
  for (const OsmTagKey& key : osm_tag_keys())
    check_is_known(key.meaning);
  for (const MpKind kind : {MpKind::point, MpKind::line, MpKind::polygon}) {
    for (const NamedType& type : named_types(kind))
      check_is_known(type.name);
  }
}

TEST_CASE("messages of the checks are in the lists") {
  for (const AutoProblem& problem : check_auto_script(
           parse_auto_script(
               "<ferrowen>\n<basecamp>maybe</basecamp>\n<memory>x</memory>\n<fid>0</fid>\n<odd>1</odd>\n"
               "<mapid>1</mapid>\n<mapid>2</mapid>\nwords\n<dem>yes\n"),
           {}))
    check_is_known(problem.text);
  for (const auto& [bytes, kind] :
       std::vector<std::pair<std::string, InputKind>>{{"", InputKind::pbf},
                                                      {"x", InputKind::unknown},
                                                      {"x", InputKind::o5m},
                                                      {"<html>", InputKind::osm},
                                                      {"<osm version='0.6'><node", InputKind::osm},
                                                      {"\x1F\x8B\x08", InputKind::osm_gz},
                                                      {"none", InputKind::mp}})
    check_is_known("'/a' " + check_input_bytes(bytes, kind).error);
  Settings settings;
  for (const auto& [field, text] : std::vector<std::pair<const char*, const char*>>{{"colour", "red"},
                                                                                    {"max-jobs", "0"},
                                                                                    {"output-folder", "here"},
                                                                                    {"max-nodes", "many"},
                                                                                    {"java", "/usr/bin/perl"},
                                                                                    {"routing", "maybe"}})
    check_is_known(split_lines(assign_checked(settings, *find_field(field), text).error).front());
  check_is_known(check_memory("lots").error);
  check_is_known(java_not_installed);
  check_is_known(download_message({}, Workspace()));
}

TEST_CASE("what the style doctor finds is in the lists") {
  const std::string rules =
      "highway=a [0x10 resolution 20]\nend\nelse\nhighway=b {fly} [0x10 resolution]\nhighway=c\n"
      "if (highway=d\n! highway=e [0x11]\na= & b=c [0x11]\nlength()>3 [0x12]\ninclude 'none';\n"
      "highway=f [road resolution 20]\nhighway=g [0x13 colour=red]\nhighway='h [0x14]\n"
      "highway=primary {delete ref} [0x04 road_class=0 road_speed=3 resolution 20]\n"
      "highway=primary & ref=1 [0x44 road_class=4 resolution 26]\nname=${x} [0x15 level 2]\nx=y [0x16";
  for (const RuleKind kind : rule_kinds) {
    LoadedStyle style;
    style.text = read_style_text(
        kind, {std::string(rule_file_name(kind)), "", rules},
        [](const StyleInclude&, const std::string&) { return std::optional<StyleFileBytes>(); });
    style.rules = get_styletypes(style.text);
    for (StyleProblem& mistake : rule_mistakes(style.rules))
      style.style_problems.push_back(std::move(mistake));
    for (const DoctorCheck check : doctor_checks) {
      const TypFile typ;
      for (const DoctorRow& row : run_check(check, style, &typ, 0).rows) {
        const bool is_word = row.finding.find_first_not_of("-0123456789 ") != std::string::npos;
        if (is_word && row.finding != "MKGMAP") check_is_known(row.finding);
        check_is_known(row.kind_text);
        if (row.quoted.empty() && row.finding == "Check") check_is_known(row.detail);
      }
    }
  }
}

// English, and what must be left of it in another language.
TEST_CASE("assembled findings come out translated in every shipped language") {
  const std::vector<std::pair<std::string, std::string>> lines{
      {"There is something behind the test: x y", ": x y"},
      {"'fly' is no action.", "fly"},
      {"A type must begin with its number, not with '0xZZ'.", "0xZZ"},
      {"(never for a=b & the 'if' of line 7)", "a=b & "},
      {"(change road_class:0)(change road_class:1)", "1)"},
      {"TYP file, byte 12: polygons, type 0x13: the drawing goes beyond the end of its definition", "0x13"},
      {"byte 4: the index of the lines goes beyond the end of the file", "(lines)"},
      {"/styles/x/lines:12: 'inc/a' includes itself.", "/styles/x/lines:12: "},
      {"track.gpx: line 3: latitude '9x' is no number; the point is left out", "9x"},
      {"N46W007.zip is a zip archive that cannot be unpacked: N46W007.hgt: the packed data ends early.",
       "N46W007.hgt: "},
      {"Cannot be written in a console script because it holds a line end: /a", ": /a"}};
  for (const char* file : {"deutsch", "francais"}) {
    Workspace workspace;
    const std::string path = std::string(FERROWEN_SOURCE_FOLDER) + "/assets/languages/" + file + ".m5l";
    REQUIRE(load_language(workspace, path).ok());
    for (const auto& [english, kept] : lines) {
      const std::string spoken = said(workspace.texts, english);
      CHECK_MESSAGE(contains(spoken, kept), spoken);
      for (const std::string_view word : {" the ", "The ", " is ", " goes ", "change ", "must ", "line "})
        CHECK_MESSAGE((!contains(english, word) || !contains(spoken, word)), spoken);
    }
  }
}
