// What a TYP file draws for one Garmin type, by day and by night, beside its key and label.
#pragma once

#include <QIcon>
#include <QLabel>
#include <QWidget>
#include <map>
#include <string>
#include <utility>

#include "styletools/typ_file.hpp"
#include "styletools/typ_picture.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by object name: doctor_day, doctor_night  pictures   doctor_label  type and label
class TypPreview : public QWidget {
  Q_OBJECT
 public:
  explicit TypPreview(TextBinder& binder, QWidget* parent = nullptr);

  // The file whose drawings are shown; nullptr: none. It must outlive its use here.
  void set_typ(const TypFile* typ);
  void show_type(RuleKind kind, const std::string& key);
  // A small drawing for a list; kept, so that asking again costs nothing.
  QIcon icon(RuleKind kind, const std::string& key);

 private:
  [[nodiscard]] QString missing_text(RuleKind kind, const std::string& key) const;

  TextBinder& m_binder;
  const TypFile* m_typ = nullptr;
  std::map<std::pair<RuleKind, std::string>, QIcon> m_icons;
  QLabel *m_day, *m_night, *m_label;
};

}  // namespace ferrowen::ui
