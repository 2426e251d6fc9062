// A line for a path with a button that chooses one; files may be dropped on it.
#pragma once

#include <QLineEdit>
#include <QToolButton>
#include <QWidget>
#include <string>
#include <vector>

#include "base/prompts.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class PathEdit : public QWidget {
  Q_OBJECT
 public:
  enum class Kind : unsigned char { file, folder, new_file };

  // The dialog and its texts come from the prompts, so that tests can answer it.
  PathEdit(Kind kind, Prompts& prompts, TextBinder& binder, QWidget* parent = nullptr);

  void set_filters(std::vector<FileFilter> filters) { m_filters = std::move(filters); }
  void set_title(const QString& title) { m_title = title; }
  [[nodiscard]] QString text() const { return m_line->text(); }
  void set_text(const QString& text);
  [[nodiscard]] QLineEdit* line() const { return m_line; }
  [[nodiscard]] QToolButton* button() const { return m_button; }

 public Q_SLOTS:
  void browse();

 Q_SIGNALS:
  // A new path that the person typed, dropped or chose.
  void path_chosen(const QString& path);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Kind m_kind;
  Prompts& m_prompts;
  std::vector<FileFilter> m_filters;
  QString m_title;
  QLineEdit* m_line;
  QToolButton* m_button;
};

}  // namespace ferrowen::ui
