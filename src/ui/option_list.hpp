// The tool's own options: searchable, with the help text of the chosen one as the tool words it.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QTextBrowser>
#include <QTreeWidget>
#include <vector>

#include "pipeline/options_lint.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class OptionList : public QWidget {
  Q_OBJECT
 public:
  OptionList(TextBinder& binder, QWidget* parent);

  void show_options(const std::vector<CatalogueOption>& options);
  // A line in place of the number of options: what is going on, or why there are none.
  void show_state(const QString& text);
  // Tells of each option whether and where it stands in the text.
  void show_places(const OptionsLint& lint);
  // The chosen option; nullptr when none is.
  [[nodiscard]] const CatalogueOption* current() const;
  [[nodiscard]] QLineEdit* search() const { return m_search; }

 Q_SIGNALS:
  void current_changed();
  void chosen();  // double click or Enter

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void filter();
  void show_help();
  void show_count();
  bool search_key(int key);

  TextBinder& m_binder;
  std::vector<CatalogueOption> m_options;
  QLineEdit* m_search;
  QTreeWidget* m_list;
  QLabel* m_state;
  QTextBrowser* m_help;
};

}  // namespace ferrowen::ui
