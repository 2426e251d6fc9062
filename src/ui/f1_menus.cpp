// The main window's menus.
#include <QAction>
#include <QMenuBar>
#include <ctime>

#include "app/argument_backup.hpp"
#include "app/language_file.hpp"
#include "app/own_script.hpp"
#include "app/recent_files.hpp"
#include "app/settings_file.hpp"
#include "app/style_backup.hpp"
#include "app/version.hpp"
#include "base/files.hpp"
#include "pipeline/build_plan.hpp"
#include "pipeline/garmin_programs.hpp"
#include "pipeline/installer.hpp"
#include "pipeline/map_archive.hpp"
#include "pipeline/previous_map.hpp"
#include "pipeline/registration_repair.hpp"
#include "pipeline/tiles/last_split.hpp"
#include "ui/about_box.hpp"
#include "ui/cmcolor.hpp"
#include "ui/contours.hpp"
#include "ui/createtyp.hpp"
#include "ui/doctor.hpp"
#include "ui/editcontours.hpp"
#include "ui/f1.hpp"
#include "ui/gpx2mp.hpp"
#include "ui/kml2mp.hpp"
#include "ui/merge.hpp"
#include "ui/qt_text.hpp"
#include "ui/tag_keys.hpp"
#include "ui/unzip.hpp"

namespace ferrowen::ui {

// The tools work on the record and the selection as they stand now.
template <typename Window>
void f1::show_tool() {
  if (!take_settings()) return;
  Window(m_workspace, *m_prompts, this).exec();
  show_record();
  show_heights();
}

QAction* f1::entry(QMenu* menu, const char* key, const Work& work, const QKeySequence& shortcut) {
  QAction* action = menu->addAction(QString());
  action->setObjectName(QString::fromUtf8(key));
  action->setShortcut(shortcut);
  m_binder.caption(action, key);
  connect(action, &QAction::triggered, this, work);
  return action;
}

QAction* f1::stage_entry(QMenu* menu, const char* key, const Work& work, const QKeySequence& shortcut) {
  QAction* action = entry(
      menu, key, [this, work] { run_stage(work); }, shortcut);
  m_idle_only_actions.push_back(action);
  return action;
}

void f1::make_menus() {
  const auto menu = [this](const char* key) {
    QMenu* made = menuBar()->addMenu(QString());
    made->setObjectName(QString::fromUtf8(key));
    m_binder.caption(made, key);
    return made;
  };
  fill_file_menu(menu("mf"));
  fill_settings_menu(menu("mst"));
  fill_contour_menu(menu("mcontours"));
  fill_map_menu(menu("mmaps"));
  fill_tools_menu(menu("mtools"));
  m_languages = menu("mlan");
  m_idle_only_actions.push_back(m_languages->menuAction());
  connect(m_languages, &QMenu::aboutToShow, this, &f1::show_languages);
  fill_help_menu(menu("mhelp"));
}

void f1::fill_file_menu(QMenu* menu) {
  QAction* open = entry(
      menu, "mf_open", [this] { choose_input(); }, QKeySequence::Open);
  m_recent = menu->addMenu(QString());
  m_recent->setObjectName(QStringLiteral("mf_recent"));
  m_binder.caption(m_recent, "mf_recent");
  connect(m_recent, &QMenu::aboutToShow, this, &f1::show_recent_files);
  QAction* sample =
      entry(menu, "mf_sample", [this] { open_input(to_qt(m_workspace.path(file_name::sample_map))); });
  m_idle_only_actions.insert(m_idle_only_actions.end(), {open, m_recent->menuAction(), sample});
  stage_entry(menu, "mf_last_split", [this] {
    if (!check_last_split(m_workspace, *m_prompts)) return;
    show_record();
    show_tiles(true);
  });
  menu->addSeparator();
  stage_entry(menu, "mf_save_selection", [this] {
    const Status saved = save_selection(m_workspace);
    m_prompts->tell(saved.ok() ? m_workspace.message(208) + std::to_string(selected_count(m_workspace.tiles))
                               : saved.error,
                    saved.ok() ? Icon::information : Icon::warning);
  });
  stage_entry(menu, "mf_load_selection", [this] { load_selection(); });
  stage_entry(menu, "mf_save_arguments", [this] { save_arguments(); });
  stage_entry(menu, "mf_load_arguments", [this] { load_arguments(); });
  stage_entry(menu, "mf_backup_arguments",
              [this] { back_up_arguments(m_workspace, *m_prompts, std::time(nullptr)); });
  stage_entry(menu, "mf_restore_arguments", [this] {
    restore_arguments(m_workspace, *m_prompts);
    reload_tiles();
  });
  menu->addSeparator();
  stage_entry(menu, "mf_archive",
              [this] { archive_map(m_workspace, *m_prompts, *m_progress, std::time(nullptr)); });
  // The text has always named its key itself.
  QAction* remove = stage_entry(
      menu, "mf_remove_previous",
      [this] {
        if (remove_previous_map(m_workspace, *m_prompts)) m_built_name.clear();
        show_built_name();
      },
      QKeySequence(Qt::CTRL | Qt::Key_R));
  m_binder.custom([this, remove] { remove->setText(caption_text(to_qt(m_workspace.message(21)))); });
  stage_entry(menu, "mf_style_backup",
              [this] { back_up_styles(m_workspace, *m_prompts, *m_progress, {}, std::time(nullptr)); });
  menu->addSeparator();
  entry(
      menu, "mf_quit", [this] { close(); }, QKeySequence::Quit);
}

void f1::fill_settings_menu(QMenu* menu) {
  stage_entry(
      menu, "mst_settings", [this] { show_settings_window(); }, QKeySequence(Qt::CTRL | Qt::Key_Comma));
  stage_entry(
      menu, "mst_options", [this] { show_option_editor(false); }, QKeySequence(Qt::CTRL | Qt::Key_E));
  stage_entry(menu, "mst_splitter_options", [this] { show_option_editor(true); });
  menu->addSeparator();
  stage_entry(menu, "mst_backup", [this] {
    if (take_settings()) back_up_settings(m_workspace, *m_prompts);
  });
  stage_entry(menu, "mst_restore", [this] { restored(restore_settings(m_workspace, *m_prompts)); });
  stage_entry(menu, "mst_reset", [this] { restored(reset_settings(m_workspace, *m_prompts)); });
}

void f1::show_contour_folders() { show_tool<contours>(); }

void f1::fill_contour_menu(QMenu* menu) {
  stage_entry(menu, "mcontours_settings", [this] { show_settings_window(Page::elevation); });
  stage_entry(menu, "mcontours_folders", [this] { show_contour_folders(); });
  menu->addSeparator();
  stage_entry(menu, "mcontours_make", [this] { show_tool<editcontours>(); });
  stage_entry(menu, "mcontours_clip", [this] { clip_contours(); });
  menu->addSeparator();
  stage_entry(menu, "mcontours_unzip", [this] { show_tool<unzip>(); });
  stage_entry(menu, "mcontours_merge", [this] { show_tool<merge>(); });
}

void f1::fill_map_menu(QMenu* menu) {
  entry(menu, "mmaps_output", [this] { open_path(build_output_folder(m_workspace.settings)); });
  entry(menu, "mmaps_image", [this] { open_path(m_workspace.settings.gmapsupp_folder); });
  menu->addSeparator();
  stage_entry(
      menu, "mmaps_installed", [this] { show_installed_maps(); }, QKeySequence(Qt::CTRL | Qt::Key_I));
  stage_entry(menu, "mmaps_unused", [this] { show_unused_maps(); });
  menu->addSeparator();
  entry(menu, "mmaps_launch_basecamp", [this] { launch_program("Basecamp"); });
  entry(menu, "mmaps_launch_mapsource", [this] { launch_program("Mapsource"); });
  entry(menu, "mmaps_launch_homeport", [this] { launch_home_port(); });
  // The Garmin programs stand above; a viewer that is not here is of no use to anybody.
  for (const std::string& name : launchable_programs()) {
    const bool has_entry = name == "Basecamp" || name == "Mapsource" || name == "HomePort";
    if (has_entry || launch_path(m_workspace.settings, name).empty()) continue;
    QAction* action = menu->addAction(QString());
    m_binder.custom([this, action, name] { action->setText(m_binder.said("Launch " + name)); });
    connect(action, &QAction::triggered, this, [this, name] { launch_program(name); });
  }
}

template <typename Converter>
void f1::show_converter() {
  if (!take_settings()) return;
  Converter window(m_workspace, *m_prompts, this);
  window.exec();
  show_record();
  if (!window.file_to_build().isEmpty()) open_input(window.file_to_build());
}

void f1::fill_tools_menu(QMenu* menu) {
  stage_entry(menu, "mtools_own_script", [this] {
    if (const std::string path = own_script_for_editing(m_workspace, *m_prompts); !path.empty())
      edit_text(to_qt(path));
  });
  entry(menu, "mtools_last_run", [this] { view_text(to_qt(m_workspace.path(file_name::last_run))); });
  menu->addSeparator();
  // The window comes first; a script that it is closed with runs behind it.
  m_idle_only_actions.push_back(entry(menu, "mtools_scripts", [this] { show_scripts(); }));
  stage_entry(menu, "mtools_installer", [this] {
    if (take_settings()) creatensis(m_workspace, *m_prompts, *m_progress);
  });
  stage_entry(menu, "mtools_fix_registry", [this] {
    if (take_settings())
      fix_registry_problem(m_workspace, *m_prompts, *m_progress, *open_registry(m_workspace));
  });
  menu->addSeparator();
  entry(
      menu, "mtools_log",
      [this] {
        m_tabs->setCurrentWidget(m_log);
        m_log->show_log(LogFile::mkgmap_log);
      },
      QKeySequence(Qt::CTRL | Qt::Key_L));
  entry(menu, "mtools_errors", [this] {
    m_tabs->setCurrentWidget(m_log);
    m_log->show_log(LogFile::error_stream);
  });
  menu->addSeparator();
  stage_entry(menu, "mtools_doctor", [this] {
    if (take_settings()) doctor(m_workspace, *m_prompts, this).exec();
  });
  // Not a stage of their own: what comes of them is opened like any other map file.
  for (QAction* action : {entry(menu, "mtools_gpx2mp", [this] { show_converter<gpx2mp>(); }),
                          entry(menu, "mtools_kml2mp", [this] { show_converter<kml2mp>(); })})
    m_idle_only_actions.push_back(action);
  menu->addSeparator();
  entry(menu, "mtools_tags", [this] { tag_keys(m_workspace.texts, *m_prompts, this).exec(); });
  stage_entry(menu, "mtools_typ", [this] { createtyp(m_workspace, *m_prompts, *m_progress, this).exec(); });
  entry(menu, "mtools_colours", [this] { cmcolor(m_workspace.texts, this).exec(); });
  stage_entry(menu, "mtools_get", [this] {
    m_tools_page->look_again(*m_progress);
    m_stack->setCurrentWidget(m_tools_page);
  });
}

void f1::fill_help_menu(QMenu* menu) {
  entry(
      menu, "mhelp_guide", [this] { open_guide(); }, QKeySequence::HelpContents);
  stage_entry(menu, "mhelp_version", [this] { show_mkgmap_version(); });
  stage_entry(menu, "mhelp_java", [this] {
    query_java();
    m_prompts->tell(m_workspace.java_version);
  });
  menu->addSeparator();
  entry(menu, "mhelp_update", [this] { open_address(project_page); });
  entry(menu, "mhelp_about", [this] { about_box(m_workspace, this).exec(); });
}

void f1::show_recent_files() {
  m_recent->clear();
  for (const std::string& path : recent_files(m_workspace.settings)) {
    QAction* action = m_recent->addAction(caption_text(to_qt(path)));
    connect(action, &QAction::triggered, this, [this, path] { open_input(to_qt(path)); });
  }
  if (m_recent->isEmpty())
    m_recent->addAction(m_binder.text(Section::labels, "no_recent"))->setEnabled(false);
}

void f1::show_languages() {
  m_languages->clear();
  delete m_language_group;
  m_language_group = new QActionGroup(m_languages);
  const auto add = [this](const QString& name, const std::string& file) {
    QAction* action = m_languages->addAction(caption_text(name));
    action->setCheckable(true);
    action->setChecked(file == m_workspace.settings.language);
    m_language_group->addAction(action);
    connect(action, &QAction::triggered, this, [this, file] { choose_language(to_qt(file)); });
  };
  add(QStringLiteral("English"), "");
  for (const Language& language : loadlanguages(m_workspace))
    add(to_qt(language.display_name), language.file);
  m_languages->addSeparator();
  // Made anew each time, so the binder, which keeps what it is given, does not get it.
  connect(m_languages->addAction(m_binder.text(Section::menus, "mlan_template")), &QAction::triggered, this,
          &f1::write_template);
}

}  // namespace ferrowen::ui
