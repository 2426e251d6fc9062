#include "ui/guide_window.hpp"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "platform/paths.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr QSize first_size(860, 680);

// Pictures of a language lie in a folder below the English ones, by the name of the language file.
class GuideBrowser : public QTextBrowser {
 public:
  GuideBrowser(const std::string& language, QWidget* parent)
      : QTextBrowser(parent), m_folder(QFileInfo(to_qt(language)).completeBaseName()) {}

  QVariant loadResource(int type, const QUrl& name) override {
    if (type == QTextDocument::ImageResource && !m_folder.isEmpty()) {
      const QString path = source().resolved(name).toLocalFile();
      const QFileInfo english(path);
      const QString own =
          english.path() + QLatin1Char('/') + m_folder + QLatin1Char('/') + english.fileName();
      if (QFileInfo::exists(own)) return QTextBrowser::loadResource(type, QUrl::fromLocalFile(own));
    }
    return QTextBrowser::loadResource(type, name);
  }

 private:
  QString m_folder;
};

}  // namespace

std::string guide_path() { return platform::shared_data_file("guide/user-guide.md"); }

GuideWindow::GuideWindow(const InterfaceTexts& texts, const std::string& path, const std::string& language,
                         QWidget* parent)
    : QDialog(parent), m_binder(texts) {
  m_binder.custom([this] { setWindowTitle(m_binder.text(Section::menus, "mhelp_guide")); });
  auto* browser = new GuideBrowser(language, this);
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
