#include "ui/guide_window.hpp"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QImage>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "platform/paths.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr QSize first_size(860, 680);
constexpr int widest_picture = 790;  // beside the bar that scrolls

// A picture that is wider than the window as large as fits, sharp on every screen.
QVariant fitted(const QString& path, qreal ratio) {
  QImage picture(path);
  const int widest = static_cast<int>(widest_picture * ratio);
  if (picture.width() > widest) picture = picture.scaledToWidth(widest, Qt::SmoothTransformation);
  picture.setDevicePixelRatio(ratio);
  return picture;
}

// Pictures of a language lie in a folder below the English ones, by the name of the language file.
class GuideBrowser : public QTextBrowser {
 public:
  GuideBrowser(const std::string& language, QWidget* parent)
      : QTextBrowser(parent), m_folder(QFileInfo(to_qt(language)).completeBaseName()) {}

  QVariant loadResource(int type, const QUrl& name) override {
    if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
    const QFileInfo english(source().resolved(name).toLocalFile());
    const QString own = english.path() + QLatin1Char('/') + m_folder + QLatin1Char('/') + english.fileName();
    return fitted(!m_folder.isEmpty() && QFileInfo::exists(own) ? own : english.filePath(),
                  devicePixelRatioF());
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
  auto* back = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
  m_binder.caption(back, Section::commands, "guide_back");
  back->setEnabled(false);
  connect(browser, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
  connect(back, &QPushButton::clicked, browser, &QTextBrowser::backward);
  auto* close = buttons->addButton(QDialogButtonBox::Close);
  m_binder.caption(close, Section::commands, "close");
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  auto* column = new QVBoxLayout(this);
  column->addWidget(browser, 1);
  column->addWidget(buttons);
  resize(first_size);
}

}  // namespace ferrowen::ui
