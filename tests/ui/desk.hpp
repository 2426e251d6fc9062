// A main window in a program folder of its own, with a scripted person before it.
#pragma once

#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <memory>
#include <string>

#include "app/settings_file.hpp"
#include "base/files.hpp"
#include "platform/paths.hpp"
#include "ui/f1.hpp"
#include "ui/qt_text.hpp"
#include "ui/scripted_prompts.hpp"
#include "ui/window_session.hpp"

namespace ferrowen::test {

class Desk {
 public:
  // Opens the program: session, window, what the first activation does.
  void open() {
    session = std::make_unique<ui::WindowSession>();
    opened = session->open(home());
    window = std::make_unique<ui::f1>(session->workspace, &prompts);
    window->set_can_save(opened == ui::WindowSession::Opened::ready);
    window->show();
    window->first_activation();
  }
  // Closes it as a person does.
  void close() {
    window->close();
    window.reset();
    session.reset();
  }
  // Java and the jars become the stand-ins beside the test program; `mode` as in tests/stand_in/java.cpp.
  void use_stand_ins(const std::string& mode = "") {
    for (const char* jar : {"splitter.jar", "mkgmap.jar"})
      write(jar, "jar");
    write("stand-in-mode", mode);
    Settings& settings = workspace().settings;
    settings.java = platform::join(platform::folder_of(platform::executable_path()), "stand-in/java");
    settings.splitter_jar = path("splitter.jar");
    settings.mkgmap_jar = path("mkgmap.jar");
    workspace().java_version = "openjdk version 17";
  }
  std::string write(const std::string& name, const std::string& bytes) const {
    std::string target = path(name);
    std::filesystem::create_directories(std::filesystem::path(target).parent_path());
    const Status written = safe_write(target, bytes);
    if (!written.ok()) qFatal("%s", written.error.c_str());
    return target;
  }

  [[nodiscard]] std::string home() const { return ui::from_qt(m_folder.path()) + "/höme & co"; }
  [[nodiscard]] std::string path(const std::string& name) const { return home() + "/" + name; }
  [[nodiscard]] Workspace& workspace() const { return session->workspace; }
  template <typename Control>
  [[nodiscard]] Control* control(const char* name) const {
    auto* found = window->findChild<Control*>(QString::fromUtf8(name));
    if (found == nullptr) qFatal("no control %s", name);
    return found;
  }
  void press(const char* name) const { QTest::mouseClick(control<QAbstractButton>(name), Qt::LeftButton); }
  void trigger(const char* name) const { control<QAction>(name)->trigger(); }
  void type(const char* name, const QString& text) const {
    auto* line = control<QLineEdit>(name);
    line->selectAll();
    QTest::keyClicks(line, text);
  }
  void tick(const char* name, bool on) const {
    auto* box = control<QCheckBox>(name);
    if (box->isChecked() != on) box->click();
  }

  ScriptedPrompts prompts;
  std::unique_ptr<ui::WindowSession> session;
  ui::WindowSession::Opened opened = ui::WindowSession::Opened::ready;
  std::unique_ptr<ui::f1> window;

 private:
  QTemporaryDir m_folder;
};

}  // namespace ferrowen::test
