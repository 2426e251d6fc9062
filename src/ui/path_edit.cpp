#include "ui/path_edit.hpp"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QMimeData>
#include <QUrl>

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

QString dropped_path(const QMimeData* data) {
  for (const QUrl& url : data->urls()) {
    if (url.isLocalFile()) return QDir::toNativeSeparators(url.toLocalFile());
  }
  return {};
}

}  // namespace

PathEdit::PathEdit(Kind kind, Prompts& prompts, TextBinder& binder, QWidget* parent)
    : QWidget(parent),
      m_kind(kind),
      m_prompts(prompts),
      m_line(new QLineEdit(this)),
      m_button(new QToolButton(this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(4);
  row->addWidget(m_line, 1);
  row->addWidget(m_button);
  m_button->setText(QStringLiteral("…"));
  m_button->setFocusPolicy(Qt::TabFocus);
  binder.name(m_button, Section::commands, "browse");
  binder.tooltip(m_button, kind == Kind::folder ? "choose_folder" : "choose_file");
  setFocusProxy(m_line);
  m_line->installEventFilter(this);
  connect(m_button, &QToolButton::clicked, this, &PathEdit::browse);
  connect(m_line, &QLineEdit::editingFinished, this, [this] {
    if (!m_line->isModified()) return;
    m_line->setModified(false);
    Q_EMIT path_chosen(text());
  });
}

void PathEdit::set_text(const QString& text) {
  m_line->setText(text);
  m_line->setCursorPosition(static_cast<int>(text.size()));
}

void PathEdit::browse() {
  const std::string start = from_qt(text());
  const std::optional<std::string> chosen =
      m_kind == Kind::folder
          ? m_prompts.choose_folder(from_qt(m_title), start)
          : m_prompts.choose_file({from_qt(m_title), m_filters, start, m_kind == Kind::new_file, false});
  if (!chosen) return;
  set_text(to_qt(*chosen));
  Q_EMIT path_chosen(text());
}

bool PathEdit::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_line && event->type() == QEvent::DragEnter) {
    auto* enter = static_cast<QDragEnterEvent*>(event);
    if (!dropped_path(enter->mimeData()).isEmpty()) enter->acceptProposedAction();
    return true;
  }
  if (watched == m_line && event->type() == QEvent::Drop) {
    const QString path = dropped_path(static_cast<QDropEvent*>(event)->mimeData());
    if (path.isEmpty()) return false;
    set_text(path);
    Q_EMIT path_chosen(path);
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace ferrowen::ui
