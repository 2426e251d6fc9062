// The main window's part in heights and contours: the cells under the tiles, and "Clip Contours" with the
// real osmconvert.
#include <QLabel>

#include "app/tools.hpp"
#include "ui/desk.hpp"
#include "ui/tile_plot.hpp"

using namespace ferrowen;
using ferrowen::test::Desk;
using Texts = std::vector<std::string>;

namespace {

constexpr std::size_t cell_bytes = 2884802;

// Tiles over four cells: one has heights, two have none, one is sea.
void open_area(Desk& desk) {
  desk.open();
  desk.write("hgt_land", "N46E009\nN46E010\nN47E009\n");
  desk.write("h/N46E009.hgt", std::string(cell_bytes, '\0'));
  Settings& settings = desk.workspace().settings;
  find_tools(settings);
  settings.hgt_folders[0] = desk.path("h");
  settings.clip_folders[0] = desk.path("clips");
  desk.workspace().land_list.clear();
  desk.workspace().tiles = {{"13224385", "", {46.1, 9.1}, {47.2, 10.2}, false}};
  desk.window->show_record();
  auto* plot = desk.control<ui::TilePlot>("lb1");
  plot->set_tiles(desk.workspace().tiles, true);
  plot->zoom_out();
  plot->zoom_out();
  desk.prompts.forget();
}

struct Colours {
  int red = 0, green = 0, blue = 0;
};

// Pixels with a tinge, outside of the tile.
Colours colours_of(const Desk& desk) {
  auto* plot = desk.control<ui::TilePlot>("lb1");
  const QImage image = plot->grab().toImage();
  Colours count;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (plot->tile_rectangle(0).adjusted(-3, -3, 3, 3).contains(QPointF(x, y))) continue;
      const QColor pixel = image.pixelColor(x, y);
      constexpr int tinge = 20;
      count.red += pixel.red() > pixel.blue() + tinge && pixel.red() > pixel.green() + tinge ? 1 : 0;
      count.green += pixel.green() > pixel.red() + tinge && pixel.green() > pixel.blue() + tinge ? 1 : 0;
      count.blue += pixel.blue() > pixel.red() + tinge && pixel.blue() > pixel.green() + tinge ? 1 : 0;
    }
  }
  return count;
}

}  // namespace

class TestClipping : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void cells_lie_under_the_tiles();
  void contours_are_clipped();
};

void TestClipping::cells_lie_under_the_tiles() {
  Desk desk;
  open_area(desk);
  const Colours without = colours_of(desk);
  QVERIFY(without.red + without.green < 20);
  desk.tick("dem", true);
  const Colours with = colours_of(desk);
  QVERIFY(with.green > 500);
  QVERIFY(with.blue > 500);
  QVERIFY(with.red > 200);
  if (const QString folder = qEnvironmentVariable("FERROWEN_PICTURES"); !folder.isEmpty())
    desk.window->grab().save(folder + QStringLiteral("/f1-cells.png"));
  for (const char* cell : {"h/N46E010.zip", "h/N47E009.hgt"})
    desk.write(cell, "no heights");
  desk.tick("dem", false);
  desk.tick("dem", true);
  QVERIFY(colours_of(desk).red > 200);  // damaged ones are missing
  QVERIFY(desk.prompts.texts().empty());
  desk.tick("dem", false);
  desk.workspace().settings.hgt_folders[0] = desk.path("gone");
  desk.window->show_record();
  desk.tick("dem", true);
  QCOMPARE(desk.prompts.texts(), (Texts{"Please locate hgt folder for DEM"}));
  desk.close();
}

void TestClipping::contours_are_clipped() {
  Desk desk;
  open_area(desk);
  desk.tick("contours", true);
  desk.tick("clip-contours", true);
  auto* label = desk.control<QLabel>("Label23");
  QCOMPARE(label->text(), QStringLiteral("Existing Clipped Contours: 0/3"));
  QCOMPARE(desk.control<QPushButton>("clip1tile")->text().remove(QLatin1Char('&')),
           QStringLiteral("Clip Contours"));
  desk.press("clip1tile");
  QCOMPARE(desk.prompts.texts(),
           (Texts{"\r\n\r\nClip path : " + desk.path("clips") + " ?\r\n\r\n --> Contours,Clip Settings"}));
  if (!make_folder(desk.path("clips")).ok()) qFatal("no folder");
  for (const char* cell : {"N46E009", "N46E010", "N47E009"})
    desk.write("h/" + std::string(cell) + ".osm",
               "<osm version='0.6'><node id='1' version='1' lat='46.5' lon='9.5'/></osm>\n");
  desk.prompts.forget();
  desk.prompts.answers = {Answer::yes};
  desk.press("clip1tile");
  QCOMPARE(desk.prompts.texts(), (Texts{"Path : " + desk.path("clips") + "\r\nClip file(s)?"}));
  QVERIFY(file_has_content(desk.path("clips/N46E009clp.pbf")));
  QCOMPARE(label->text(), QStringLiteral("Existing Clipped Contours: 3/3"));
  QVERIFY(!desk.workspace().tiles[0].selected);
  desk.workspace().tiles[0].selected = true;
  desk.prompts.forget();
  desk.prompts.answers = {Answer::yes};
  desk.press("clip1tile");
  QCOMPARE(desk.prompts.texts(), (Texts{"Path : " + desk.path("clips") + "\r\nClip file(s)?"}));
  QVERIFY(desk.workspace().tiles[0].selected);
  QVERIFY(!desk.window->busy());
  desk.close();
}

QTEST_MAIN(TestClipping)
#include "test_clipping.moc"
