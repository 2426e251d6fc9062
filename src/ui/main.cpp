// The program `ferrowen6`: arguments, session, main window.
#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QMessageBox>
#include <QTimer>
#include <exception>

#include "app/handed_over.hpp"
#include "app/version.hpp"
#include "platform/desktop.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"
#include "ui/f1.hpp"
#include "ui/qt_text.hpp"
#include "ui/qt_texts.hpp"
#include "ui/theme.hpp"
#include "ui/window_session.hpp"

namespace {

using namespace ferrowen;
using ui::to_qt;

constexpr int message_already_running = 126;
constexpr int status_stopped = 3;
constexpr int interrupt_milliseconds = 200;
constexpr int handed_over_milliseconds = 300;

// What escapes from a window would end the program in the middle of a person's work.
class Application : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const std::exception& problem) {
      show(to_qt(problem.what()));
    }
    return false;
  }

 private:
  // One box at a time: what fails while a window is drawn fails again behind the box.
  void show(const QString& text) {
    if (m_showing) return qCritical("%s", qUtf8Printable(text));
    m_showing = true;
    QMessageBox::critical(QApplication::activeWindow(), QStringLiteral("Ferrowen"), text);
    m_showing = false;
  }

  bool m_showing = false;
};

std::optional<std::string> home_option(const QCommandLineParser& parser) {
  if (!parser.isSet(QStringLiteral("home"))) return std::nullopt;
  return ui::from_qt(parser.value(QStringLiteral("home")));
}

void parse(QCommandLineParser& parser, const QApplication& application) {
  parser.setApplicationDescription(QStringLiteral("Builds Garmin maps from OpenStreetMap data."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOption({QStringLiteral("home"), QStringLiteral("Program folder."), QStringLiteral("DIR")});
  parser.addOption({QStringLiteral("theme"), QStringLiteral("light or dark; else as the desktop."),
                    QStringLiteral("NAME")});
  parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("Map file to open."),
                               QStringLiteral("[FILE]"));
  parser.process(application);
}

void begin(ui::f1& window, const ui::WindowSession& session, const QStringList& files) {
  window.first_activation(session.notes);
  if (!files.isEmpty()) window.open_input(to_qt(platform::absolute(ui::from_qt(files.first()))));
}

// A second start with a file gives it to the first; only what that one does not take ends with a message.
int end_second_start(const Workspace& workspace, const QStringList& files) {
  platform::let_others_come_forward();
  if (!files.isEmpty() && hand_over(workspace.folder, ui::from_qt(files.first()))) return 0;
  ui::translate_qt(workspace);
  QMessageBox::information(nullptr, QStringLiteral("Ferrowen"),
                           to_qt(workspace.message(message_already_running)));
  return status_stopped;
}

}  // namespace

int main(int count, char** arguments) {
  const Application application(count, arguments);
  QApplication::setApplicationName(QStringLiteral("Ferrowen"));
  QApplication::setDesktopFileName(QStringLiteral("org.ferrowen.Ferrowen"));
  QApplication::setApplicationVersion(to_qt(version_text));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/ferrowen.png")));
  QCommandLineParser parser;
  parse(parser, application);
  ui::apply_theme(parser.value(QStringLiteral("theme")));

  ui::WindowSession session;
  const ui::WindowSession::Opened opened = session.open(home_option(parser));
  if (opened == ui::WindowSession::Opened::running_already)
    return end_second_start(session.workspace, parser.positionalArguments());
  ui::f1 window(session.workspace);
  window.set_can_save(opened == ui::WindowSession::Opened::ready);
  window.show();
  // A signal cannot call the window; it is looked for instead.
  platform::catch_interrupts();
  QTimer interrupts;
  QObject::connect(&interrupts, &QTimer::timeout, &window, [&window] {
    if (platform::interrupted()) window.end_program();
  });
  interrupts.start(interrupt_milliseconds);
  QTimer second_starts;
  QObject::connect(&second_starts, &QTimer::timeout, &window, &ui::f1::open_handed_over);
  if (opened == ui::WindowSession::Opened::ready) second_starts.start(handed_over_milliseconds);
  QTimer::singleShot(0, &window, [&] { begin(window, session, parser.positionalArguments()); });
  return QApplication::exec();
}
