// What the main window's buttons and menu entries do: collect, call a stage, show.
#include <QApplication>
#include <QScopeGuard>
#include <algorithm>
#include <ctime>

#include "app/handed_over.hpp"
#include "app/language_file.hpp"
#include "app/recent_files.hpp"
#include "app/save_name.hpp"
#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "app/tool_query.hpp"
#include "automation/auto_run.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/clipped_contours.hpp"
#include "elevation/contour_clip.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/hgt_coverage.hpp"
#include "pipeline/build.hpp"
#include "pipeline/identifiers.hpp"
#include "pipeline/previous_map.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/tiles/input_file.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/desktop.hpp"
#include "platform/paths.hpp"
#include "ui/autoscr.hpp"
#include "ui/f1.hpp"
#include "ui/guide_window.hpp"
#include "ui/option_editor.hpp"
#include "ui/qt_text.hpp"
#include "ui/settings.hpp"
#include "ui/text_window.hpp"

namespace ferrowen::ui {

namespace {

constexpr std::size_t detail_bytes = 20000;  // of each file behind "Details"

std::string tail(const std::string& text) {
  if (text.size() <= detail_bytes) return text;
  return "[...]" + text.substr(text.find('\n', text.size() - detail_bytes));
}

bool is_script(const QString& path) { return path.endsWith(QStringLiteral(".auto"), Qt::CaseInsensitive); }

}  // namespace

// One stage at a time: the stages pump the events themselves, so a second one could otherwise begin inside
// the first.
void f1::run_stage(const Work& work) {
  if (m_busy) return;
  set_busy(true);
  m_progress->clear_stop();
  work();
  m_console->flush();
  set_busy(false);
  Q_EMIT work_ended();
  if (m_close_when_done) QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

void f1::set_busy(bool busy) {
  // A control that is switched off loses the focus for good.
  if (busy) m_focus_before = focusWidget();
  m_busy = busy;
  for (QWidget* widget : m_idle_only)
    widget->setEnabled(!busy);
  for (QAction* action : m_idle_only_actions)
    action->setEnabled(!busy);
  m_stop->setEnabled(busy);
  if (!busy && m_focus_before != nullptr) m_focus_before->setFocus();
}

// Nothing of an earlier run is shown beside a new input.
void f1::clear_outcome() {
  m_built_name.clear();
  m_open_folder->setVisible(false);
  m_status->clear();
  m_progress->begin();
}

void f1::show_outcome(StageResult result, const char* failed) {
  if (result == StageResult::cancelled) m_status->setText(to_qt(m_workspace.message(148)));
  if (result == StageResult::failed) m_status->setText(m_binder.text(Section::labels, failed));
  if (result == StageResult::stopped) m_status->setText(m_binder.text(Section::labels, "stopped"));
}

void f1::choose_input() {
  m_input->set_title(m_binder.text(Section::commands, "choose_input"));
  m_input->browse();
}

void f1::input_edited() {
  if (m_busy) return;
  open_input(m_input->text());
}

void f1::open_input(const QString& path) {
  if (m_busy) {
    // Says that one is running already.
    if (is_script(path) && m_workspace.script_running)
      static_cast<void>(script_is_wanted(m_workspace, *m_prompts, from_qt(path)));
    return;
  }
  if (is_script(path)) {
    m_input->set_text(to_qt(m_workspace.settings.input));
    return start_script(path);
  }
  const std::string chosen(trim(from_qt(path)));
  if (folder_exists(chosen)) {
    const Status folder = check_input(chosen, m_workspace.messages);
    m_prompts->tell(folder.error, Icon::warning);
    m_input->set_text(to_qt(m_workspace.settings.input));
    return;
  }
  if (!take_settings()) return;
  m_workspace.settings.input = chosen;
  if (file_exists(m_workspace.settings.input))
    add_recent_file(m_workspace.settings, m_workspace.settings.input);
  clear_outcome();
  reload_tiles();
  show_record();
}

void f1::open_handed_over() {
  if (m_busy || QApplication::activeModalWidget() != nullptr) return;
  const std::string file = take_handed_over(m_workspace.folder);
  if (file.empty()) return;
  setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  activateWindow();
  open_input(to_qt(file));
}

void f1::reload_tiles() {
  load_tiles_of_input(m_workspace, *m_prompts);
  show_state();
  show_tiles(true);
}

void f1::split_map() {
  if (!take_settings()) return;
  run_stage([this] {
    m_progress->begin();
    m_command->clear();
    m_tabs->setCurrentWidget(m_console);
    const StageResult result = start_split(m_workspace, *m_prompts, *m_progress);
    show_record();
    show_tiles(result == StageResult::done);
    show_outcome(result, "split_failed");
    save_now();
  });
}

void f1::create_map() {
  if (m_busy || !take_settings()) return;
  const Collect collect = build_services(*m_prompts, *m_progress).collect_registered;
  if (!confirm_new_map(m_workspace, *m_prompts, from_qt(m_built_name), collect)) return;
  show_record();
  run_stage([this] {
    m_progress->begin();
    m_tabs->setCurrentWidget(m_console);
    m_open_folder->setVisible(false);
    m_console->clear_all();
    const BuildReport report = create_map_stage();
    show_record();
    show_outcome(report.result, "failed");
    save_now();
    if (!report.registered_folder.empty()) offer_launch();
  });
}

BuildReport f1::create_map_stage() {
  const BuildServices services = build_services(*m_prompts, *m_progress);
  BuildReport report = ferrowen::create_map(m_workspace, *m_prompts, *m_progress, services);
  if (!report.built) return report;
  const bool registered = !report.registered_folder.empty();
  m_built_name = registered ? QString() : to_qt(m_workspace.settings.map_name);
  m_progress->fraction(1);
  m_open_folder->setVisible(true);
  std::string text = m_workspace.message(96) + ":";
  for (const MadeFile& file : report.files)
    text += "\r\n" + file.path;
  m_console->add("\r\n" + text + "\r\n");
  m_status->setText(m_status->text() + QLatin1Char('\n') + to_qt(m_workspace.message(96)) + QLatin1Char(' ') +
                    QString::number(report.files.size()));
  return report;
}

void f1::show_scripts() {
  if (!take_settings()) return;
  autoscr window(m_workspace, *m_prompts, this);
  window.exec();
  if (!window.script_to_run().isEmpty()) start_script(window.script_to_run());
}

void f1::start_script(const QString& path) {
  if (!take_settings() || !script_is_wanted(m_workspace, *m_prompts, from_qt(path))) return;
  run_stage([this, path] {
    m_progress->begin();
    m_tabs->setCurrentWidget(m_console);
    m_open_folder->setVisible(false);
    m_console->clear_all();
    m_status->setText(m_binder.text(Section::labels, "script_running").arg(path));
    const AutoReport report = run_auto_script(m_workspace, *m_progress, from_qt(path));
    m_console->add("\r\n" + with_crlf(report_text(report)));
    if (report.build.built) m_open_folder->setVisible(true);
    reload_tiles();
    show_record();
    save_now();
    const bool good = report.result == StageResult::done && report.problems.empty();
    m_status->setText(m_binder.said(trim(summary_text({report}))));
    m_prompts->tell(with_crlf(report_text(report)), good ? Icon::information : Icon::critical);
  });
}

void f1::draw_fid() {
  if (!take_settings()) return;
  new_id(m_workspace, *m_prompts, build_services(*m_prompts, *m_progress).collect_registered);
  show_record();
  save_now();
}

void f1::load_selection() {
  const std::string path = platform::join(split_folder(m_workspace), "templatesel.args");
  const Status loaded = loadarg(m_workspace, path);
  if (!loaded.ok()) return m_prompts->tell(loaded.error, Icon::warning);
  m_workspace.saved_selection = true;
  show_tiles(false);
}

void f1::save_arguments() {
  if (!take_settings()) return;
  BuildRequest request;
  for (const Tile& tile : m_workspace.tiles) {
    if (tile.selected) request.tiles.push_back(tile.number);
  }
  const Result<std::string> saved = ferrowen::save_arguments(m_workspace, *m_prompts, request);
  show_record();
  show_tiles(false);
  m_prompts->tell(saved.ok() ? saved.value : saved.error, saved.ok() ? Icon::information : Icon::warning);
}

void f1::load_arguments() {
  const std::optional<std::string> path =
      m_prompts->choose_file({from_qt(m_binder.text(Section::menus, "mf_load_arguments")),
                              {{"Argument files (*.args)", "*.args"}},
                              split_folder(m_workspace),
                              false});
  if (!path) return m_prompts->tell(m_workspace.message(56));
  const Status loaded = loadarg(m_workspace, *path);
  if (!loaded.ok()) return m_prompts->tell(loaded.error, Icon::warning);
  show_tiles(false);
}

void f1::restored(bool done) {
  if (!done) return;
  m_built_name.clear();
  choose_language(to_qt(m_workspace.settings.language));
  reload_tiles();
  show_record();
}

void f1::show_settings_window(Page page) {
  if (!take_settings()) return;
  settings window(m_workspace, *m_prompts, *m_progress, page, this);
  if (window.exec() != QDialog::Accepted) return;
  apply_texts();  // another language may have been chosen
  reload_tiles();
  show_record();
}

void f1::show_option_editor(bool splitter) {
  if (!take_settings()) return;
  using Tool = option_editor::Tool;
  option_editor window(m_workspace, *m_prompts, *m_progress, splitter ? Tool::splitter : Tool::mkgmap, this);
  window.exec();
  show_record();
}

// Without a selection the whole map is meant, as in a build.
void f1::clip_contours() {
  const TileList chosen = m_workspace.tiles;
  const std::size_t count = selected_count(chosen);
  const bool all = count == 0;
  for (Tile& tile : m_workspace.tiles)
    tile.selected = tile.selected || all;
  m_progress->begin();
  m_tabs->setCurrentWidget(m_console);
  m_clip_label->setText(QStringLiteral("Clipping"));
  const auto first =
      std::find_if(chosen.begin(), chosen.end(), [](const Tile& tile) { return tile.selected; });
  const ClipReport report = count == 1 ? clip1tile(m_workspace, *m_prompts, *m_progress, first->number)
                                       : ferrowen::clip(m_workspace, *m_prompts, *m_progress);
  m_workspace.tiles = chosen;
  show_outcome(report.result, "stopped");
  show_heights();
  if (report.step == ClipStep::locate_osmconvert) show_contour_folders();
}

void f1::tell_missing_hgt_folder() {
  if (!take_settings() || !m_workspace.settings.dem) return;
  const std::vector<std::string> folders = searched_hgt_folders(m_workspace.settings);
  if (std::none_of(folders.begin(), folders.end(), folder_exists))
    m_prompts->tell("Please locate hgt folder for DEM", Icon::warning);
}

// The cells lie under the tiles as long as they matter to the map.
void f1::show_heights() {
  if (m_busy && m_workspace.splitting) return;
  const auto ticked = [this](const char* field) {
    return qobject_cast<QCheckBox*>(m_form->control(field))->isChecked();
  };
  const bool wanted = ticked("dem") || ticked("contours");
  m_heights->set_cells(wanted ? cells_of_area(m_workspace, *m_prompts) : std::vector<AreaCell>{});
  m_plot->refresh_layers();
  QString text;
  if (ticked("contours") && ticked("clip-contours")) {
    // Those that a build takes; the others are as good as not there.
    const std::vector<std::string> cells = needed_cells(m_workspace, *m_prompts);
    const ClippedContours clips = find_clipped_contours(cells, current_clip_folder(m_workspace.settings),
                                                        searched_contour_folders(m_workspace.settings));
    text =
        to_qt(m_workspace.message(244)) + QStringLiteral(": %1/%2").arg(clips.files.size()).arg(cells.size());
  }
  m_clip_label->setText(text);
}

void f1::edit_text(const QString& path) {
  TextWindow(m_workspace, *m_prompts, path, TextWindow::Use::edit, this).exec();
}

// After a failure the error output is laid out in the log tab, where it can be opened with one more click.
void f1::view_text(const QString& path) {
  if (from_qt(path) == m_workspace.path(file_name::error_stream)) {
    m_log->show_log(LogFile::error_stream);
    m_tabs->setCurrentWidget(m_log);
    return;
  }
  if (!file_exists(from_qt(path)))
    return m_prompts->tell(m_workspace.message(35) + from_qt(path), Icon::warning);
  auto* window = new TextWindow(m_workspace, *m_prompts, path, TextWindow::Use::read, this);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->show();
}

void f1::choose_language(const QString& file) {
  const Status chosen = ferrowen::choose_language(m_workspace, from_qt(file));
  if (!chosen.ok()) m_prompts->tell(chosen.error, Icon::warning);
  m_status->clear();  // what was said before was said in the other language
  apply_texts();
  show_image_place();
  m_java_label->setText(m_binder.said(java_label(m_workspace.java_version)));
}

void f1::write_template() {
  const std::string proposal =
      platform::join(m_workspace.settings.languages_folder, "template" + std::string(language_ending));
  const FileQuestion question{from_qt(m_binder.text(Section::menus, "mlan_template")),
                              {{"Language files (*.m5l)", "*.m5l"}},
                              proposal,
                              true};
  const std::optional<std::string> path =
      name_to_write(m_workspace.messages, *m_prompts, question, language_ending);
  if (!path) return;
  const Status written = safe_write(*path, language_template());
  m_prompts->tell(written.ok() ? *path : written.error, written.ok() ? Icon::information : Icon::critical);
}

void f1::query_java() {
  query_java_version(m_workspace, *m_prompts, *m_progress);
  m_java_label->setText(m_binder.said(java_label(m_workspace.java_version)));
}

void f1::show_mkgmap_version() {
  const Result<std::string> version = mkgmap_version(m_workspace, *m_prompts, *m_progress);
  m_prompts->tell(version.ok() ? version.value : version.error,
                  version.ok() ? Icon::information : Icon::warning);
}

void f1::open_guide() {
  const std::string path = guide_path();
  if (path.empty()) return m_prompts->tell(m_workspace.message(35) + "user-guide.md", Icon::warning);
  auto* window = new GuideWindow(m_workspace.texts, path, m_workspace.settings.language, this);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->show();
}

void f1::open_path(const std::string& path) {
  if (!file_exists(path)) return m_prompts->tell(m_workspace.message(89) + path, Icon::warning);
  open_address(path);
}

void f1::open_address(const std::string& address) {
  const std::string problem = platform::open_with_desktop(address);
  if (!problem.empty())
    m_prompts->tell(m_workspace.message(203) + "\r\n" + address + "\r\n" + problem, Icon::warning);
}

void f1::save_now() {
  if (!m_can_save) return;
  if (const Status saved = savedata(m_workspace); !saved.ok()) m_prompts->tell(saved.error, Icon::critical);
}

QString f1::details() const {
  QStringList parts;
  if (!m_progress->last_command().empty()) parts << shown_text(m_progress->last_command());
  for (const std::string_view name : {file_name::error_stream, file_name::mkgmap_log}) {
    const std::string text =
        m_progress->last_command().empty() ? "" : read_whole_file(m_workspace.path(name));
    if (!trim(text).empty()) parts << to_qt(name) + QStringLiteral(":\n") + shown_text(tail(text));
  }
  return parts.join(QStringLiteral("\n\n"));
}

}  // namespace ferrowen::ui
