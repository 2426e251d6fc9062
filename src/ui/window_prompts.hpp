// Message boxes and file dialogs: how the stages talk to a person at a window.
#pragma once

#include <QAbstractButton>
#include <QMessageBox>
#include <QString>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/interface_texts.hpp"
#include "base/prompts.hpp"

namespace ferrowen::ui {

class WindowPrompts : public Prompts {
 public:
  WindowPrompts(QWidget* parent, const InterfaceTexts& texts) : m_parent(parent), m_texts(texts) {}

  // Text behind "Details" of a warning: the command, what the tool said, the log. Empty: no such button.
  std::function<QString()> details;
  // Puts a text file before the person's eyes.
  std::function<void(const QString& path)> file_viewer;

  void tell(std::string_view text, Icon icon = Icon::information) override;
  Answer ask(std::string_view text, Buttons buttons = Buttons::yes_no, Icon icon = Icon::question) override;
  std::optional<std::string> choose_file(const FileQuestion& question) override;
  std::vector<std::string> choose_files(const FileQuestion& question) override;
  std::optional<std::string> choose_folder(std::string_view title, const std::string& start) override;
  void show_file(const std::string& path) override;

 private:
  [[nodiscard]] QWidget* parent() const;
  void name_details(QMessageBox& box, QAbstractButton& button) const;
  QWidget* m_parent;
  const InterfaceTexts& m_texts;
};

}  // namespace ferrowen::ui
