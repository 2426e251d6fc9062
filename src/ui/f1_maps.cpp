// What becomes of built maps, from the main window: installed maps, launching their programs, the place of
// the device image.
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/device_image.hpp"
#include "pipeline/garmin_programs.hpp"
#include "ui/f1.hpp"
#include "ui/installed_maps_list.hpp"
#include "ui/qt_text.hpp"
#include "ui/surplus.hpp"

namespace ferrowen::ui {

namespace {

constexpr int place_letters = 22;  // of the image's folder that the button shows

}  // namespace

void f1::show_installed_maps() {
  if (!take_settings()) return;
  installed_maps_list(m_workspace, *m_prompts, *m_progress, this).exec();
}

void f1::show_unused_maps() {
  if (!take_settings()) return;
  surplus(m_workspace, *m_prompts, *m_progress, this).exec();
}

void f1::launch_program(const std::string& name) {
  launch(m_workspace, *m_prompts, *open_registry(m_workspace), name);
}

void f1::launch_home_port() {
  std::string& program = m_workspace.settings.home_port;
  if (!file_exists(program)) {
    const std::optional<std::string> chosen =
        m_prompts->choose_file({m_workspace.message(226), {{"EXE Files", "*.exe"}}, program, false});
    if (!chosen) return;
    program = *chosen;
    save_now();
  }
  launch_program("HomePort");
}

// The button names the program of the settings; HomePort is asked for when it is not there.
void f1::launch_chosen() {
  if (!take_settings()) return;
  const std::string name = chosen_program(m_workspace.settings);
  if (equal_ignoring_case(name, "HomePort")) return launch_home_port();
  launch_program(name);
}

// Offered only where there is something to launch.
void f1::offer_launch() {
  if (m_workspace.settings.confirmations_off ||
      launch_path(m_workspace.settings, chosen_program(m_workspace.settings)).empty())
    return;
  mapsource(m_workspace, *m_prompts, *open_registry(m_workspace));
}

void f1::show_image_places(QMenu* menu) {
  menu->clear();
  const auto add = [&](const QString& text, const std::string& folder) {
    QAction* action = menu->addAction(caption_text(text));
    action->setCheckable(true);
    action->setChecked(image_folder(m_workspace.settings) == folder);
    connect(action, &QAction::triggered, this, [this, folder] { set_image_folder(folder); });
  };
  Settings usual = m_workspace.settings;
  usual.image_folder.clear();
  add(m_binder.text(Section::labels, "image_place_usual"), image_folder(usual));
  for (const platform::Drive& drive : platform::removable_drives())
    add(to_qt(drive.name + "  (" + image_folder_on(drive) + ")"), image_folder_on(drive));
  menu->addSeparator();
  connect(menu->addAction(m_binder.text(Section::labels, "image_place_other")), &QAction::triggered, this,
          [this] {
            const std::optional<std::string> chosen = m_prompts->choose_folder(
                from_qt(m_binder.text(Section::tooltips, "image_place")), image_folder(m_workspace.settings));
            if (chosen) set_image_folder(*chosen);
          });
}

void f1::set_image_folder(const std::string& folder) {
  Settings usual = m_workspace.settings;
  usual.image_folder.clear();
  m_workspace.settings.image_folder = folder == image_folder(usual) ? "" : folder;
  show_image_place();
  save_now();
}

void f1::show_image_place() {
  const QString folder = to_qt(image_folder(m_workspace.settings));
  const int width = m_image_place->fontMetrics().averageCharWidth() * place_letters;
  m_image_place->setText(m_binder.text(Section::labels, "image_place") + QLatin1Char(' ') +
                         caption_text(m_image_place->fontMetrics().elidedText(folder, Qt::ElideLeft, width)));
  m_image_place->setToolTip(m_binder.text(Section::tooltips, "image_place") + QLatin1Char('\n') + folder);
}

}  // namespace ferrowen::ui
