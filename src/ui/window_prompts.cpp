#include "ui/window_prompts.hpp"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

#include "app/said_texts.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

QMessageBox::Icon box_icon(Icon icon) {
  switch (icon) {
    case Icon::none:
      return QMessageBox::NoIcon;
    case Icon::information:
      return QMessageBox::Information;
    case Icon::question:
      return QMessageBox::Question;
    case Icon::warning:
      return QMessageBox::Warning;
    case Icon::critical:
      break;
  }
  return QMessageBox::Critical;
}

// "Backup Files (*.mpdat)" and "*.mpdat;*.dat" as Qt writes a filter.
QString filter_text(const InterfaceTexts& texts, const std::vector<FileFilter>& filters) {
  QStringList parts;
  for (const FileFilter& filter : filters) {
    const QString pattern = to_qt(filter.pattern).replace(QLatin1Char(';'), QLatin1Char(' '));
    const QString ending = QLatin1Char('(') + pattern + QLatin1Char(')');
    QString name = to_qt(said(texts, filter.name)).trimmed();
    if (name.endsWith(ending)) name.chop(ending.size());
    parts << name.trimmed() + QLatin1Char(' ') + ending;
  }
  return parts.join(QStringLiteral(";;"));
}

void prepare(QMessageBox& box, std::string_view text, Icon icon) {
  box.setWindowTitle(QStringLiteral("Ferrowen"));
  box.setTextFormat(Qt::PlainText);
  box.setText(shown_text(text));
  box.setIcon(box_icon(icon));
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

}  // namespace

// The box puts its own English text on this button at every click.
void WindowPrompts::name_details(QMessageBox& box, QAbstractButton& button) const {
  const QString text = to_qt(m_texts(Section::commands, "details"));
  button.setText(text);
  QObject::connect(&button, &QAbstractButton::clicked, &box, [&button, text] { button.setText(text); });
}

QWidget* WindowPrompts::parent() const {
  QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : m_parent;
}

void WindowPrompts::tell(std::string_view text, Icon icon) {
  QMessageBox box(parent());
  prepare(box, said(m_texts, text), icon);
  const bool trouble = icon == Icon::warning || icon == Icon::critical;
  if (const QString more = trouble && details ? details() : QString(); !more.isEmpty())
    box.setDetailedText(more);
  box.addButton(to_qt(m_texts(Section::commands, "ok")), QMessageBox::AcceptRole);
  for (QAbstractButton* button : box.buttons()) {
    if (box.buttonRole(button) == QMessageBox::ActionRole) name_details(box, *button);
  }
  box.exec();
}

Answer WindowPrompts::ask(std::string_view text, Buttons buttons, Icon icon) {
  QMessageBox box(parent());
  prepare(box, said(m_texts, text), icon);
  auto* yes = box.addButton(to_qt(m_texts(Section::commands, "yes")), QMessageBox::YesRole);
  auto* no = box.addButton(to_qt(m_texts(Section::commands, "no")), QMessageBox::NoRole);
  QPushButton* last = no;
  if (buttons == Buttons::yes_no_cancel)
    last = box.addButton(to_qt(m_texts(Section::commands, "cancel")), QMessageBox::RejectRole);
  // Enter must not do what a warning warns of.
  box.setDefaultButton(icon == Icon::warning ? last : yes);
  box.setEscapeButton(last);
  box.exec();
  if (box.clickedButton() == yes) return Answer::yes;
  return box.clickedButton() == no ? Answer::no : Answer::cancel;
}

std::optional<std::string> WindowPrompts::choose_file(const FileQuestion& question) {
  const QString title = to_qt(said(m_texts, question.title));
  const QString filters = filter_text(m_texts, question.filters);
  const QFileDialog::Options options =
      question.confirms ? QFileDialog::Options() : QFileDialog::DontConfirmOverwrite;
  const QString chosen =
      question.save
          ? QFileDialog::getSaveFileName(parent(), title, to_qt(question.proposal), filters, nullptr, options)
          : QFileDialog::getOpenFileName(parent(), title, to_qt(question.proposal), filters);
  if (chosen.isEmpty()) return std::nullopt;
  return from_qt(QDir::toNativeSeparators(chosen));
}

std::vector<std::string> WindowPrompts::choose_files(const FileQuestion& question) {
  std::vector<std::string> chosen;
  for (const QString& path :
       QFileDialog::getOpenFileNames(parent(), to_qt(said(m_texts, question.title)), to_qt(question.proposal),
                                     filter_text(m_texts, question.filters)))
    chosen.push_back(from_qt(QDir::toNativeSeparators(path)));
  return chosen;
}

std::optional<std::string> WindowPrompts::choose_folder(std::string_view title, const std::string& start) {
  const QString chosen =
      QFileDialog::getExistingDirectory(parent(), to_qt(said(m_texts, title)), to_qt(start));
  if (chosen.isEmpty()) return std::nullopt;
  return from_qt(QDir::toNativeSeparators(chosen));
}

void WindowPrompts::show_file(const std::string& path) {
  if (file_viewer) file_viewer(to_qt(path));
}

}  // namespace ferrowen::ui
