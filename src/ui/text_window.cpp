#include "ui/text_window.hpp"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr std::uint64_t largest_text = 16ULL << 20U;
constexpr int message_unsaved_changes = 190;

}  // namespace

TextWindow::TextWindow(const Workspace& workspace, Prompts& prompts, const QString& path, Use use,
                       QWidget* parent)
    : QDialog(parent),
      m_prompts(prompts),
      m_binder(workspace.texts),
      m_messages(workspace.messages),
      m_path(path),
      m_text(new QPlainTextEdit(this)) {
  setWindowTitle(path);
  resize(760, 520);
  const Result<std::string> content = read_file(from_qt(path), largest_text);
  m_text->setPlainText(content.ok() ? shown_text(decode_tool_text(content.value))
                                    : m_binder.said(content.error));
  m_text->setReadOnly(use == Use::read || !content.ok());
  m_text->setLineWrapMode(m_text->isReadOnly() ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
  m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_text->document()->setModified(false);
  m_text->setObjectName(QStringLiteral("text"));
  m_text->setAccessibleName(path);
  auto* buttons = new QDialogButtonBox(this);
  if (!m_text->isReadOnly()) {
    auto* save_button = buttons->addButton(QDialogButtonBox::Save);
    m_binder.caption(save_button, Section::commands, "save");
    connect(save_button, &QPushButton::clicked, this, &TextWindow::accept);
  }
  auto* close = buttons->addButton(QDialogButtonBox::Close);
  m_binder.caption(close, Section::commands, "close");
  connect(close, &QPushButton::clicked, this, &TextWindow::reject);
  auto* column = new QVBoxLayout(this);
  column->addWidget(m_text, 1);
  column->addWidget(buttons);
  assign_mnemonics(*this);
}

bool TextWindow::save() {
  const Status saved = safe_write(from_qt(m_path), with_crlf(from_qt(m_text->toPlainText())));
  if (!saved.ok()) m_prompts.tell(saved.error, Icon::critical);
  return saved.ok();
}

void TextWindow::accept() {
  if (save()) QDialog::accept();
}

void TextWindow::reject() {
  if (m_text->document()->isModified()) {
    const Answer answer = m_prompts.ask(m_messages(message_unsaved_changes), Buttons::yes_no_cancel);
    if (answer == Answer::cancel || (answer == Answer::yes && !save())) return;
  }
  QDialog::reject();
}

}  // namespace ferrowen::ui
