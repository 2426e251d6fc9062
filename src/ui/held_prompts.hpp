// Before there is a window, messages wait here; it shows them when it can be seen. Questions are answered No.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "base/prompts.hpp"

namespace ferrowen::ui {

class HeldPrompts : public Prompts {
 public:
  [[nodiscard]] const std::vector<std::string>& texts() const { return m_texts; }

  [[nodiscard]] Icon heaviest() const { return m_heaviest; }

  void tell(std::string_view text, Icon icon) override {
    m_texts.emplace_back(text);
    m_heaviest = std::max(m_heaviest, icon);
  }
  Answer ask(std::string_view text, Buttons /*buttons*/, Icon /*icon*/) override {
    m_texts.emplace_back(text);
    return Answer::no;
  }
  std::optional<std::string> choose_file(const FileQuestion& /*question*/) override { return std::nullopt; }
  std::optional<std::string> choose_folder(std::string_view /*title*/,
                                           const std::string& /*start*/) override {
    return std::nullopt;
  }
  void show_file(const std::string& /*path*/) override {}

 private:
  std::vector<std::string> m_texts;
  Icon m_heaviest = Icon::none;
};

}  // namespace ferrowen::ui
