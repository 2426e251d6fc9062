#include "ui/merge.hpp"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QMimeData>
#include <QShortcut>
#include <QUrl>

#include "app/save_name.hpp"
#include "base/text.hpp"
#include "elevation/merge.hpp"
#include "platform/paths.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int message_select = 20;
const FileFilter list_filter{"list file", "*.lst"};

}  // namespace

merge::merge(Workspace& workspace, Prompts& prompts, QWidget* parent)
    : ToolWindow(workspace, prompts, "merge", "merge_title", parent),
      m_files(new QListWidget(this)),
      m_target(new PathEdit(PathEdit::Kind::new_file, prompts, m_binder, this)),
      m_tool(new PathEdit(PathEdit::Kind::file, prompts, m_binder, this)) {
  setAcceptDrops(true);
  m_column->addWidget(make_list(), 1);
  m_target->line()->setObjectName(QStringLiteral("Text1"));
  m_target->set_filters({{"PBF (*.pbf)", "*.pbf"}});
  m_target->set_text(QDir::toNativeSeparators(QDir::current().filePath(QStringLiteral("untitled.pbf"))));
  m_binder.tooltip(m_target->line(), "merge_target");
  m_tool->line()->setObjectName(QStringLiteral("Text2"));
  m_tool->set_filters(program_filters("osmconvert(exe)"));
  m_tool->set_text(to_qt(workspace.settings.osmconvert));
  m_binder.tooltip(m_tool->line(), "merge_tool");
  auto* form = new QFormLayout;
  form->addRow(label_for(m_target->line(), "merge_target"), m_target);
  form->addRow(label_for(m_tool->line(), "osmconvert"), m_tool);
  m_column->addLayout(form);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(button("Command7", "merge", "merge_start", [this] { start(); }));
  m_column->addLayout(row);
  finish_layout();
}

QWidget* merge::make_list() {
  auto* page = new QWidget(this);
  m_files->setObjectName(QStringLiteral("List1"));
  m_files->setSelectionMode(QAbstractItemView::ExtendedSelection);
  m_binder.tooltip(m_files, "merge_files");
  auto* side = new QVBoxLayout;
  side->addWidget(button("Command1", "add_files", "merge_add", [this] { add_files(); }));
  side->addWidget(button("Command2", "remove_files", "merge_remove", [this] { remove_selected(); }));
  side->addWidget(button("Command3", "move_up", "merge_up", [this] { move(-1); }));
  side->addWidget(button("Command4", "move_down", "merge_down", [this] { move(1); }));
  side->addStretch();
  side->addWidget(button("Command5", "load_list", "merge_load", [this] { load_list(); }));
  side->addWidget(button("Command6", "save_list", "merge_save", [this] { save_list(); }));
  auto* row = new QHBoxLayout;
  row->addWidget(m_files, 1);
  row->addLayout(side);
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(label_for(m_files, "merge_files"));
  column->addLayout(row, 1);
  connect(new QShortcut(QKeySequence::Delete, m_files, nullptr, nullptr, Qt::WidgetShortcut),
          &QShortcut::activated, this, &merge::remove_selected);
  return page;
}

std::vector<std::string> merge::files() const {
  std::vector<std::string> paths;
  for (int row = 0; row < m_files->count(); ++row)
    paths.push_back(from_qt(m_files->item(row)->text()));
  return paths;
}

void merge::add(const std::string& path) { m_files->addItem(to_qt(path)); }

void merge::add_files() {
  const std::string start = m_files->count() > 0 ? files().back() : m_workspace.settings.input;
  const FileQuestion question{from_qt(m_binder.text(Section::commands, "add_files")),
                              {{"PBF (*.pbf)", "*.pbf"}},
                              platform::folder_of(start),
                              false};
  for (const std::string& path : m_prompts.choose_files(question))
    add(path);
}

void merge::remove_selected() {
  const QList<QListWidgetItem*> selected = m_files->selectedItems();
  if (selected.isEmpty()) return m_prompts.tell(m_workspace.message(message_select), Icon::warning);
  qDeleteAll(selected);
}

void merge::move(int step) {
  const int row = m_files->currentRow();
  const int to = row + step;
  if (row < 0 || to < 0 || to >= m_files->count()) return;
  m_files->insertItem(to, m_files->takeItem(row));
  m_files->setCurrentRow(to);
}

void merge::load_list() {
  const FileQuestion question{
      from_qt(m_binder.text(Section::commands, "load_list")), {list_filter}, "", false};
  const std::optional<std::string> path = m_prompts.choose_file(question);
  if (!path) return;
  const Result<std::vector<std::string>> listed = load_merge_list(*path);
  if (!listed.ok()) return m_prompts.tell(listed.error, Icon::warning);
  m_files->clear();
  for (const std::string& file : listed.value)
    add(file);
}

void merge::save_list() {
  const FileQuestion question{
      from_qt(m_binder.text(Section::commands, "save_list")), {list_filter}, "untitled.lst", true};
  const std::optional<std::string> path = name_to_write(m_workspace.messages, m_prompts, question, ".lst");
  if (!path) return;
  if (const Status saved = save_merge_list(*path, files()); !saved.ok())
    m_prompts.tell(saved.error, Icon::critical);
}

void merge::start() {
  if (const std::string tool(trim(from_qt(m_tool->text()))); tool != m_workspace.settings.osmconvert) {
    m_workspace.settings.osmconvert = tool;
    save_settings();
  }
  run_stage([this] { merg(m_workspace, m_prompts, *m_progress, files(), from_qt(m_target->text())); });
}

void merge::dragEnterEvent(QDragEnterEvent* event) {
  if (!busy() && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void merge::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) add(from_qt(QDir::toNativeSeparators(url.toLocalFile())));
  }
}

}  // namespace ferrowen::ui
