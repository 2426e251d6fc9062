// The text of the option editor: coloured, with what is doubtful underlined and explained.
#pragma once

#include <QPlainTextEdit>
#include <vector>

#include "pipeline/options_edit.hpp"
#include "pipeline/options_lint.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class OptionColours;

class OptionsView : public QPlainTextEdit {
  Q_OBJECT
 public:
  OptionsView(OptionTool tool, const TextBinder& binder, QWidget* parent);

  // Options of the installed tool; none: nothing is called unknown.
  void set_known(std::vector<CatalogueOption> known);
  [[nodiscard]] const OptionsLint& lint() const { return m_lint; }
  // As one step that can be undone.
  void replace_text(const QString& text);
  void insert(const CatalogueOption& option, bool in_dem_block);
  void select(TextRange range);
  void toggle_comments();
  // To the next finding behind the cursor, around the end.
  void show_next_finding();

  // "Line 3: --rout is not an option of the installed tool."
  [[nodiscard]] QString explanation(const OptionFinding& finding) const;
  // The finding in the line of the cursor; nullptr when there is none.
  [[nodiscard]] const OptionFinding* finding_at_cursor() const;

 Q_SIGNALS:
  void linted();

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void lint_again();
  [[nodiscard]] QString tip_at(QPoint place) const;
  [[nodiscard]] QTextCursor cursor_at(TextRange range) const;

  OptionTool m_tool;
  const TextBinder& m_binder;
  std::vector<CatalogueOption> m_known;
  OptionsLint m_lint;
  QString m_linted_text;
  OptionColours* m_colours;
};

}  // namespace ferrowen::ui
