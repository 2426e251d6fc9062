// A person for window tests: answers from a queue, remembers every text in its order, and never waits. What
// it was asked without an answer at hand is answered No (or Cancel) and counts as unexpected: check that at
// the end.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/prompts.hpp"

namespace ferrowen::test {

class ScriptedPrompts : public Prompts {
 public:
  enum class Kind : std::uint8_t { tell, ask, choose_file, choose_folder, show_file };
  struct Said {
    Kind kind = Kind::tell;
    std::string text;  // the message, the title of a file question, or the path shown
    Icon icon = Icon::none;
    Buttons buttons = Buttons::yes_no;
  };

  std::vector<Said> said;
  std::vector<FileQuestion> file_questions;
  std::deque<Answer> answers;                            // the next one in front
  std::deque<std::optional<std::string>> chosen;         // for files and folders
  std::deque<std::vector<std::string>> chosen_together;  // for several files at once
  std::vector<std::string> unexpected;
  std::function<void(const Said&)> on_text;  // looks at the windows while a message is up

  void tell(std::string_view text, Icon icon = Icon::information) override {
    add({Kind::tell, std::string(text), icon, Buttons::yes_no});
  }

  Answer ask(std::string_view text, Buttons buttons = Buttons::yes_no, Icon icon = Icon::question) override {
    add({Kind::ask, std::string(text), icon, buttons});
    const Answer otherwise = buttons == Buttons::yes_no ? Answer::no : Answer::cancel;
    return next(answers, otherwise);
  }

  std::optional<std::string> choose_file(const FileQuestion& question) override {
    file_questions.push_back(question);
    add({Kind::choose_file, question.title, Icon::none, Buttons::yes_no});
    return next(chosen, std::optional<std::string>{});
  }

  std::vector<std::string> choose_files(const FileQuestion& question) override {
    if (chosen_together.empty()) return Prompts::choose_files(question);
    file_questions.push_back(question);
    add({Kind::choose_file, question.title, Icon::none, Buttons::yes_no});
    return next(chosen_together, std::vector<std::string>{});
  }

  std::optional<std::string> choose_folder(std::string_view title, const std::string& /*start*/) override {
    add({Kind::choose_folder, std::string(title), Icon::none, Buttons::yes_no});
    return next(chosen, std::optional<std::string>{});
  }

  void show_file(const std::string& path) override {
    add({Kind::show_file, path, Icon::none, Buttons::yes_no});
  }

  // The texts of one kind, or all; with forget() between two steps of a test.
  [[nodiscard]] std::vector<std::string> texts(std::optional<Kind> kind = std::nullopt) const {
    std::vector<std::string> found;
    for (const Said& one : said) {
      if (!kind || one.kind == *kind) found.push_back(one.text);
    }
    return found;
  }
  [[nodiscard]] bool has(std::string_view text) const {
    for (const Said& one : said) {
      if (one.text == text) return true;
    }
    return false;
  }
  void forget() {
    said.clear();
    file_questions.clear();
  }

 private:
  void add(Said one) {
    said.push_back(std::move(one));
    if (on_text) on_text(said.back());
  }

  template <typename Value>
  Value next(std::deque<Value>& queue, Value otherwise) {
    if (queue.empty()) {
      unexpected.push_back(said.back().text);
      return otherwise;
    }
    Value first = queue.front();
    queue.pop_front();
    return first;
  }
};

}  // namespace ferrowen::test
