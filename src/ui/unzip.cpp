#include "ui/unzip.hpp"

#include <QFormLayout>
#include <QHBoxLayout>

#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/hgt_coverage.hpp"
#include "elevation/unzip.hpp"
#include "platform/files.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

unzip::unzip(Workspace& workspace, Prompts& prompts, QWidget* parent)
    : ToolWindow(workspace, prompts, "unzip", "unzip_title", parent),
      m_folder(new PathEdit(PathEdit::Kind::folder, prompts, m_binder, this)),
      m_tool(new PathEdit(PathEdit::Kind::file, prompts, m_binder, this)),
      m_archives(new QListWidget(this)) {
  m_folder->line()->setObjectName(QStringLiteral("Text1"));
  m_folder->set_title(m_binder.text(Section::labels, "select_directory"));
  m_folder->set_text(to_qt(current_hgt_folder(workspace.settings)));
  m_binder.tooltip(m_folder->line(), "unzip_folder");
  m_tool->line()->setObjectName(QStringLiteral("Text2"));
  std::vector<FileFilter> filters = {{" (*.exe)", "7z.exe"}};
  if (!platform::names_ignore_case) filters.insert(filters.begin(), {"7z", "7z;7zz;7za"});
  m_tool->set_filters(std::move(filters));
  m_tool->set_text(to_qt(workspace.settings.seven_zip));
  m_binder.tooltip(m_tool->line(), "unzip_tool");
  m_archives->setObjectName(QStringLiteral("List1"));
  m_archives->setFocusPolicy(Qt::TabFocus);
  m_binder.tooltip(m_archives, "unzip_archives");
  auto* form = new QFormLayout;
  form->addRow(label_for(m_folder->line(), "folder"), m_folder);
  form->addRow(label_for(m_tool->line(), "seven_zip"), m_tool);
  m_column->addLayout(form);
  m_column->addWidget(label_for(m_archives, "archives"));
  m_column->addWidget(m_archives, 1);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(button("Command1", "unzip", "unzip_start", [this] { unpack(); }));
  m_column->addLayout(row);
  connect(m_folder->line(), &QLineEdit::textChanged, this, &unzip::show_archives);
  finish_layout();
  show_archives();
}

void unzip::show_archives() {
  m_archives->clear();
  const std::string folder(trim(from_qt(m_folder->text())));
  if (folder.empty()) return;
  for (const std::string& name : zip_archives(folder))
    m_archives->addItem(to_qt(name));
}

void unzip::unpack() {
  if (const std::string tool(trim(from_qt(m_tool->text()))); tool != m_workspace.settings.seven_zip) {
    m_workspace.settings.seven_zip = tool;
    save_settings();
  }
  run_stage([this] {
    ferrowen::unzip(m_workspace, m_prompts, *m_progress, from_qt(m_folder->text()));
    show_archives();
  });
}

}  // namespace ferrowen::ui
