// A person for tests: answers as told beforehand and remembers every text in the order in which it came.
#pragma once

#include <doctest/doctest.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/prompts.hpp"

namespace ferrowen::test {

class FakePrompts : public Prompts {
 public:
  struct Said {
    enum class Kind : std::uint8_t { tell, ask, choose_file, choose_folder, show_file };
    Kind kind = Kind::tell;
    std::string text;  // the message, the title of the file question, or the path shown
    Icon icon = Icon::none;
    Buttons buttons = Buttons::yes_no;
  };

  std::vector<Said> said;                    // everything, in order
  std::vector<FileQuestion> file_questions;  // the whole questions behind choose_file
  std::deque<Answer> answers;                // for ask(), the next one in front
  std::deque<std::optional<std::string>>
      chosen;                            // for choose_file() and choose_folder(), the next one in front
  std::optional<Answer> default_answer;  // for questions beyond `answers`; without it they fail the test

  void tell(std::string_view text, Icon icon = Icon::information) override {
    said.push_back({Said::Kind::tell, std::string(text), icon, Buttons::yes_no});
  }

  Answer ask(std::string_view text, Buttons buttons = Buttons::yes_no, Icon icon = Icon::question) override {
    said.push_back({Said::Kind::ask, std::string(text), icon, buttons});
    if (!answers.empty()) return take(answers);
    if (!default_answer) FAIL_CHECK("unexpected question: " << said.back().text);
    return default_answer.value_or(buttons == Buttons::yes_no ? Answer::no : Answer::cancel);
  }

  std::optional<std::string> choose_file(const FileQuestion& question) override {
    said.push_back({Said::Kind::choose_file, question.title, Icon::none, Buttons::yes_no});
    file_questions.push_back(question);
    return next_choice();
  }

  std::optional<std::string> choose_folder(std::string_view title, const std::string& /*start*/) override {
    said.push_back({Said::Kind::choose_folder, std::string(title), Icon::none, Buttons::yes_no});
    return next_choice();
  }

  void show_file(const std::string& path) override {
    said.push_back({Said::Kind::show_file, path, Icon::none, Buttons::yes_no});
  }

  // The texts alone: everything, or of one kind.
  [[nodiscard]] std::vector<std::string> texts(std::optional<Said::Kind> kind = std::nullopt) const {
    std::vector<std::string> found;
    for (const Said& one : said) {
      if (!kind || one.kind == *kind) found.push_back(one.text);
    }
    return found;
  }
  [[nodiscard]] std::vector<std::string> tells() const { return texts(Said::Kind::tell); }
  [[nodiscard]] std::vector<std::string> asks() const { return texts(Said::Kind::ask); }
  [[nodiscard]] std::vector<std::string> shown_files() const { return texts(Said::Kind::show_file); }

 private:
  template <typename Value>
  static Value take(std::deque<Value>& values) {
    Value first = values.front();
    values.pop_front();
    return first;
  }

  std::optional<std::string> next_choice() {
    if (!chosen.empty()) return take(chosen);
    FAIL_CHECK("unexpected file question: " << said.back().text);
    return std::nullopt;
  }
};

}  // namespace ferrowen::test
