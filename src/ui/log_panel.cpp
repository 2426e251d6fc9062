#include "ui/log_panel.hpp"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QTextBlock>
#include <QVBoxLayout>

#include "app/said_texts.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int dark_below = 128;
constexpr std::uint64_t shown_bytes = 1ULL << 20;

bool is_dark(const QPalette& palette) { return palette.color(QPalette::Base).lightness() < dark_below; }

}  // namespace

QColor error_colour(const QPalette& palette) {
  return is_dark(palette) ? QColor(255, 128, 128) : QColor(176, 0, 0);
}
QColor warning_colour(const QPalette& palette) {
  return is_dark(palette) ? QColor(255, 196, 96) : QColor(150, 84, 0);
}

LogPanel::LogPanel(const Workspace& workspace, TextBinder& binder, QWidget* parent)
    : QWidget(parent), m_workspace(workspace), m_file(new QComboBox(this)), m_text(new QPlainTextEdit(this)) {
  auto* refresh = new QPushButton(this);
  auto* open = new QPushButton(this);
  binder.caption(refresh, Section::commands, "refresh");
  binder.caption(open, Section::commands, "open_file");
  binder.name(m_file, Section::labels, "log_file");
  binder.tooltip(m_file, "log_file");
  m_file->setObjectName(QStringLiteral("log_file"));
  m_file->addItems({to_qt(file_name::mkgmap_log), to_qt(file_name::error_stream)});
  m_file->setCurrentIndex(static_cast<int>(LogFile::error_stream));
  m_text->setObjectName(QStringLiteral("log_text"));
  binder.name(m_text, Section::labels, "log");
  m_text->setReadOnly(true);
  m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
  m_text->setTabChangesFocus(true);
  m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(6, 6, 6, 6);
  auto* row = new QHBoxLayout;
  row->addWidget(m_file);
  row->addWidget(refresh);
  row->addWidget(open);
  row->addStretch(1);
  column->addLayout(row);
  column->addWidget(m_text, 1);
  connect(m_file, &QComboBox::currentIndexChanged, this, &LogPanel::load);
  connect(refresh, &QPushButton::clicked, this, &LogPanel::load);
  connect(open, &QPushButton::clicked, this,
          [this] { Q_EMIT open_requested(to_qt(log_path(m_workspace, chosen()))); });
}

LogFile LogPanel::chosen() const {
  return m_file->currentIndex() == 0 ? LogFile::mkgmap_log : LogFile::error_stream;
}

void LogPanel::show_log(LogFile which) {
  m_file->setCurrentIndex(which == LogFile::mkgmap_log ? 0 : 1);
  load();
}

void LogPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  load();
}

void LogPanel::load() {
  const Result<ferrowen::LogView> log = load_log(m_workspace, chosen(), shown_bytes);
  m_text->clear();
  if (!log.ok()) {
    m_text->setPlainText(shown_text(said(m_workspace.texts, log.error)));
    return;
  }
  show_lines(log.value.lines);
}

void LogPanel::show_lines(const std::vector<LogLine>& lines) {
  QTextCursor cursor(m_text->document());
  cursor.beginEditBlock();
  int first_error = -1;
  for (const LogLine& line : lines) {
    if (line.level == LogLevel::error && first_error < 0) first_error = cursor.position();
    QTextCharFormat format;
    if (line.level == LogLevel::error) format.setForeground(error_colour(palette()));
    if (line.level == LogLevel::warning) format.setForeground(warning_colour(palette()));
    cursor.insertText(to_qt(line.text) + QLatin1Char('\n'), format);
  }
  cursor.endEditBlock();
  m_text->moveCursor(QTextCursor::End);
  if (first_error < 0) return;
  cursor.setPosition(first_error);
  m_text->setTextCursor(cursor);
  m_text->centerCursor();
}

}  // namespace ferrowen::ui
