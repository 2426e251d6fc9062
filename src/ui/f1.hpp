// f1, the main window: choose a map file, split it, pick tiles, build a map. A slot collects the controls'
// values, calls a stage and shows what comes back; the stages live below.
#pragma once

#include <QActionGroup>
#include <QComboBox>
#include <QMainWindow>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <functional>
#include <memory>
#include <optional>

#include "app/workspace.hpp"
#include "pipeline/build.hpp"
#include "ui/console_panel.hpp"
#include "ui/field_form.hpp"
#include "ui/held_prompts.hpp"
#include "ui/log_panel.hpp"
#include "ui/text_binder.hpp"
#include "ui/tile_plot.hpp"
#include "ui/tools_page.hpp"
#include "ui/window_progress.hpp"
#include "ui/window_prompts.hpp"

namespace ferrowen::ui {

// Controls, by their public names:
//   input (Text1)      map file                 lab1      split state            Command_split  Split Map
//   Text12             map name                 Text_fid  family ID              new_fid        draws one
//   Text_mapid         map ID                   Text4     country                Text5          description
//   List1              styles                   List5     TYP files              Check_typ      TYP is used
//   lb1                tile plot                lab_tiles what is selected
//   Command_create     Create Map               Command_stop  Stop               javlab         Java version
//   image_place        where the device image goes            Command_launch  Launch ...
//   Check2 gmapsupp    upmaps register   Check4 max-jobs   Check5 pois-to-lines   rght drive on left
//   transp transparent Check7 keep console  Check9 keep errors
//   Text7              command, one option per line          Text10dos           output of the tools
//   clip1tile          clips contours           Label23          what is clipped
//   mf, mst, mlan      menus File, Settings, Language
class f1 : public QMainWindow {
  Q_OBJECT
 public:
  // `prompts` answers instead of message boxes (tests); it must outlive the window.
  explicit f1(Workspace& workspace, Prompts* prompts = nullptr);
  ~f1() override;

  // What has to wait until the window is seen: the Java version, missing tools, what the start-up had to say
  // and the main path.
  void first_activation(const HeldPrompts& notes = HeldPrompts());
  // A map file or script from the command line, a dialog, or dropped on the window.
  void open_input(const QString& path);
  // What a second start of the program was to open, when nothing runs and no question is open.
  void open_handed_over();
  [[nodiscard]] bool busy() const { return m_busy; }
  [[nodiscard]] Prompts& prompts() { return *m_prompts; }
  [[nodiscard]] Progress& progress() { return *m_progress; }
  // Off when the program folder cannot be written or its settings could not be read: nothing is saved then.
  void set_can_save(bool can_save) { m_can_save = can_save; }
  // The system wants the program to end: a run is ended first, nothing is asked.
  void end_program();
  // The settings record on every control: after something else has changed it.
  void show_record();
  // Texts of the current language on every control.
  void apply_texts();

 Q_SIGNALS:
  void work_ended();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  using Work = std::function<void()>;

  // Building the window.
  void make_panels();
  QWidget* make_left();
  QWidget* make_map_data();
  QWidget* make_map();
  void make_lock(QCheckBox& box, bool& locked);
  QWidget* make_look();
  QWidget* make_run();
  QWidget* make_centre();
  QWidget* make_plot_page();
  QWidget* make_tabs();
  QWidget* make_elevation();
  QWidget* make_options();
  void add_target_buttons(QWidget* box);
  QWidget* make_option_group(const char* title, const std::vector<std::array<const char*, 3>>& flags);
  QLabel* labelled(QWidget* control, std::string_view key);
  void make_menus();
  void fill_file_menu(QMenu* menu);
  void fill_settings_menu(QMenu* menu);
  void fill_contour_menu(QMenu* menu);
  void fill_map_menu(QMenu* menu);
  void fill_tools_menu(QMenu* menu);
  void fill_help_menu(QMenu* menu);
  QAction* entry(QMenu* menu, const char* key, const Work& work, const QKeySequence& shortcut = {});
  // An entry whose work is a stage: not while another runs.
  QAction* stage_entry(QMenu* menu, const char* key, const Work& work, const QKeySequence& shortcut = {});

  // The controls and the workspace.

  bool take_settings();
  void show_state();
  void show_tiles(bool fit);
  void show_selection();
  void show_empty_text();
  void show_styles();
  void show_recent_files();
  void show_languages();
  void show_built_name();
  void take_selection();
  void restore_layout();
  void keep_layout();
  void save_now();

  // Actions.
  void run_stage(const Work& work);
  void set_busy(bool busy);
  void clear_outcome();
  void show_outcome(StageResult result, const char* failed);
  void choose_input();
  void reload_tiles();
  void split_map();
  void create_map();
  BuildReport create_map_stage();
  void show_scripts();
  void start_script(const QString& path);
  void draw_fid();
  void input_edited();
  void load_selection();
  void save_arguments();
  void load_arguments();
  void restored(bool done);
  void show_settings_window(Page page = Page::map);
  void show_option_editor(bool splitter);
  template <typename Converter>
  void show_converter();
  template <typename Window>
  void show_tool();
  void show_contour_folders();
  void clip_contours();
  void tell_missing_hgt_folder();
  void show_heights();
  void edit_text(const QString& path);
  void view_text(const QString& path);
  void choose_language(const QString& file);
  void show_mkgmap_version();
  void write_template();
  void query_java();
  void show_missing_tools();
  void open_guide();
  void show_installed_maps();
  void show_unused_maps();
  void launch_program(const std::string& name);
  void launch_home_port();
  void launch_chosen();
  void offer_launch();
  void show_image_places(QMenu* menu);
  void set_image_folder(const std::string& folder);
  void show_image_place();
  void open_path(const std::string& path);
  void open_address(const std::string& address);
  [[nodiscard]] QString details() const;

  Workspace& m_workspace;
  TextBinder m_binder;
  WindowPrompts m_own_prompts;
  Prompts* m_prompts;
  FieldForm* m_form = nullptr;
  std::optional<WindowProgress> m_progress;
  bool m_busy = false;
  bool m_close_when_done = false;
  QPointer<QWidget> m_focus_before;  // while a stage runs
  bool m_can_save = true;
  QString m_built_name;  // of the last good build that is not registered

  PathEdit* m_input = nullptr;
  PathEdit* m_typ = nullptr;
  QLabel* m_state = nullptr;
  QLabel* m_tiles_label = nullptr;
  QLabel* m_java_label = nullptr;
  QLabel* m_elapsed = nullptr;
  QLabel* m_status = nullptr;
  QComboBox* m_styles = nullptr;
  QProgressBar* m_bar = nullptr;
  QPushButton* m_split = nullptr;
  QPushButton* m_create = nullptr;
  QPushButton* m_stop = nullptr;
  QPushButton* m_open_folder = nullptr;
  QPushButton* m_image_place = nullptr;
  QPushButton* m_launch = nullptr;
  QStackedWidget* m_stack = nullptr;
  QLabel* m_clip_label = nullptr;
  TilePlot* m_plot = nullptr;
  HeightLayer* m_heights = nullptr;  // belongs to the plot
  ToolsPage* m_tools_page = nullptr;
  QTabWidget* m_tabs = nullptr;
  QPlainTextEdit* m_command = nullptr;
  ConsolePanel* m_console = nullptr;
  LogPanel* m_log = nullptr;
  QWidget* m_left = nullptr;
  QWidget* m_options = nullptr;
  QSplitter* m_columns = nullptr;
  QSplitter* m_rows = nullptr;
  QMenu* m_recent = nullptr;
  QMenu* m_languages = nullptr;
  QActionGroup* m_language_group = nullptr;
  std::vector<QWidget*> m_idle_only;  // controls that wait while a stage runs
  std::vector<QAction*> m_idle_only_actions;
};

}  // namespace ferrowen::ui
