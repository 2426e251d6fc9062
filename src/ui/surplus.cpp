#include "ui/surplus.hpp"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QLocale>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/registration_repair.hpp"
#include "ui/push_button.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int folder_column = 0, size_column = 1, changed_column = 2, registration_column = 3, columns = 4;
constexpr int window_width = 760, window_height = 460;

QString size_text(const TextBinder& binder, qulonglong bytes) {
  constexpr double bytes_of_a_megabyte = 1e6;
  const QString megabytes = QLocale().toString(static_cast<double>(bytes) / bytes_of_a_megabyte, 'f', 1);
  return binder.text(Section::labels, "surplus_megabytes").arg(megabytes);
}

}  // namespace

surplus::surplus(Workspace& workspace, Prompts& prompts, Progress& progress, QWidget* parent)
    : QDialog(parent),
      m_workspace(workspace),
      m_prompts(prompts),
      m_services(cleanup_services(workspace, prompts, progress)),
      m_binder(workspace.texts) {
  setObjectName(QStringLiteral("surplus"));
  setWindowTitle(m_binder.text(Section::labels, "surplus_title"));
  auto* what = new QLabel(this);
  what->setWordWrap(true);
  m_binder.caption(what, Section::labels, "surplus_what");
  auto* column = new QVBoxLayout(this);
  column->addWidget(what);
  column->addWidget(make_folder_row());
  make_list();
  column->addWidget(m_list, 1);
  m_total = new QLabel(this);
  m_total->setObjectName(QStringLiteral("surplus_total"));
  column->addWidget(m_total);
  column->addWidget(make_buttons());
  assign_mnemonics(*this);
  resize(window_width, window_height);
  // Asked for by nobody yet, so that nothing is told when there is none.
  const Result<Folders> found = unused_maps(m_workspace, m_services, from_qt(m_folder->currentText()));
  show_folders(found.value);
  m_folder->setFocus();
}

QWidget* surplus::make_folder_row() {
  auto* box = new QWidget(this);
  m_folder = new QComboBox(box);
  m_folder->setObjectName(QStringLiteral("Dir2"));
  m_folder->setEditable(true);
  m_folder->setInsertPolicy(QComboBox::NoInsert);
  m_folder->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  for (const std::string& folder : map_target_folders(m_workspace.settings))
    m_folder->addItem(to_qt(folder));
  m_binder.tooltip(m_folder, "surplus_folder");
  auto* label = new QLabel(box);
  label->setBuddy(m_folder);
  m_binder.caption(label, Section::labels, "surplus_folder");
  QPushButton* browse_button = push_button(box, "surplus_browse");
  m_binder.caption(browse_button, Section::commands, "browse");
  QPushButton* search_button = push_button(box, "surplus_search");
  search_button->setDefault(true);
  m_binder.caption(search_button, Section::commands, "search");
  auto* row = new QHBoxLayout(box);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(label);
  row->addWidget(m_folder, 1);
  row->addWidget(browse_button);
  row->addWidget(search_button);
  connect(browse_button, &QPushButton::clicked, this, &surplus::browse);
  connect(search_button, &QPushButton::clicked, this, &surplus::search);
  connect(m_folder, &QComboBox::textActivated, this, &surplus::search);
  return box;
}

void surplus::make_list() {
  m_list = new QTreeWidget(this);
  m_list->setObjectName(QStringLiteral("List2"));
  m_list->setRootIsDecorated(false);
  m_list->setAlternatingRowColors(true);
  m_list->setColumnCount(columns);
  m_list->setHeaderLabels({m_binder.text(Section::labels, "surplus_list_folder"),
                           m_binder.text(Section::labels, "surplus_size"),
                           m_binder.text(Section::labels, "surplus_changed"),
                           m_binder.text(Section::labels, "surplus_registration")});
  m_binder.name(m_list, Section::labels, "surplus_title");
  QHeaderView* header = m_list->header();
  header->setStretchLastSection(false);
  header->setSectionResizeMode(QHeaderView::ResizeToContents);
  header->setSectionResizeMode(folder_column, QHeaderView::Stretch);
  m_list->setTextElideMode(Qt::ElideMiddle);
  connect(m_list, &QTreeWidget::itemChanged, this, &surplus::show_ticked);
}

QWidget* surplus::make_buttons() {
  auto* buttons = new QDialogButtonBox(this);
  const auto add = [&](const char* name, const char* key, const char* tip, void (surplus::*slot)()) {
    QPushButton* button = push_button(buttons, name);
    buttons->addButton(button, QDialogButtonBox::ActionRole);
    m_binder.caption(button, Section::commands, key);
    if (*tip != '\0') m_binder.tooltip(button, tip);
    connect(button, &QPushButton::clicked, this, slot);
  };
  add("surplus_all", "select_all", "", &surplus::tick_all);
  add("surplus_delete", "delete", "surplus_delete", &surplus::delete_ticked);
  add("surplus_recover", "recover", "surplus_recover", &surplus::recover_ticked);
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  close->setObjectName(QStringLiteral("surplus_close"));
  close->setAutoDefault(false);
  m_binder.caption(close, Section::commands, "close");
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  return buttons;
}

void surplus::browse() {
  const std::optional<std::string> chosen = m_prompts.choose_folder(
      from_qt(m_binder.text(Section::labels, "surplus_folder")), from_qt(m_folder->currentText()));
  if (!chosen) return;
  m_folder->setCurrentText(to_qt(*chosen));
  search();
}

void surplus::search() {
  const std::string folder(trim(from_qt(m_folder->currentText())));
  const Result<Folders> found = find_unused_maps(m_workspace, m_prompts, m_services, {folder});
  if (!found.ok()) m_prompts.tell(found.error, Icon::warning);
  show_folders(found.value);
}

void surplus::show_folders(const Folders& folders) {
  m_list->clear();
  const QSignalBlocker quiet(m_list);  // a box that is set here is none that a person ticked
  for (const std::string& path : folders) {
    auto* item = new QTreeWidgetItem(m_list, {to_qt(path)});
    const std::uint64_t size = map_folder_size(path);
    item->setText(size_column, size_text(m_binder, size));
    item->setData(size_column, Qt::UserRole, QVariant::fromValue<qulonglong>(size));
    item->setTextAlignment(size_column, Qt::AlignRight | Qt::AlignVCenter);
    item->setText(changed_column,
                  QLocale().toString(QFileInfo(to_qt(path)).lastModified(), QLocale::ShortFormat));
    const bool can_recover = !registration_in(path).empty();
    item->setText(registration_column, m_binder.text(Section::commands, can_recover ? "yes" : "no"));
    item->setToolTip(folder_column, to_qt(path));
    item->setCheckState(folder_column, Qt::Unchecked);
  }
  show_ticked();
}

surplus::Folders surplus::ticked() const {
  Folders folders;
  for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
    const QTreeWidgetItem* item = m_list->topLevelItem(row);
    if (item->checkState(folder_column) == Qt::Checked) folders.push_back(from_qt(item->text(folder_column)));
  }
  return folders;
}

void surplus::show_ticked() {
  qulonglong bytes = 0;
  int count = 0;
  for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
    const QTreeWidgetItem* item = m_list->topLevelItem(row);
    if (item->checkState(folder_column) != Qt::Checked) continue;
    bytes += item->data(size_column, Qt::UserRole).toULongLong();
    ++count;
  }
  m_total->setText(m_binder.text(Section::labels, "surplus_total")
                       .arg(count)
                       .arg(m_list->topLevelItemCount())
                       .arg(size_text(m_binder, bytes)));
}

void surplus::tick_all() {
  const auto all = static_cast<std::size_t>(m_list->topLevelItemCount());
  const Qt::CheckState state = ticked().size() == all ? Qt::Unchecked : Qt::Checked;
  for (int row = 0; row < m_list->topLevelItemCount(); ++row)
    m_list->topLevelItem(row)->setCheckState(folder_column, state);
}

// What is gone leaves the list; what stayed stands there still, with its tick.
void surplus::delete_ticked() {
  delete_unused_maps(m_workspace, m_prompts, m_services, ticked());
  for (int row = m_list->topLevelItemCount() - 1; row >= 0; --row) {
    if (!file_exists(from_qt(m_list->topLevelItem(row)->text(folder_column))))
      delete m_list->takeTopLevelItem(row);
  }
  show_ticked();
}

void surplus::recover_ticked() {
  const Folders folders = ticked();
  if (recover_map(m_workspace, m_prompts, m_services, folders) != Recovery::done) return;
  for (int row = m_list->topLevelItemCount() - 1; row >= 0; --row) {
    if (from_qt(m_list->topLevelItem(row)->text(folder_column)) == folders.front())
      delete m_list->takeTopLevelItem(row);
  }
  show_ticked();
}

}  // namespace ferrowen::ui
