// A converter window in a program folder of its own, with a scripted person before it.
#pragma once

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <string>

#include "base/files.hpp"
#include "ui/converter_window.hpp"
#include "ui/qt_text.hpp"
#include "ui/scripted_prompts.hpp"

namespace ferrowen::test {

template <typename Window>
class ConverterDesk {
 public:
  ConverterDesk() {
    workspace.folder = ProgramFolder(ui::from_qt(m_folder.path()));
    window = std::make_unique<Window>(workspace, prompts);
    window->show();
  }
  std::string write(const std::string& name, const std::string& bytes) const {
    std::string path = workspace.path(name);
    if (const Status written = safe_write(path, bytes); !written.ok()) qFatal("%s", written.error.c_str());
    return path;
  }
  template <typename Control>
  [[nodiscard]] Control* find(const char* name) const {
    auto* found = window->template findChild<Control*>(QLatin1String(name));
    if (found == nullptr) qFatal("no control %s", name);
    return found;
  }
  void press(const char* name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
  void tick(const char* name) const { find<QAbstractButton>(name)->click(); }
  void type(const char* name, const char* text) const {
    find<QComboBox>(name)->setFocus();
    find<QComboBox>(name)->lineEdit()->selectAll();
    QTest::keyClicks(find<QComboBox>(name)->lineEdit(), QLatin1String(text));
  }
  // Adds the file and waits until it is seen.
  void add(const std::string& path) const {
    QSignalSpy shown(window.get(), &ui::ConverterWindow::preview_shown);
    window->add_files({ui::to_qt(path)});
    if (shown.isEmpty() && !shown.wait()) qFatal("no preview");
  }
  [[nodiscard]] std::string summary() const { return ui::from_qt(find<QLabel>("Label2")->text()); }
  // Pixels of the plot in the colour that lines have.
  [[nodiscard]] int drawn_pixels() const {
    const QImage picture = find<ui::TilePlot>("mp_plot")->grab().toImage();
    const QRgb wanted = window->palette().color(QPalette::Highlight).rgb();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x)
        count += picture.pixel(x, y) == wanted ? 1 : 0;
    }
    return count;
  }

  ScriptedPrompts prompts;
  Workspace workspace;
  std::unique_ptr<Window> window;

 private:
  QTemporaryDir m_folder;
};

}  // namespace ferrowen::test
