// A text file in a window of its own: to read, or to edit and save.
#pragma once

#include <QDialog>
#include <QPlainTextEdit>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class TextWindow : public QDialog {
  Q_OBJECT
 public:
  enum class Use : unsigned char { read, edit };
  TextWindow(const Workspace& workspace, Prompts& prompts, const QString& path, Use use,
             QWidget* parent = nullptr);

  void accept() override;  // saves what was edited
  void reject() override;  // asks about changes first

 private:
  bool save();
  Prompts& m_prompts;
  TextBinder m_binder;
  const MessageTable& m_messages;
  QString m_path;
  QPlainTextEdit* m_text;
};

}  // namespace ferrowen::ui
