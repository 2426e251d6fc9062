// A box for the type of an object: the common ones by name, any other as a hexadecimal number.
#pragma once

#include <QComboBox>
#include <string>

#include "mp/mp_types.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class TypeBox : public QComboBox {
  Q_OBJECT
 public:
  TypeBox(MpKind kind, const TextBinder& binder, QWidget* parent);

  // Offers the types of another kind; the type stays.
  void set_kind(MpKind kind);
  // The hexadecimal number, as it was typed or chosen.
  [[nodiscard]] std::string type() const;
  void set_type(const std::string& type);

 private:
  const TextBinder& m_binder;
};

}  // namespace ferrowen::ui
