#include "pipeline/options_lint.hpp"

#include <doctest/doctest.h>

#include "base/text.hpp"
#include "pipeline/options_edit.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

namespace {

const std::vector<CatalogueOption> known = {
    {"--route", "", "Routing.", "Routing", OptionKind::flag},
    {"--style", "name", "The style.", "Style", OptionKind::value},
    {"--max-jobs", "integer", "Jobs.", "Misc", OptionKind::optional_value},
    {"--input-file", "filename", "Input.", "File", OptionKind::value},
    {"--dem-dists", "number", "Distances.", "Hill Shading (DEM)", OptionKind::value},
    {"--overview-dem-dist", "integer", "Distance.", "Hill Shading (DEM)", OptionKind::value},
};

std::string part_of(const std::string& text, TextRange range) {
  return split_lines(text).at(range.line).substr(range.begin, range.length);
}

// "1 unknown --rout; 2 repeated --style (0)", with the marked piece of the text.
std::string findings_of(const std::string& text, OptionTool tool = OptionTool::mkgmap) {
  constexpr std::array<const char*, 4> names = {"unknown", "repeated", "placeholder", "no dashes"};
  Texts found;
  for (const OptionFinding& finding : lint_options(text, tool, known).findings) {
    found.push_back(std::to_string(finding.range.line) + " " +
                    names.at(static_cast<std::size_t>(finding.fault)) + " " + part_of(text, finding.range));
    if (finding.fault == OptionFault::repeated)
      found.back() += " (" + std::to_string(finding.other_line) + ")";
  }
  return join_texts(found, "; ");
}

// Each part as a letter and the piece of text: "n:--style v:=a".
std::string parts_of(const std::string& text, OptionTool tool = OptionTool::mkgmap) {
  Texts parts;
  for (const OptionSpan& span : lint_options(text, tool, known).spans)
    parts.push_back(std::string(1, "cmnvwi"[static_cast<std::size_t>(span.part)]) + ":" +
                    part_of(text, span.range));
  return join_texts(parts, " ");
}

// The text after an insertion, the selected value between "{" and "}".
std::string with_inserted(const std::string& text, std::size_t cursor, std::size_t option,
                          bool in_dem_block) {
  const OptionInsertion insertion = option_insertion(text, cursor, known.at(option), in_dem_block);
  Texts lines = split_lines(text);
  const auto at = lines.begin() + static_cast<std::ptrdiff_t>(insertion.line);
  lines.insert(insertion.instead ? lines.erase(at) : at, insertion.lines.begin(), insertion.lines.end());
  const TextRange& selected = insertion.selected;
  lines.at(selected.line).insert(selected.begin + selected.length, "}").insert(selected.begin, "{");
  return join_texts(lines, "|");
}

}  // namespace

TEST_CASE("the parts of an options text are told for both tools") {
  CHECK(parts_of("--style=\"a b\" --route # why\n #--route\n\n-c more.args") ==
        "n:--style v:=\"a b\" n:--route c:# why c:#--route n:-c v:more.args");
  CHECK(parts_of(" <DEM>\n--dem-dists=1 2\ndem-dists:3\n#x\n</dem>\nü --route") ==
        "m:<DEM> n:--dem-dists v:=1 2 n:dem-dists v::3 c:#x m:</dem> w:ü n:--route");
  CHECK(parts_of("--route\n--style=a ## end\n--route") == "n:--route i:--style=a ## end i:--route");
  // the splitter has neither blocks nor an end mark
  CHECK(parts_of("## note\n<dem>\n--output=o5m #x", OptionTool::splitter) ==
        "c:## note w:<dem> n:--output v:=o5m w:#x");
}

TEST_CASE("what the tool would refuse or ignore is found") {
  const std::pair<const char*, const char*> rows[] = {
      {"--route\n--style=a\n#--route\n# --rout", ""},
      {"--route\n--rout=\"a b\"\n--Route", "1 unknown --rout; 2 unknown --Route"},
      {"--no-route\n--x-test=1\n--no-rout", "2 unknown --no-rout"},
      {"--style=a\n--route\n --no-style --style=b\n#--style=c",
       "0 repeated --style (2); 2 repeated --no-style (0); 2 repeated --style (2)"},
      {"--input-file=a\n--input-file=b", ""},
      {"--dem-dists=1\n<dem>\ndem-dists=2\ndem-dist=3\n</dem>",
       "0 repeated --dem-dists (2); 2 repeated dem-dists (0); 3 unknown dem-dist"},
      {"--style=name\n--max-jobs=2\n##\n--rout --rout", "0 placeholder name"},
      {"levels=0:24\n-c a.args\n\"a file\" x",
       "0 no dashes levels=0:24; 2 no dashes \"a file\"; 2 no dashes x"},
  };
  for (const auto& [text, findings] : rows)
    CHECK(findings_of(text) == findings);
  CHECK(findings_of("--no-route --x-y", OptionTool::splitter) == "0 unknown --no-route; 0 unknown --x-y");
  CHECK(lint_options("--rout\n--style=name", OptionTool::mkgmap, {}).findings.empty());
}

TEST_CASE("an option is found where it acts, else where it is switched off") {
  const std::string text = "#--route\n# about --style\n## no\n";
  const OptionsLint lint =
      lint_options("#--style=a\n--route\n--style=b\n#--max-jobs\n#--route", OptionTool::mkgmap, known);
  REQUIRE(lint.find("--style") != nullptr);
  CHECK(lint.find("--style")->range.line == 2);
  CHECK(lint.find("--route")->range.line == 1);
  REQUIRE(lint.find("--max-jobs") != nullptr);
  CHECK_FALSE(lint.find("--max-jobs")->active);
  CHECK(lint.find("--input-file") == nullptr);
  CHECK(lint_options(text, OptionTool::mkgmap, known).find("--style") == nullptr);
}

TEST_CASE("an option is put where it acts") {
  CHECK(with_inserted("", 0, 0, false) == "--route{}");
  CHECK(with_inserted("--a\n\n--b", 0, 1, false) == "--a|--style={name}||--b");
  CHECK(with_inserted("--a\n\n--b", 1, 2, false) == "--a|--max-jobs={integer}|--b");
  CHECK(with_inserted("--a\n", 9, 0, false) == "--a|--route{}");
  CHECK(with_inserted("<dem>\nx\n</dem>\n", 1, 0, false) == "<dem>|x|</dem>|--route{}");
  CHECK(with_inserted("--a\n<dem>\nx", 2, 0, false) == "--a|--route{}|<dem>|x");
  CHECK(with_inserted("--a\n## end\n--b", 2, 0, false) == "--a|--route{}|## end|--b");
  CHECK(with_inserted("--a\n<dem>\nx\n\n</dem>", 0, 4, true) == "--a|<dem>|x|--dem-dists={number}||</dem>");
  CHECK(with_inserted("--a\n##\n<dem>\n</dem>", 3, 4, true) ==
        "--a|<dem>|--dem-dists={number}|</dem>|##|<dem>|</dem>");
  CHECK(with_inserted("<dem>\n</dem>", 1, 5, true) == "<dem>|--overview-dem-dist={integer}|</dem>");
  CHECK((is_dem_option(known[4]) && is_dem_option(known[5]) && !is_dem_option(known[0])));
}

TEST_CASE("lines are switched off and on, and no end mark comes of it") {
  CHECK(toggled_comments({"--a", "# note", "", "#--b"}) == Texts{"#--a", "# note", "", "#--b"});
  CHECK(toggled_comments({"#--a", "# note", "", "  #--b"}) == Texts{"--a", "# note", "", "  --b"});
  CHECK(toggled_comments({"# note"}) == Texts{" note"});
  CHECK(toggled_comments({" note"}) == Texts{"# note"});
}
