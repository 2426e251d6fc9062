#include "ui/doctor_table.hpp"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <algorithm>
#include <tuple>

#include "platform/paths.hpp"
#include "ui/log_panel.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

QString place_text(const DoctorRow& row) {
  if (row.file.empty()) return {};
  const QString name = to_qt(platform::name_of(row.file));
  return row.line == 0 ? name : name + QLatin1Char(':') + QString::number(row.line);
}

// The words around what is quoted; a rule is shown as it was written.
QString detail_text(const DoctorRow& row, const TextBinder& binder) {
  const std::string_view detail = row.detail;
  const std::size_t at = row.quoted.empty() ? std::string_view::npos : detail.find(row.quoted);
  if (at == std::string_view::npos) return binder.said(detail);
  return binder.said(detail.substr(0, at)) + to_qt(row.quoted) +
         binder.said(detail.substr(at + row.quoted.size()));
}

QString cell_text(const DoctorRow& row, int column, const TextBinder& binder) {
  switch (column) {
    case DoctorTable::marker:
      return to_qt(row.marker).trimmed();
    case DoctorTable::kind:
      return binder.said(row.kind_text);
    case DoctorTable::finding:
      return binder.said(row.finding);
    case DoctorTable::detail:
      return detail_text(row, binder).trimmed();
    case DoctorTable::type:
      return to_qt(row.key);
    case DoctorTable::place:
      return place_text(row);
    default:
      return {};
  }
}

QVariant colour_of(Weight weight) {
  const QPalette palette = QApplication::palette();
  if (weight == Weight::error) return error_colour(palette);
  if (weight == Weight::warning) return warning_colour(palette);
  if (weight == Weight::hint) return palette.color(QPalette::Link);
  return {};
}

}  // namespace

void DoctorTable::show_report(DoctorReport report) {
  beginResetModel();
  m_report = std::move(report);
  endResetModel();
}

int DoctorTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_report.rows.size());
}

int DoctorTable::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columns; }

QVariant DoctorTable::data(const QModelIndex& index, int role) const {
  const DoctorRow& shown = row(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return cell_text(shown, index.column(), m_binder);
    case Qt::ToolTipRole:
      return shown.other_place.empty()
                 ? cell_text(shown, index.column(), m_binder)
                 : m_binder.text(Section::labels, "doctor_earlier").arg(m_binder.said(shown.other_place));
    case Qt::ForegroundRole:
      return colour_of(shown.weight);
    case Qt::FontRole: {
      QFont font;
      font.setBold(shown.weight == Weight::heading && !shown.finding.empty());
      return font;
    }
    case Qt::DecorationRole:
      return index.column() == type && drawing && !shown.key.empty()
                 ? QVariant(drawing(shown.kind, shown.key))
                 : QVariant();
    default:
      return {};
  }
}

QVariant DoctorTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  constexpr const char* names[columns] = {"doctor_marker", "doctor_kind", "doctor_finding",
                                          "doctor_detail", "doctor_type", "doctor_place"};
  return m_binder.text(Section::labels, names[section]);
}

void DoctorFilter::set_check(std::optional<DoctorCheck> check) {
  m_check = check;
  invalidateFilter();
}

void DoctorFilter::set_words(const QString& words) {
  m_words = words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  invalidateFilter();
}

bool DoctorFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
  const auto* table = static_cast<const DoctorTable*>(sourceModel());
  if (m_check && table->row(row).check != *m_check) return false;
  if (m_words.isEmpty()) return true;
  QString text;
  for (int column = 0; column < DoctorTable::columns; ++column)
    text += table->index(row, column, parent).data().toString() + QLatin1Char(' ');
  return std::all_of(m_words.begin(), m_words.end(),
                     [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

// Weights from the heaviest down, places by their line; everything else as text.
bool DoctorFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const {
  const auto* table = static_cast<const DoctorTable*>(sourceModel());
  const DoctorRow& one = table->row(left.row());
  const DoctorRow& other = table->row(right.row());
  if (left.column() == DoctorTable::marker) return one.weight > other.weight;
  if (left.column() == DoctorTable::place)
    return std::tie(one.file, one.line) < std::tie(other.file, other.line);
  return left.data().toString().localeAwareCompare(right.data().toString()) < 0;
}

}  // namespace ferrowen::ui
