#include "ui/type_box.hpp"

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

// The number comes first, so that what stands in the box can be read back up to the first blank.
QString item_text(const NamedType& type, const TextBinder& binder) {
  return to_qt(type.type) + QStringLiteral("  ") + binder.said(type.name);
}

}  // namespace

TypeBox::TypeBox(MpKind kind, const TextBinder& binder, QWidget* parent)
    : QComboBox(parent), m_binder(binder) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  // "2" is a type: it must not become the first name that begins with it.
  setCompleter(nullptr);
  set_kind(kind);
}

void TypeBox::set_kind(MpKind kind) {
  const std::string kept = type();
  clear();
  for (const NamedType& type : named_types(kind))
    addItem(item_text(type, m_binder), to_qt(type.type));
  set_type(kept);
}

std::string TypeBox::type() const {
  return from_qt(currentText().trimmed().section(QStringLiteral("  "), 0, 0));
}

void TypeBox::set_type(const std::string& type) {
  const int index = findData(to_qt(type), Qt::UserRole, Qt::MatchFixedString);
  setCurrentIndex(index);
  if (index < 0) setEditText(to_qt(type));
}

}  // namespace ferrowen::ui
