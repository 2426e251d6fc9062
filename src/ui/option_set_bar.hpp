// The named option sets above the option editor: which one is in hand, and Save, Save as, Load, Delete.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <functional>

#include "app/option_sets.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class OptionSetBar : public QWidget {
  Q_OBJECT
 public:
  // The text belongs to the owner, which is asked for it and gets another one. The set functions work on the
  // settings record: the text stands there only while they do.
  struct Text {
    std::function<std::string()> get;
    std::function<void(const std::string&)> set;
  };
  OptionSetBar(Workspace& workspace, Prompts& prompts, TextBinder& binder, OptionKeeper keeper, Text text,
               QWidget* parent);

  // The set that the text came from: "" is the one without a name.
  [[nodiscard]] std::string name() const;
  // The text is not as it stands in that set.
  [[nodiscard]] bool changed() const;
  // Reads the file and chooses the set that the settings name, or else the one that holds this text.
  void show_sets();
  // Puts the text into the set in hand without a word.
  Status store();
  void text_changed();

 private:
  QWidget* make_row();
  QWidget* make_name_row();
  // Reads the sets again and shows this one as chosen.
  void reload(const std::string& name);
  void load(const std::string& name);
  void save();
  void save_as();
  void remove();
  void show_name_row(bool shown);
  bool with_text_in_settings(const std::function<bool()>& work);
  [[nodiscard]] std::string stored_text() const;

  Workspace& m_workspace;
  Prompts& m_prompts;
  TextBinder& m_binder;
  OptionKeeper m_keeper;
  Text m_text;
  OptionSets m_sets;
  std::string m_name;
  QComboBox* m_combo = nullptr;
  QPushButton *m_save = nullptr, *m_load = nullptr, *m_delete = nullptr;
  QWidget* m_name_row = nullptr;
  QLineEdit* m_new_name = nullptr;
};

}  // namespace ferrowen::ui
