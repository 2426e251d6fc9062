// The drawings of a TYP file as a list: kind, type, label, and the picture by day and by night.
#pragma once

#include <QTreeWidget>

#include "styletools/typ_file.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class TypList : public QTreeWidget {
  Q_OBJECT
 public:
  explicit TypList(const TextBinder& binder, QWidget* parent = nullptr);
  void show_typ(const TypFile& typ);

 private:
  void add(RuleKind kind, const TypDefinition& definition, QList<QTreeWidgetItem*>& items) const;
};

}  // namespace ferrowen::ui
