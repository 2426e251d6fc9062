#include "ui/f1.hpp"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QSignalBlocker>
#include <QUrl>
#include <ctime>

#include "app/coastline.hpp"
#include "app/settings_file.hpp"
#include "app/start_up.hpp"
#include "app/style_backup.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/registration.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"
#include "ui/qt_text.hpp"
#include "ui/qt_texts.hpp"
#include "ui/text_window.hpp"
#include "ui/window_layout.hpp"

namespace ferrowen::ui {

namespace {

constexpr QSize first_size(1180, 760);
const QColor built_colour(220, 251, 125);  // a map that is built and not registered

}  // namespace

f1::f1(Workspace& workspace, Prompts* prompts)
    : m_workspace(workspace),
      m_binder(workspace.texts),
      m_own_prompts(this, workspace.texts),
      m_prompts(prompts != nullptr ? prompts : &m_own_prompts) {
  setObjectName(QStringLiteral("f1"));
  setAcceptDrops(true);
  make_panels();
  m_progress.emplace(m_workspace.texts,
                     WindowProgress::Controls{m_bar, m_elapsed, m_status, m_console, m_command});
  make_menus();
  m_own_prompts.details = [this] { return details(); };
  m_own_prompts.file_viewer = [this](const QString& path) { view_text(path); };
  connect(m_tools_page, &ToolsPage::check_requested, this,
          [this] { run_stage([this] { m_tools_page->look_again(*m_progress); }); });
  connect(m_tools_page, &ToolsPage::settings_requested, this, [this] { show_settings_window(Page::tools); });
  connect(m_tools_page, &ToolsPage::sample_requested, this, [this] {
    m_stack->setCurrentIndex(0);
    open_input(to_qt(m_workspace.path(file_name::sample_map)));
  });
  connect(m_tools_page, &ToolsPage::closed, this, [this] { m_stack->setCurrentIndex(0); });
  auto heights = std::make_unique<HeightLayer>();
  m_heights = heights.get();
  m_plot->add_layer(std::move(heights));
  m_plot->add_layer(std::make_unique<GridLayer>());
  show_record();
  resize(first_size);
  restore_layout();
  apply_texts();
  m_java_label->clear();  // until it has been asked for
}

f1::~f1() = default;

void f1::apply_texts() {
  translate_qt(m_workspace);
  m_binder.apply();
  show_state();
  show_selection();
  // What is used most chooses its letters first; pages that hide one another have letters of their own.
  const QSet<QChar> menus = assign_mnemonics(menuBar()->actions());
  const QSet<QChar> panels = assign_mnemonics(*m_options, assign_mnemonics(*m_left, menus));
  assign_mnemonics(*m_tools_page, panels);
  assign_mnemonics(*m_log, panels);
}

// Everything here may take a while: the window is already seen, and stays alive.
void f1::first_activation(const HeldPrompts& notes) {
  m_plot->add_layer(std::make_unique<CoastLayer>(load_coastline()));
  run_stage([this] {
    reload_tiles();
    query_java();
    build_services(*m_prompts, *m_progress).collect_registered(m_workspace);
    show_missing_tools();
    m_status->clear();
  });
  if (m_close_when_done) return;
  // One box for everything that the start-up had to say, over a window that knows its tools.
  if (!notes.texts().empty()) m_prompts->tell(join_texts(notes.texts(), "\r\n\r\n"), notes.heaviest());
  run_stage([this] {
    const AfterStartUp next = check_main_path(m_workspace, *m_prompts);
    if (next == AfterStartUp::offer_restore) restored(restore_settings(m_workspace, *m_prompts));
    if (next == AfterStartUp::open_settings) show_settings_window(Page::tools);
    if (next != AfterStartUp::ready) show_missing_tools();
    if (!m_workspace.settings.always_collect_fids) m_status->setText(to_qt(m_workspace.message(224)));
    const std::string reminder = style_backup_reminder(m_workspace, std::time(nullptr));
    if (!reminder.empty()) m_status->setText(shown_text(reminder));
  });
}

void f1::show_missing_tools() {
  if (essential_tools_present(m_workspace)) return;
  m_stack->setCurrentWidget(m_tools_page);
  m_tools_page->look_again(*m_progress);
}

void f1::show_record() {
  show_styles();
  m_form->show(m_workspace.settings);
  m_typ->setEnabled(m_workspace.settings.use_typ);
  m_launch->setText(m_binder.said(launch_label(m_workspace.settings)));
  show_image_place();
  m_java_label->setText(m_binder.said(java_label(m_workspace.java_version)));
  const QString name = to_qt(platform::name_of(m_workspace.settings.input));
  setWindowTitle(name.isEmpty() ? QStringLiteral("Ferrowen") : name + QStringLiteral(" – Ferrowen"));
  show_state();
  show_built_name();
}

bool f1::take_settings() {
  const Status taken = m_form->take(m_workspace.settings);
  if (!taken.ok()) m_prompts->tell(taken.error, Icon::warning);
  show_built_name();
  return taken.ok();
}

void f1::show_state() {
  const std::optional<StateDisplay> display = state_display(m_workspace.split_state, m_workspace);
  if (!display) return;
  const QColor colour(display->colour.red, display->colour.green, display->colour.blue);
  QString text = to_qt(display->text);
  if (m_workspace.split_state == SplitState::input_missing) text += to_qt(m_workspace.settings.input);
  m_state->setText(text);
  // The colour is the ground and the writing is black or white, so that every state can be read.
  const bool bright = qGray(colour.rgb()) > 110;
  m_state->setStyleSheet(
      QStringLiteral("QLabel { background-color: %1; color: %2; padding: 3px; border-radius: 3px; }")
          .arg(colour.name(), bright ? QStringLiteral("black") : QStringLiteral("white")));
}

void f1::show_tiles(bool fit) {
  m_plot->set_tiles(m_workspace.tiles, fit);
  if (!m_workspace.tiles.empty()) m_stack->setCurrentIndex(0);
  show_selection();
}

void f1::show_empty_text() {
  const bool whole = m_workspace.split_state == SplitState::no_need_to_split;
  m_plot->set_empty_text(m_binder.text(Section::labels, whole ? "no_tiles_needed" : "no_tiles"));
}

void f1::show_selection() {
  show_empty_text();
  m_tiles_label->setText(to_qt(tile_list_label(m_workspace.tiles, m_workspace.texts)));
  show_heights();
}

void f1::take_selection() {
  // A run works on the selection that it began with.
  if (m_busy) {
    m_plot->set_tiles(m_workspace.tiles, false);
    return;
  }
  m_workspace.tiles = m_plot->tiles();
  m_workspace.saved_selection = false;
  show_selection();
}

void f1::show_styles() {
  const QSignalBlocker quiet(m_styles);
  m_styles->clear();
  m_styles->addItem(QStringLiteral("default"));
  for (const std::string& name : style_names(m_workspace.settings)) {
    if (name != "default") m_styles->addItem(to_qt(name));
  }
  // A style that is gone stays the choice, so that the check before the build can name it.
  const QString chosen = to_qt(m_workspace.settings.style);
  if (m_styles->findText(chosen) < 0 && !chosen.isEmpty()) m_styles->addItem(chosen);
  m_styles->setCurrentText(chosen);
}

void f1::show_built_name() {
  auto* name = qobject_cast<QLineEdit*>(m_form->control("map-name"));
  const bool built = !m_built_name.isEmpty() && name->text() == m_built_name;
  name->setStyleSheet(
      built ? QStringLiteral("QLineEdit { background-color: %1; color: black; }").arg(built_colour.name())
            : QString());
}

void f1::restore_layout() {
  const WindowLayout layout(m_workspace.settings);
  restoreGeometry(layout.value(QStringLiteral("f1")));
  m_columns->restoreState(layout.value(QStringLiteral("f1.columns")));
  m_rows->restoreState(layout.value(QStringLiteral("f1.rows")));
}

void f1::keep_layout() {
  WindowLayout layout(m_workspace.settings);
  layout.set(QStringLiteral("f1"), saveGeometry());
  layout.set(QStringLiteral("f1.columns"), m_columns->saveState());
  layout.set(QStringLiteral("f1.rows"), m_rows->saveState());
  layout.store(m_workspace.settings);
}

void f1::closeEvent(QCloseEvent* event) {
  if (m_busy) {
    event->ignore();
    if (m_close_when_done) return;
    const std::string question = from_qt(m_binder.text(Section::labels, "close_during_run"));
    if (m_prompts->ask(question, Buttons::yes_no, Icon::warning) != Answer::yes) return;
    if (!m_busy) return event->accept();
    m_close_when_done = true;
    m_progress->request_stop();
    return;
  }
  take_settings();
  keep_layout();
  const Status saved = m_can_save ? save_on_exit(m_workspace) : Status{};
  if (!saved.ok()) m_prompts->tell(saved.error, Icon::critical);
  event->accept();
}

void f1::end_program() {
  m_close_when_done = true;
  m_progress->request_stop();
  // Inside a stage a dialog may be waiting for an answer.
  while (QWidget* dialog = QApplication::activeModalWidget()) {
    if (!dialog->close()) break;
  }
  if (!m_busy) close();
}

void f1::dragEnterEvent(QDragEnterEvent* event) {
  if (!m_busy && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void f1::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    if (!url.isLocalFile()) continue;
    open_input(QDir::toNativeSeparators(url.toLocalFile()));
    return;
  }
}

}  // namespace ferrowen::ui
