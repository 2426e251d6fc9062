// Makes the pictures of the user guide from the real windows: every window, in one theme.
// Usage: ferrowen-screenshots OUTDIR light|dark [WIDTHxHEIGHT [LANGUAGE.m5l]]
// The sample map is split and built with the real tools, so Java, splitter and mkgmap must be installed.
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <functional>

#include "app/language_file.hpp"
#include "base/files.hpp"
#include "platform/paths.hpp"
#include "ui/about_box.hpp"
#include "ui/autoscr.hpp"
#include "ui/cmcolor.hpp"
#include "ui/contours.hpp"
#include "ui/createtyp.hpp"
#include "ui/doctor.hpp"
#include "ui/editcontours.hpp"
#include "ui/f1.hpp"
#include "ui/gpx2mp.hpp"
#include "ui/installed_maps_list.hpp"
#include "ui/kml2mp.hpp"
#include "ui/merge.hpp"
#include "ui/option_editor.hpp"
#include "ui/qt_text.hpp"
#include "ui/settings.hpp"
#include "ui/surplus.hpp"
#include "ui/tag_keys.hpp"
#include "ui/theme.hpp"
#include "ui/tools_page.hpp"
#include "ui/unzip.hpp"
#include "ui/window_session.hpp"

namespace {

using namespace ferrowen;
using ui::to_qt;

constexpr int settle_milliseconds = 400;
const QSize usual_size(1180, 760);

// Answers Yes and shows nothing, so that the work goes on.
class SilentPrompts : public ui::HeldPrompts {
 public:
  Answer ask(std::string_view /*text*/, Buttons /*buttons*/, Icon /*icon*/) override { return Answer::yes; }
};

class Camera {
 public:
  Camera(QString folder, QString theme) : m_folder(std::move(folder)), m_theme(std::move(theme)) {}

  void take(QWidget& window, const QString& name) {
    QTest::qWait(settle_milliseconds);
    const QString path =
        m_folder + QLatin1Char('/') + name + QLatin1Char('-') + m_theme + QStringLiteral(".png");
    // A palette of 256 colours halves the files and cannot be told from the original.
    const QImage picture =
        window.grab().toImage().convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither);
    if (!picture.save(path)) m_failed = true;
    std::printf("%s\n", path.toLocal8Bit().constData());
  }
  void take_dialog(QDialog& dialog, const QString& name) {
    dialog.show();
    take(dialog, name);
    dialog.close();
  }
  [[nodiscard]] bool failed() const { return m_failed; }

 private:
  QString m_folder, m_theme;
  bool m_failed = false;
};

void press(const QWidget& window, const char* name) {
  auto* button = window.findChild<QAbstractButton*>(QString::fromUtf8(name));
  if (button != nullptr) button->click();
}

void take_main_window(ui::f1& window, ui::WindowSession& session, Camera& camera) {
  auto* tabs = window.findChild<QTabWidget*>(QStringLiteral("tabs"));
  auto* pages = window.findChild<QStackedWidget*>(QStringLiteral("pages"));
  auto* plot = window.findChild<ui::TilePlot*>(QStringLiteral("lb1"));
  camera.take(window, QStringLiteral("start"));
  press(window, "Command_split");
  tabs->setCurrentIndex(0);
  camera.take(window, QStringLiteral("split"));
  QTest::mouseClick(plot, Qt::LeftButton, {}, plot->tile_rectangle(0).center().toPoint());
  QTest::mouseClick(plot, Qt::LeftButton, {}, plot->tile_rectangle(1).center().toPoint());
  press(window, "Command_create");
  camera.take(window, QStringLiteral("built"));
  tabs->setCurrentIndex(2);
  camera.take(window, QStringLiteral("log"));
  tabs->setCurrentIndex(1);
  pages->setCurrentIndex(1);
  window.findChild<ui::ToolsPage*>()->look_again(window.progress());
  camera.take(window, QStringLiteral("tools"));
  pages->setCurrentIndex(0);
  session.workspace.settings.device_image = true;
}

void take_dialogs(ui::f1& window, ui::WindowSession& session, Camera& camera) {
  Workspace& workspace = session.workspace;
  Prompts& prompts = window.prompts();
  Progress& progress = window.progress();
  for (const Page page : {Page::map, Page::options, Page::splitter, Page::folders, Page::tools,
                          Page::elevation, Page::identity, Page::device, Page::program}) {
    ui::settings dialog(workspace, prompts, progress, page, &window);
    if (page == Page::tools) {
      dialog.show();
      press(dialog, "find_tools");
    }
    camera.take_dialog(dialog, QStringLiteral("settings-%1").arg(static_cast<int>(page) + 1));
  }
  using Tool = ui::option_editor::Tool;
  ui::option_editor mkgmap(workspace, prompts, progress, Tool::mkgmap, &window);
  camera.take_dialog(mkgmap, QStringLiteral("options-mkgmap"));
  ui::option_editor splitter(workspace, prompts, progress, Tool::splitter, &window);
  camera.take_dialog(splitter, QStringLiteral("options-splitter"));
  ui::tag_keys keys(workspace.texts, prompts, &window);
  camera.take_dialog(keys, QStringLiteral("tag-keys"));
  ui::installed_maps_list maps(workspace, prompts, progress, &window);
  camera.take_dialog(maps, QStringLiteral("installed-maps"));
  ui::surplus unused(workspace, prompts, progress, &window);
  press(unused, "surplus_search");
  camera.take_dialog(unused, QStringLiteral("unused-maps"));
  ui::contours contours(workspace, prompts, &window);
  camera.take_dialog(contours, QStringLiteral("contours"));
  ui::editcontours editcontours(workspace, prompts, &window);
  camera.take_dialog(editcontours, QStringLiteral("editcontours"));
  ui::unzip unzip(workspace, prompts, &window);
  camera.take_dialog(unzip, QStringLiteral("unzip"));
  ui::merge merge(workspace, prompts, &window);
  camera.take_dialog(merge, QStringLiteral("merge"));
  ui::doctor style_doctor(workspace, prompts, &window);
  style_doctor.show();
  press(style_doctor, "doctor_all");
  camera.take_dialog(style_doctor, QStringLiteral("doctor"));
  ui::createtyp sheet(workspace, prompts, progress, &window);
  camera.take_dialog(sheet, QStringLiteral("createtyp"));
  ui::cmcolor colours(workspace.texts, &window);
  camera.take_dialog(colours, QStringLiteral("cmcolor"));
  ui::gpx2mp tracks(workspace, prompts, &window);
  camera.take_dialog(tracks, QStringLiteral("gpx2mp"));
  ui::kml2mp placemarks(workspace, prompts, &window);
  camera.take_dialog(placemarks, QStringLiteral("kml2mp"));
  ui::autoscr scripts(workspace, prompts, &window);
  camera.take_dialog(scripts, QStringLiteral("autoscr"));
  ui::about_box about(workspace, &window);
  camera.take_dialog(about, QStringLiteral("about"));
}

// As a person would: the file lies in the languages folder and is chosen there.
Status use_language(Workspace& workspace, const std::string& path) {
  const std::string name = platform::name_of(path);
  const Status copied = copy_file(path, platform::join(workspace.settings.languages_folder, name));
  return copied.ok() ? choose_language(workspace, name) : copied;
}

QSize size_from(const QStringList& arguments) {
  if (arguments.size() < 4) return usual_size;
  const QStringList parts = arguments[3].split(QLatin1Char('x'));
  return parts.size() == 2 ? QSize(parts[0].toInt(), parts[1].toInt()) : usual_size;
}

}  // namespace

int main(int count, char** arguments) {
  const QApplication application(count, arguments);
  const QStringList words = QApplication::arguments();
  if (words.size() < 3) {
    std::fprintf(stderr, "usage: ferrowen-screenshots OUTDIR light|dark [WIDTHxHEIGHT [LANGUAGE.m5l]]\n");
    return 2;
  }
  QDir().mkpath(words[1]);
  ui::apply_theme(words[2]);
  const QTemporaryDir home;
  qputenv("HOME", home.path().toUtf8());  // no Wine prefix of whoever takes the pictures
  ui::WindowSession session;
  session.open(ui::from_qt(home.path() + QStringLiteral("/ferrowen")));
  session.workspace.settings.splitter_options = "--output=o5m\r\n--max-nodes=10000";
  session.workspace.settings.device_image = true;
  session.workspace.settings.register_map = true;
  session.workspace.settings.map_name = "Faroe Islands";
  if (words.size() > 4) {
    const Status chosen = use_language(session.workspace, ui::from_qt(words[4]));
    if (!chosen.ok()) {
      std::fprintf(stderr, "%s\n", chosen.error.c_str());
      return 2;
    }
  }
  SilentPrompts prompts;
  ui::f1 window(session.workspace, &prompts);
  window.set_can_save(false);
  window.resize(size_from(words));
  window.show();
  window.first_activation();
  Camera camera(words[1], words[2]);
  take_main_window(window, session, camera);
  take_dialogs(window, session, camera);
  for (const std::string& text : prompts.texts())
    std::fprintf(stderr, "%s\n", text.c_str());
  return camera.failed() ? 1 : 0;
}
