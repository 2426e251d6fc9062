#include "ui/typ_list.hpp"

#include <QHeaderView>

#include "styletools/typ_reader.hpp"
#include "styletools/typ_text.hpp"
#include "ui/qt_text.hpp"
#include "ui/typ_pixmap.hpp"

namespace ferrowen::ui {

namespace {

constexpr int day_column = 0, night_column = 1, kind_column = 2, type_column = 3, label_column = 4,
              order_column = 5;
constexpr QSize picture_size(72, 32);

}  // namespace

TypList::TypList(const TextBinder& binder, QWidget* parent, Order order)
    : QTreeWidget(parent), m_binder(binder) {
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setIconSize(picture_size);
  QStringList headings;
  for (const char* key : {"typ_day", "typ_night", "typ_kind", "typ_type", "typ_label"})
    headings << binder.text(Section::labels, key);
  if (order == Order::shown) headings << binder.text(Section::labels, "typ_order");
  setHeaderLabels(headings);
  for (const int column : {day_column, night_column, kind_column, type_column})
    header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
}

void TypList::show_typ(const TypFile& typ) {
  clear();
  QList<QTreeWidgetItem*> items;
  for (const RuleKind kind : rule_kinds)
    for (const TypDefinition& definition : typ.of(kind))
      add(kind, definition, items);
  addTopLevelItems(items);
}

void TypList::add(RuleKind kind, const TypDefinition& definition, QList<QTreeWidgetItem*>& items) const {
  auto* item = new QTreeWidgetItem;
  const qreal ratio = devicePixelRatioF();
  item->setIcon(day_column, typ_pixmap(kind, definition, TypLight::day, picture_size, ratio));
  item->setIcon(night_column, typ_pixmap(kind, definition, TypLight::night, picture_size, ratio));
  item->setText(kind_column, m_binder.said(kind_title(kind)));
  item->setText(type_column, to_qt(type_code(definition.type, definition.subtype)));
  QString label = to_qt(label_text(definition));
  if (!definition.damage.empty()) label += QStringLiteral(" (%1)").arg(m_binder.said(definition.damage));
  item->setText(label_column, label);
  if (columnCount() > order_column && definition.draw_order > 0)
    item->setData(order_column, Qt::DisplayRole, static_cast<int>(definition.draw_order));
  items << item;
}

}  // namespace ferrowen::ui
