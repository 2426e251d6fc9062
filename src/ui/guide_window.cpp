#include "ui/guide_window.hpp"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "platform/paths.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr QSize first_size(860, 680);

}  // namespace

std::string guide_path() { return platform::shared_data_file("guide/user-guide.md"); }

GuideWindow::GuideWindow(const InterfaceTexts& texts, const std::string& path, QWidget* parent)
    : QDialog(parent), m_binder(texts) {
  m_binder.custom([this] { setWindowTitle(m_binder.text(Section::menus, "mhelp_guide")); });
  auto* browser = new QTextBrowser(this);
  browser->setOpenExternalLinks(true);
  browser->setSource(QUrl::fromLocalFile(to_qt(path)), QTextDocument::MarkdownResource);
  auto* buttons = new QDialogButtonBox(this);
  auto* close = buttons->addButton(QDialogButtonBox::Close);
  m_binder.caption(close, Section::commands, "close");
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  auto* column = new QVBoxLayout(this);
  column->addWidget(browser, 1);
  column->addWidget(buttons);
  resize(first_size);
}

}  // namespace ferrowen::ui
