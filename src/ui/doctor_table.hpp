// The report list of the Style Doctor as a table: sortable, filtered by check and by words, coloured by
// weight.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <QSortFilterProxyModel>
#include <functional>
#include <optional>

#include "styletools/doctor_report.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

class DoctorTable : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column : int { marker, kind, finding, detail, type, place, columns };

  explicit DoctorTable(const TextBinder& binder, QObject* parent = nullptr)
      : QAbstractTableModel(parent), m_binder(binder) {}

  // The drawing of a type, beside its key.
  std::function<QIcon(RuleKind kind, const std::string& key)> drawing;

  void show_report(DoctorReport report);
  [[nodiscard]] const DoctorReport& report() const { return m_report; }
  [[nodiscard]] const DoctorRow& row(int index) const {
    return m_report.rows[static_cast<std::size_t>(index)];
  }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const TextBinder& m_binder;
  DoctorReport m_report;
};

class DoctorFilter : public QSortFilterProxyModel {
  Q_OBJECT
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;
  // Rows of this check alone; nothing: of all.
  void set_check(std::optional<DoctorCheck> check);
  // Rows that hold all these words.
  void set_words(const QString& words);

 protected:
  [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
  [[nodiscard]] bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

 private:
  std::optional<DoctorCheck> m_check;
  QStringList m_words;
};

}  // namespace ferrowen::ui
