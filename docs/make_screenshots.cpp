// Makes the pictures of the user guide from the real windows: every window, in one theme.
// Usage: ferrowen-screenshots OUTDIR light|dark [WIDTHxHEIGHT [LANGUAGE.m5l]]
// The pictures show the program folder: FERROWEN_PICTURES_FOLDER names one that does not exist yet and is
// removed at the end, such as /home/mapper/ferrowen; else it is a temporary one. The sample map is split and
// built with the real tools, so Java, splitter and mkgmap must be installed.
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "app/language_file.hpp"
#include "base/files.hpp"
#include "picture_samples.hpp"
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
constexpr qsizetype largest_palette = 256;
const QSize usual_size(1180, 760);

// Answers Yes and shows nothing, so that the work goes on.
class SilentPrompts : public ui::HeldPrompts {
 public:
  std::vector<std::string> chosen;  // whenever files are to be chosen

  std::vector<std::string> choose_files(const FileQuestion& /*question*/) override { return chosen; }
  Answer ask(std::string_view /*text*/, Buttons /*buttons*/, Icon /*icon*/) override { return Answer::yes; }
};

// The colours of a picture by how many pixels have them, the most frequent first.
QList<std::pair<int, QRgb>> frequent_colours(const QImage& picture) {
  QHash<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      ++counts[picture.pixel(x, y)];
  QList<std::pair<int, QRgb>> colours;
  for (auto each = counts.cbegin(); each != counts.cend(); ++each)
    colours.emplaceBack(each.value(), each.key());
  std::sort(colours.begin(), colours.end(), std::greater<>());
  return colours;
}

bool is_near(QRgb one, QRgb other, int distance) {
  return std::abs(qRed(one) - qRed(other)) <= distance && std::abs(qGreen(one) - qGreen(other)) <= distance &&
         std::abs(qBlue(one) - qBlue(other)) <= distance;
}

// Colours of which one is near to each colour of the picture; more than a palette holds when there are too
// many.
QList<QRgb> near_colours(const QList<std::pair<int, QRgb>>& colours, int distance) {
  QList<QRgb> palette;
  for (const auto& [count, colour] : colours) {
    const bool is_known = std::any_of(palette.begin(), palette.end(),
                                      [&](QRgb known) { return is_near(known, colour, distance); });
    if (!is_known) palette << colour;
    if (palette.size() > largest_palette) break;
  }
  return palette;
}

// A palette halves the file, and cannot be told from the original when every colour has one close by.
QImage with_palette(const QImage& picture) {
  constexpr int farthest = 10;
  const QList<std::pair<int, QRgb>> colours = frequent_colours(picture);
  for (int distance = 0; distance <= farthest; distance += 2) {
    const QList<QRgb> palette = near_colours(colours, distance);
    if (palette.size() <= largest_palette)
      return picture.convertToFormat(QImage::Format_Indexed8, palette, Qt::ThresholdDither);
  }
  return picture;
}

class Camera {
 public:
  Camera(QString folder, QString theme) : m_folder(std::move(folder)), m_theme(std::move(theme)) {}

  void take(QWidget& window, const QString& name) {
    QTest::qWait(settle_milliseconds);
    const QString path =
        m_folder + QLatin1Char('/') + name + QLatin1Char('-') + m_theme + QStringLiteral(".png");
    const QImage picture = with_palette(window.grab().toImage().convertToFormat(QImage::Format_RGB32));
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

template <typename Window>
void take_converter(Workspace& workspace, SilentPrompts& prompts, ui::f1& window, const std::string& file,
                    Camera& camera, const char* name) {
  Window converter(workspace, prompts, &window);
  converter.add_files({to_qt(file)});
  camera.take_dialog(converter, QLatin1String(name));
}

void take_doctor(Workspace& workspace, Prompts& prompts, ui::f1& window, Camera& camera) {
  ui::doctor style_doctor(workspace, prompts, &window);
  style_doctor.show();
  press(style_doctor, "doctor_all");
  if (auto* list = style_doctor.findChild<QTableView*>(); list != nullptr) list->selectRow(1);
  camera.take_dialog(style_doctor, QStringLiteral("doctor"));
}

void take_dialogs(ui::f1& window, ui::WindowSession& session, SilentPrompts& answers,
                  const PictureSamples& samples, Camera& camera) {
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
  answers.chosen = {samples.map, samples.contours};
  press(merge, "Command1");
  camera.take_dialog(merge, QStringLiteral("merge"));
  take_doctor(workspace, prompts, window, camera);
  ui::createtyp sheet(workspace, prompts, progress, &window);
  camera.take_dialog(sheet, QStringLiteral("createtyp"));
  ui::cmcolor colours(workspace.texts, &window);
  camera.take_dialog(colours, QStringLiteral("cmcolor"));
  take_converter<ui::gpx2mp>(workspace, answers, window, samples.track, camera, "gpx2mp");
  take_converter<ui::kml2mp>(workspace, answers, window, samples.placemarks, camera, "kml2mp");
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

// Where the program folder of the pictures lies; gone at the end.
class PictureFolder {
 public:
  PictureFolder() : m_path(qEnvironmentVariable("FERROWEN_PICTURES_FOLDER")) {
    m_is_mine = !m_path.isEmpty() && !QFileInfo::exists(m_path) && QDir().mkpath(m_path);
    if (!m_is_mine) m_path = m_temporary.path() + QStringLiteral("/ferrowen");
  }
  ~PictureFolder() {
    if (m_is_mine) QDir(m_path).removeRecursively();
  }
  PictureFolder(const PictureFolder&) = delete;
  PictureFolder& operator=(const PictureFolder&) = delete;
  [[nodiscard]] std::string path() const { return ui::from_qt(m_path); }

 private:
  QTemporaryDir m_temporary;
  QString m_path;
  bool m_is_mine = false;
};

Status prepare(ui::WindowSession& session, const QStringList& words) {
  Settings& settings = session.workspace.settings;
  settings.splitter_options = "--output=o5m\r\n--max-nodes=10000";
  settings.device_image = true;
  settings.register_map = true;
  settings.map_name = "Faroe Islands";
  return words.size() > 4 ? use_language(session.workspace, ui::from_qt(words[4])) : Status{};
}

Status take_all(ui::WindowSession& session, const QStringList& words, Camera& camera) {
  SilentPrompts prompts;
  const std::string contour_tool = session.workspace.settings.contour_tool;
  ui::f1 window(session.workspace, &prompts);
  window.set_can_save(false);
  window.resize(size_from(words));
  window.show();
  window.first_activation();
  take_main_window(window, session, camera);
  const Result<PictureSamples> samples = make_picture_samples(session.workspace, contour_tool);
  if (!samples.ok()) return {samples.error};
  window.show_record();
  take_dialogs(window, session, prompts, samples.value, camera);
  for (const std::string& text : prompts.texts())
    std::fprintf(stderr, "%s\n", text.c_str());
  return camera.failed() ? Status{"A picture could not be written."} : Status{};
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
  Camera camera(QDir().absoluteFilePath(words[1]), words[2]);
  ui::apply_theme(words[2]);
  const PictureFolder folder;
  // No Wine prefix of whoever takes the pictures.
  qputenv("HOME", QFileInfo(to_qt(folder.path())).path().toUtf8());
  ui::WindowSession session;
  session.open(folder.path());
  Status taken = prepare(session, words);
  QDir::setCurrent(to_qt(folder.path()));
  if (taken.ok()) taken = take_all(session, words, camera);
  if (taken.ok()) return 0;
  std::fprintf(stderr, "%s\n", taken.error.c_str());
  return 1;
}
