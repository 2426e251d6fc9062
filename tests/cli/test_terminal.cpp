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
  std::size_t column = 0;
  for (const char c : written) {
    if (c == '\n') line.clear();
    if (c == '\n' || c == '\r') {
      column = 0;
      continue;
    }
    if (column >= line.size()) line.resize(column + 1, ' ');
    line[column++] = c;
  }
  return std::string(trim(line));
}

}  // namespace

TEST_CASE("texts on a terminal") {
  CHECK(terminal_text("a\r\nb\r\n") == "a\nb");
  CHECK(terminal_text("\x1b[31mred\x07\t\x7f") == "?[31mred?\t?");
  CHECK(text_width("K\u00f6ln") == 4);
  CHECK(shortened("K\u00f6ln am Rhein", 7) == "K\u00f6ln...");
  CHECK(shortened("abc", 3) == "abc");
  CHECK(shortened("abcd", 2) == "..");
}

TEST_CASE("prompts") {
  const auto answer = [](const PromptRules& rules, const std::string& typed, Buttons buttons) {
    Screen screen(false, typed);
    TerminalPrompts prompts(screen.terminal, screen.input, rules);
    return prompts.ask("Go on?", buttons);
  };
  SUBCASE("answers") {
    const PromptRules person{false, false, true};
    CHECK(answer({}, "y\n", Buttons::yes_no) == Answer::no);
    CHECK(answer({true, false, false}, "", Buttons::yes_no_cancel) == Answer::yes);
    CHECK(answer({true, false, true}, "n\n", Buttons::yes_no) == Answer::yes);
    CHECK(answer(person, "Yes\r\n", Buttons::yes_no) == Answer::yes);
    CHECK(answer(person, "\n", Buttons::yes_no_cancel) == Answer::no);
    CHECK(answer(person, "c\n", Buttons::yes_no_cancel) == Answer::cancel);
    CHECK(answer(person, "c\nmaybe\ny\n", Buttons::yes_no) == Answer::yes);
    CHECK(answer(person, "", Buttons::yes_no) == Answer::no);
  }
  SUBCASE("quiet drops notes alone, and everything is logged") {
    Screen screen(false);
    TerminalPrompts prompts(screen.terminal, screen.input, {false, true, false});
    prompts.tell("note");
    prompts.tell("careful", Icon::warning);
    prompts.tell("broken\r\nhere", Icon::critical);
    CHECK(screen.error.str() == "careful\nbroken\nhere\n");
    CHECK(prompts.log().size() == 3);
  }
  SUBCASE("a shown file appears once, with its last lines, when it is printed") {
    const TempFolder folder;
    std::string text = "first\n";
    for (int i = 1; i <= 20; ++i)
      text += "line " + std::to_string(i) + "\r\n";
    const std::string path = folder.write("dos.txt", text + "\r\n\r\n");
    Screen screen(false);
    TerminalPrompts prompts(screen.terminal, screen.input, {});
    prompts.show_file(path);
    prompts.show_file(path);
    CHECK(screen.error.str().empty());
    prompts.print_shown_files();
    CHECK(screen.error.str().starts_with(path + ":\nline 1\n"));
    CHECK(screen.error.str().ends_with("\nline 20\n"));
    CHECK(prompts.log().back().file == path);
  }
}

TEST_CASE("progress without a terminal") {
  Screen screen(false);
  TerminalProgress progress(screen.terminal, {});
  progress.status("Split Map");
  progress.fraction(0.5);
  progress.elapsed(12);
  progress.status("Split Map");
  progress.output("tool says\n");
  progress.status("Create Map");
  progress.finish();
  CHECK(screen.error.str() == "Split Map\nCreate Map\n");
}

TEST_CASE("progress with the tools' own lines") {
  Screen screen(false);
  TerminalProgress progress(screen.terminal, {false, true});
  progress.command("java\r\n--a\r\n--b");
  progress.output("first li");
  progress.output("ne\r\nsecond\rthird");
  CHECK(screen.error.str() == "java\n--a\n--b\nfirst line\nsecond\n");
  progress.finish();
  CHECK(screen.error.str().ends_with("second\nthird\n"));
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

TEST_CASE("times, sizes and tables") {
  CHECK(clock_text(-1) == "00:00");
  CHECK(clock_text(3599.9) == "59:59");
  CHECK(clock_text(3661) == "1:01:01");
  CHECK(size_text(1) == "1 byte");
  CHECK(size_text(999) == "999 bytes");
  CHECK(size_text(999'960) == "1.0 MB");
  CHECK(size_text(1'440'000) == "1.4 MB");
  Table table({{"Name"}, {"Size", Table::Align::right}});
  table.add({"K\u00f6ln", "5"});
  table.add({"a\r\nb\x1b"});
  CHECK(table.text() == "Name  Size\nK\u00f6ln     5\na b?\n");
}

}  // namespace ferrowen::test
