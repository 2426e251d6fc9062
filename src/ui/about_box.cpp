#include "ui/about_box.hpp"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/start_up.hpp"
#include "app/version.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int icon_size = 64;
constexpr int heading_percent = 160;
constexpr int window_width = 560;

QLabel* text_label(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setWordWrap(true);
  label->setOpenExternalLinks(true);
  label->setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
  return label;
}

QString link(const char* address, const QString& text) {
  return QStringLiteral("<a href=\"%1\">%2</a>").arg(QLatin1String(address), text.toHtmlEscaped());
}

}  // namespace

about_box::about_box(const Workspace& workspace, QWidget* parent)
    : QDialog(parent), m_binder(workspace.texts) {
  setObjectName(QStringLiteral("about_box"));
  setWindowTitle(m_binder.text(Section::labels, "about_title"));
  auto* buttons = new QDialogButtonBox(this);
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  close->setObjectName(QStringLiteral("about_close"));
  m_binder.caption(close, Section::commands, "close");
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* column = new QVBoxLayout(this);
  column->addWidget(make_heading());
  column->addWidget(make_rows(workspace));
  column->addStretch();
  column->addWidget(buttons);
  assign_mnemonics(*this);
  resize(window_width, layout()->heightForWidth(window_width));
  close->setFocus();
}

QWidget* about_box::make_heading() {
  auto* heading = new QWidget(this);
  auto* name = new QLabel(QStringLiteral("Ferrowen"), heading);
  QFont large = name->font();
  large.setPointSize(large.pointSize() * heading_percent / 100);
  large.setBold(true);
  name->setFont(large);
  auto* version =
      text_label(m_binder.text(Section::labels, "about_version").arg(QLatin1String(version_text)), heading);
  version->setObjectName(QStringLiteral("about_version"));
  auto* words = new QVBoxLayout;
  words->addWidget(name);
  words->addWidget(version);
  words->addWidget(text_label(m_binder.text(Section::labels, "about_what"), heading));
  auto* row = new QHBoxLayout(heading);
  row->setContentsMargins(0, 0, 0, 0);
  if (const QIcon icon = QApplication::windowIcon(); !icon.isNull()) {
    auto* picture = new QLabel(heading);
    picture->setPixmap(icon.pixmap(icon_size));
    row->addWidget(picture, 0, Qt::AlignTop);
  }
  row->addLayout(words, 1);
  return heading;
}

QWidget* about_box::make_rows(const Workspace& workspace) {
  auto* rows = new QWidget(this);
  auto* form = new QFormLayout(rows);
  form->setContentsMargins(0, 0, 0, 0);
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  const auto add = [&](const char* key, QWidget* value) {
    auto* label = new QLabel(m_binder.text(Section::labels, key), rows);
    value->setAccessibleName(label->text());
    form->addRow(label, value);
  };
  add("about_licence", text_label(m_binder.text(Section::labels, "about_copyright"), rows));
  add("about_data", text_label(QStringLiteral("© ") +
                                   link("https://www.openstreetmap.org/copyright",
                                        m_binder.text(Section::labels, "about_contributors")) +
                                   QStringLiteral(", Open Database License (ODbL)"),
                               rows));
  add("about_coastline", text_label(QStringLiteral("GSHHG, GNU Lesser General Public License (LGPL)"), rows));
  add("about_toolkit",
      text_label(
          QStringLiteral("Qt %1, GNU Lesser General Public License (LGPL)").arg(QLatin1String(qVersion())),
          rows));
  auto* java = text_label(m_binder.said(java_label(workspace.java_version)), rows);
  java->setObjectName(QStringLiteral("about_java"));
  java->setTextFormat(Qt::PlainText);
  add("about_java", java);
  auto* folder = new QLineEdit(to_qt(workspace.folder.path()), rows);
  folder->setObjectName(QStringLiteral("about_folder"));
  folder->setReadOnly(true);
  folder->setCursorPosition(0);
  add("about_folder", folder);
  return rows;
}

}  // namespace ferrowen::ui
