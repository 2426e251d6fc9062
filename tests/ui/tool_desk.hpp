// A tool window before a scripted person, in a program folder of its own.
#pragma once

#include <QAbstractButton>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <filesystem>
#include <string>

#include "app/settings_file.hpp"
#include "app/tools.hpp"
#include "base/files.hpp"
#include "ui/qt_text.hpp"
#include "ui/scripted_prompts.hpp"

namespace ferrowen::test {

constexpr std::size_t cell_bytes = 2884802;

struct ToolDesk {
  ToolDesk() {
    workspace.folder = ProgramFolder(home());
    workspace.settings = default_settings(home());
    find_tools(workspace.settings);
    if (!workspace.folder.create_layout().ok()) qFatal("no program folder");
    workspace.settings.hgt_folders[0] = path("h g");
    if (!make_folder(path("h g")).ok()) qFatal("no height folder");
    // Four cells, of which the sea takes one.
    workspace.tiles = {{"13224385", "", {46.1, 9.1}, {47.2, 10.2}, false}};
    write("hgt_land", "N46E009\nN46E010\nN47E009\n");
  }
  [[nodiscard]] std::string home() const { return ui::from_qt(m_folder.path()) + "/höme & co"; }
  [[nodiscard]] std::string path(const std::string& name) const { return home() + "/" + name; }
  std::string write(const std::string& name, const std::string& bytes) const {
    std::string target = path(name);
    std::filesystem::create_directories(std::filesystem::path(target).parent_path());
    if (!safe_write(target, bytes).ok()) qFatal("cannot write %s", target.c_str());
    return target;
  }
  std::string write_program(const std::string& name, const std::string& script) const {
    std::string target = write(name, script);
    std::filesystem::permissions(target, std::filesystem::perms::owner_all);
    return target;
  }
  // Zips files of the program folder with the real archiver.
  void zip(const std::string& archive, const std::string& name) const {
    QProcess process;
    process.setWorkingDirectory(ui::to_qt(home()));
    process.start(ui::to_qt(workspace.settings.seven_zip),
                  {QStringLiteral("a"), QStringLiteral("-tzip"), ui::to_qt(path(archive)), ui::to_qt(name)});
    if (!process.waitForFinished() || process.exitCode() != 0) qFatal("no archive");
  }
  template <typename Control>
  static Control* find(QWidget& window, const char* name) {
    auto* found = window.findChild<Control*>(QLatin1String(name));
    if (found == nullptr) qFatal("no control %s", name);
    return found;
  }
  static void click(QWidget& window, const char* name) {
    QTest::mouseClick(find<QAbstractButton>(window, name), Qt::LeftButton);
  }
  static void type(QWidget& window, const char* name, const QString& text) {
    auto* line = find<QLineEdit>(window, name);
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, text);
  }
  static void drop(QWidget& window, const std::string& file) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(ui::to_qt(file))});
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    // The application hands drops only to what a pointer stands over.
    static_cast<QObject&>(window).event(&event);
  }
  static void show(QWidget& window) {
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) qFatal("not shown");
    // FERROWEN_PICTURES names a folder for pictures of the windows.
    if (const QString folder = qEnvironmentVariable("FERROWEN_PICTURES"); !folder.isEmpty())
      window.grab().save(folder + QLatin1Char('/') + window.objectName() + QStringLiteral(".png"));
  }

  ScriptedPrompts prompts;
  Workspace workspace;

 private:
  QTemporaryDir m_folder;
};

}  // namespace ferrowen::test
