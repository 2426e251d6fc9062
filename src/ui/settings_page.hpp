// One page of the settings window: groups of settings under headings, each with its label and its control.
#pragma once

#include <QGridLayout>
#include <QScrollArea>
#include <QToolButton>
#include <functional>
#include <vector>

#include "ui/settings_controls.hpp"
#include "ui/settings_groups.hpp"
#include "ui/tool_sign.hpp"

namespace ferrowen::ui {

class SettingsPage : public QScrollArea {
  Q_OBJECT
 public:
  SettingsPage(Page page, Workspace& workspace, SettingsControls& controls, TextBinder& binder,
               QWidget* parent = nullptr);

  // Shows the settings that hold all of these words and returns how many; no words: every setting.
  int filter(const QStringList& words);
  // Brings a setting before the eyes and gives it the keyboard; false when it stands on another page.
  bool reveal(const Field& field);
  void focus_first_visible();
  // The fields that a person may change.
  [[nodiscard]] std::vector<const Field*> editable_fields() const;
  // What is known of the tool whose path stands here; a report of another page is left alone.
  void show_tool(const ToolReport& report);
  void forget_tool(const Field& field, const QString& text);

 private:
  struct Group {
    QWidget* box = nullptr;
    QWidget* content = nullptr;  // of a closed group: what its button opens
    QToolButton* opener = nullptr;
    std::string_view title;
  };
  struct Row {
    const Field* field = nullptr;  // nullptr: a fact of the machine
    bool read_only = false;
    std::size_t group = 0;
    QWidget* control = nullptr;
    std::vector<QWidget*> widgets;
    ToolSign* sign = nullptr;
    QLabel* state = nullptr;
    std::function<QString()> words;
  };

  QGridLayout* add_group(const SettingsGroup& group);
  QGridLayout* make_closed(Group& made);
  void add_field(QGridLayout* grid, const Field& field, bool read_only);
  void add_state(QGridLayout* grid, int line, Row& row);
  void add_fact(QGridLayout* grid, std::string_view key, const std::function<QString()>& value);
  void add_facts(QGridLayout* grid);
  QLabel* add_label(QGridLayout* grid, int line, QWidget* control, const std::function<QString()>& text);
  [[nodiscard]] QString caption_of(const Field& field) const;

  Workspace& m_workspace;
  SettingsControls& m_controls;
  TextBinder& m_binder;
  std::vector<Group> m_groups;
  std::vector<Row> m_rows;
};

}  // namespace ferrowen::ui
