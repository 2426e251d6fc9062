// How the main window behaves under load; bench/run_bench.py puts the numbers into its table.
//   bench-window first-paint     ends as soon as the main window has been painted once
//   bench-window bare            the same with an empty window, for comparison
//   bench-window tiles           2,000 tiles: load, first draw, then zooming, panning and selecting
//   bench-window output          10 MB of tool output in pieces of 256 bytes through the console panel
// One JSON object per run. A pause is the longest time between two beats of a 5 ms timer.
#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"
#include "ui/f1.hpp"
#include "ui/held_prompts.hpp"
#include "ui/qt_text.hpp"
#include "ui/window_session.hpp"

namespace {

using namespace ferrowen;

constexpr int tile_rows = 40;
constexpr int tile_columns = 50;
constexpr int beat_milliseconds = 5;
constexpr int rounds = 30;
constexpr std::size_t output_bytes = 10U << 20U;

class Heart {
 public:
  Heart() {
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { beat(); });
    m_timer.start(beat_milliseconds);
    m_clock.start();
  }
  void reset() {
    m_longest = 0;
    m_clock.restart();
  }
  [[nodiscard]] double longest_milliseconds() {
    beat();
    return m_longest;
  }

 private:
  void beat() {
    m_longest = std::max(m_longest, static_cast<double>(m_clock.nsecsElapsed()) / 1e6), m_clock.restart();
  }
  QTimer m_timer;
  QElapsedTimer m_clock;
  double m_longest = 0;
};

// areas.list, template.args and tiles of a split into 2,000, over the middle of Europe.
void write_split(const std::string& folder) {
  std::filesystem::create_directories(folder);
  std::ofstream areas(folder + "/areas.list");
  std::ofstream blocks(folder + "/template.args");
  areas << "# List of areas\n# Generated Sat Nov 21 10:00:00 CET 2026\n#\n";
  constexpr long step = 16384;
  for (long index = 0; index < tile_rows * tile_columns; ++index) {
    const long south = 2000000 + index / tile_columns * step;
    const long west = 200000 + index % tile_columns * step;
    const long number = 13224385 + index;
    areas << number << ": " << south << "," << west << " to " << south + step << "," << west + step << "\n";
    blocks << "mapname: " << number << "\ndescription: Tile " << number << "\ninput-file: " << number
           << ".o5m\n\n";
    std::ofstream(folder + "/" + std::to_string(number) + ".o5m") << "tile";
  }
}

struct Stage {
  explicit Stage(const QTemporaryDir& folder) : home(ui::from_qt(folder.path()) + "/home") {
    session.open(home);
    window = std::make_unique<ui::f1>(session.workspace, &prompts);
    window->set_can_save(false);
    window->show();
    QTest::qWait(300);
  }
  std::string home;
  ui::WindowSession session;
  ui::HeldPrompts prompts;
  std::unique_ptr<ui::f1> window;
};

int first_paint() {
  const QTemporaryDir folder;
  ui::WindowSession session;
  session.open(ui::from_qt(folder.path()) + "/home");
  ui::HeldPrompts prompts;
  ui::f1 window(session.workspace, &prompts);
  window.set_can_save(false);
  window.show();
  // The first event that is handled after the paint events of the shown window.
  QTimer::singleShot(0, [] { QApplication::quit(); });
  return QApplication::exec();
}

int bare() {
  QMainWindow window;
  window.resize(1180, 760);
  window.show();
  QTimer::singleShot(0, [] { QApplication::quit(); });
  return QApplication::exec();
}

int tiles() {
  const QTemporaryDir folder;
  Stage stage(folder);
  write_split(split_folder(stage.session.workspace));
  Settings& settings = stage.session.workspace.settings;
  settings.last_split_input = settings.input = ui::from_qt(QApplication::applicationFilePath());
  auto* plot = stage.window->findChild<ui::TilePlot*>();
  QElapsedTimer clock;
  clock.start();
  set_splitterfiles(stage.session.workspace, stage.prompts);
  const double load = static_cast<double>(clock.nsecsElapsed()) / 1e6;
  stage.window->first_activation();
  clock.restart();
  plot->set_tiles(stage.session.workspace.tiles, true);
  plot->repaint();
  const double draw = static_cast<double>(clock.nsecsElapsed()) / 1e6;
  Heart heart;
  QTest::qWait(100);
  heart.reset();
  for (int round = 0; round < rounds; ++round) {
    round % 2 == 0 ? plot->zoom_in() : plot->zoom_out();
    QTest::qWait(10);
    const QPoint at = plot->rect().center() + QPoint(7 * round % 100, 5 * round % 80);
    QTest::mousePress(plot, Qt::LeftButton, {}, at);
    QTest::mouseMove(plot, at + QPoint(90, 70));
    QTest::mouseRelease(plot, Qt::LeftButton, {}, at + QPoint(90, 70));
    QTest::mouseClick(plot, Qt::LeftButton, Qt::ShiftModifier, plot->rect().center());
    plot->invert_selection();
    QTest::qWait(10);
  }
  std::printf("{\"tiles\": %zu, \"load_ms\": %.1f, \"draw_ms\": %.1f, \"pause_ms\": %.1f}\n",
              plot->tiles().size(), load, draw, heart.longest_milliseconds());
  return plot->tiles().size() == static_cast<std::size_t>(tile_rows * tile_columns) ? 0 : 1;
}

int output() {
  const QTemporaryDir folder;
  Stage stage(folder);
  const std::string piece =
      std::string(70, 'x') + "\n" + std::string(90, 'y') + "\r\n" + std::string(91, 'z') + "\n";
  Heart heart;
  QTest::qWait(100);
  heart.reset();
  QElapsedTimer clock;
  clock.start();
  std::size_t sent = 0;
  while (sent < output_bytes) {
    for (int burst = 0; burst < 64; ++burst, sent += piece.size())
      stage.window->progress().output(piece);
    stage.window->progress().process_events();
  }
  QTest::qWait(500);
  std::printf("{\"bytes\": %zu, \"seconds\": %.2f, \"pause_ms\": %.1f}\n", sent,
              static_cast<double>(clock.elapsed()) / 1e3, heart.longest_milliseconds());
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  const QApplication application(count, arguments);
  const QString what = QApplication::arguments().value(1);
  if (what == QStringLiteral("first-paint")) return first_paint();
  if (what == QStringLiteral("bare")) return bare();
  if (what == QStringLiteral("tiles")) return tiles();
  if (what == QStringLiteral("output")) return output();
  std::fprintf(stderr, "usage: bench-window first-paint|bare|tiles|output\n");
  return 2;
}
