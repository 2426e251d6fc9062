// The drawings of a TYP file as a list: kind, type, label, and the picture by day and by night.
#pragma once

#include <QTreeWidget>

#include "styletools/typ_file.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class TypList : public QTreeWidget {
  Q_OBJECT
 public:
  enum class Order : bool { hidden, shown };  // a column for the level in which a polygon is drawn

  explicit TypList(const TextBinder& binder, QWidget* parent = nullptr, Order order = Order::hidden);
  void show_typ(const TypFile& typ);

 private:
  void add(RuleKind kind, const TypDefinition& definition, QList<QTreeWidgetItem*>& items) const;

  const TextBinder& m_binder;
};

}  // namespace ferrowen::ui
