#include <doctest/doctest.h>

#include <chrono>
#include <sstream>

#include "base/text.hpp"
#include "cli/table.hpp"
#include "cli/terminal.hpp"
#include "cli/terminal_progress.hpp"
#include "cli/terminal_prompts.hpp"
#include "support/temp_folder.hpp"

namespace ferrowen::test {

namespace {

struct Screen {
  explicit Screen(bool is_terminal, const std::string& typed = "")
      : input(typed), streams{input, output, error, false, is_terminal, [] { return 40; }}, terminal(streams) {}
  std::istringstream input;
  std::ostringstream output, error;
  Streams streams;
  Terminal terminal;
};

// What is left on the line of a terminal after all carriage returns.
std::string last_line(const std::string& written) {
  std::string line;
  for (const std::string& text : split(written.substr(written.rfind('\n') + 1), "\r"))
    line.replace(0, text.size(), text);
  return std::string(trim(line));
}

}  // namespace

TEST_CASE("answers come from the rules or from a person") {
  const PromptRules nobody, yes{true, false, true}, person{false, false, true};
  struct Case {
    PromptRules rules;
    const char* typed;
    Buttons buttons;
    Answer answer;
  };
  for (const Case& one : {Case{nobody, "y\n", Buttons::yes_no, Answer::no},
                          Case{yes, "n\n", Buttons::yes_no_cancel, Answer::yes},
                          Case{person, "Yes\r\n", Buttons::yes_no, Answer::yes},
                          Case{person, "\n", Buttons::yes_no_cancel, Answer::no},
                          Case{person, "c\n", Buttons::yes_no_cancel, Answer::cancel},
                          Case{person, "c\nmaybe\ny\n", Buttons::yes_no, Answer::yes},
                          Case{person, "", Buttons::yes_no, Answer::no}}) {
    Screen screen(false, one.typed);
    TerminalPrompts prompts(screen.terminal, screen.input, one.rules);
    CHECK(prompts.ask("Go on?", one.buttons) == one.answer);
  }
}

TEST_CASE("quiet drops notes alone, and the end of a shown file is printed once") {
  const TempFolder folder;
  std::string lines;
  for (int i = 0; i < 20; ++i)
    lines += "line\n";
  const std::string path = folder.write("dos.txt", "first\n" + with_crlf(lines + "\n\n"));
  Screen screen(false);
  TerminalPrompts prompts(screen.terminal, screen.input, {false, true, false});
  prompts.tell("note");
  prompts.tell("careful", Icon::warning);
  prompts.tell("broken\r\nhere", Icon::critical);
  prompts.show_file(path);
  prompts.show_file(path);
  CHECK(screen.error.str() == "careful\nbroken\nhere\n");
  CHECK(prompts.log().front().text == "note");
  prompts.print_shown_files();
  CHECK(prompts.log().back().file == path);
  CHECK(screen.error.str() == "careful\nbroken\nhere\n" + path + ":\n" + lines);
}

TEST_CASE("progress without a terminal, without and with the tools' own lines") {
  for (const bool with_output : {false, true}) {
    Screen screen(false);
    TerminalProgress progress(screen.terminal, {false, with_output});
    progress.status("Split Map");
    progress.fraction(0.5);
    progress.status("Split Map");
    progress.command("java\r\n--a");
    progress.output("first li");
    progress.output("ne\r\nsecond\rthird");
    progress.finish();
    CHECK(screen.error.str() ==
          (with_output ? "Split Map\njava\n--a\nfirst line\nsecond\nthird\n" : "Split Map\n"));
  }
}

TEST_CASE("progress on a terminal") {
  Screen screen(true);
  std::chrono::steady_clock::time_point now{std::chrono::hours(1)};
  TerminalProgress progress(screen.terminal, {}, [&] { return now; });
  progress.elapsed(83);
  CHECK(last_line(screen.error.str()) == "[-------------]   0%  01:23");
  progress.fraction(0.5);  // too soon to be drawn again
  CHECK(contains(last_line(screen.error.str()), "  0%"));
  now += std::chrono::milliseconds(150);
  progress.elapsed(84);
  CHECK(contains(last_line(screen.error.str()), " 50%  01:24"));
  progress.status("a status that is much longer than the terminal is wide");
  CHECK(last_line(screen.error.str()).size() == 39);
  screen.terminal.print_line("a text");
  CHECK(contains(screen.error.str(), "\ra text\n"));
  now += std::chrono::seconds(1);
  progress.fraction(2);
  progress.finish();
  CHECK(last_line(screen.error.str()).empty());
  CHECK(screen.output.str().empty());
}

TEST_CASE("texts, times, sizes and tables") {
  CHECK(terminal_text("\x1b[31mred\x07\t\x7f\r\nb\r\n") == "?[31mred?\t?\nb");
  CHECK(shortened("K\u00f6ln am Rhein", 7) == "K\u00f6ln...");
  CHECK(shortened("abcd", 2) == "..");
  CHECK(clock_text(3599.9) == "59:59");
  CHECK(clock_text(3661) == "1:01:01");
  CHECK(size_text(999'960) == "1.0 MB");
  Table table({{"Name"}, {"Size", Table::Align::right}});
  table.add({"K\u00f6ln", "5"});
  table.add({"a\r\nb\x1b"});
  CHECK(table.text() == "Name  Size\nK\u00f6ln     5\na b?\n");
}

}  // namespace ferrowen::test
