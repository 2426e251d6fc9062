// The main window's controls and their places.
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "pipeline/garmin_programs.hpp"
#include "ui/f1.hpp"
#include "ui/plot_button.hpp"
#include "ui/qt_text.hpp"
#include "ui/side_panel.hpp"

namespace ferrowen::ui {

namespace {

using Flag = std::array<const char*, 3>;  // field, caption, public name

const std::vector<Flag> map_flags = {
    {"routing", "routing", ""},
    {"address-search", "address_search", ""},
    {"sea", "sea", ""},
    {"unicode", "unicode", ""},
    {"drive-on-left", "drive_on_left", "rght"},
    {"transparent", "transparent", "transp"},
    {"tdb-file", "tdb_file", ""},
    {"pois-to-areas", "pois_to_areas", ""},
    {"pois-to-lines", "pois_to_lines", "Check5"},
    {"map-name-option", "map_name_option", ""},
    {"use-max-jobs", "use_max_jobs", "Check4"},
    {"use-options-text", "use_options_text", ""},
};
const std::vector<Flag> elevation_flags = {
    {"contours", "contours", ""},
    {"clip-contours", "clip_contours", ""},
    {"dem", "dem", ""},
};
const std::vector<Flag> target_flags = {
    {"gmapsupp", "gmapsupp", "Check2"},
    {"register", "", "upmaps"},
    {"installer", "installer", ""},
};
const std::vector<Flag> run_flags = {
    {"keep-log", "keep_log", ""},
    {"keep-errors", "keep_errors", "Check9"},
    {"keep-console", "keep_console", "Check7"},
    {"own-script", "own_script", ""},
};

}  // namespace

void f1::make_panels() {
  m_form = new FieldForm(this, *m_prompts, m_binder);
  m_columns = new QSplitter(Qt::Horizontal, this);
  m_columns->setObjectName(QStringLiteral("columns"));
  m_columns->setChildrenCollapsible(false);
  m_columns->addWidget(make_left());
  m_columns->addWidget(make_centre());
  m_columns->addWidget(make_options());
  m_columns->setStretchFactor(1, 1);
  setCentralWidget(m_columns);
}

QWidget* f1::make_left() {
  auto* content = new QWidget(this);
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(8, 8, 4, 8);
  column->addWidget(make_map_data());
  column->addWidget(make_map());
  column->addWidget(make_look());
  column->addStretch(1);
  auto* left = new QWidget(this);
  auto* rows = new QVBoxLayout(left);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(new SidePanel(content, left), 1);
  rows->addWidget(make_run());
  m_left = left;
  return left;
}

QLabel* f1::labelled(QWidget* control, std::string_view key) {
  auto* label = new QLabel(this);
  label->setBuddy(control);
  m_binder.caption(label, Section::labels, key);
  return label;
}

QWidget* f1::make_map_data() {
  auto* box = new QGroupBox(this);
  m_binder.caption(box, Section::labels, "map_data");
  auto* column = new QVBoxLayout(box);
  m_input = m_form->path("input", PathEdit::Kind::file, QStringLiteral("Text1"));
  m_input->set_filters({{"All (pbf/osm/mp/o5m)", "*.pbf;*.osm;*.mp;*.o5m;*.osm.gz"},
                        {"OSM files pbf files (*.pbf)", "*.pbf"},
                        {"OSM files (*.osm)", "*.osm"},
                        {"mp files (*.mp)", "*.mp"},
                        {"o5m files (*.o5m)", "*.o5m"},
                        {"Scripts (*.auto)", "*.auto"},
                        {"All files", "*"}});
  m_state = new QLabel(box);
  m_state->setObjectName(QStringLiteral("lab1"));
  m_state->setTextFormat(Qt::PlainText);
  m_state->setWordWrap(true);
  m_split = new QPushButton(box);
  m_split->setObjectName(QStringLiteral("Command_split"));
  m_binder.caption(m_split, Section::commands, "split_map");
  m_binder.tooltip(m_split, "split_map");
  column->addWidget(m_input);
  column->addWidget(m_state);
  column->addWidget(m_split);
  m_idle_only.push_back(box);
  connect(m_input, &PathEdit::path_chosen, this, &f1::input_edited);
  connect(m_split, &QPushButton::clicked, this, &f1::split_map);
  return box;
}

QWidget* f1::make_map() {
  auto* box = new QGroupBox(this);
  m_binder.caption(box, Section::labels, "map");
  auto* grid = new QGridLayout(box);
  auto* name = m_form->text("map-name", QStringLiteral("Text12"));
  auto* fid = m_form->text("fid", QStringLiteral("Text_fid"));
  auto* map_id = m_form->text("map-id", QStringLiteral("Text_mapid"));
  auto* fid_locked = m_form->flag("fid-locked");
  auto* map_id_locked = m_form->flag("map-id-locked");
  make_lock(*fid_locked, m_workspace.settings.fid_locked);
  make_lock(*map_id_locked, m_workspace.settings.map_id_locked);
  fid->setMaxLength(5);
  map_id->setMaxLength(8);
  auto* fresh = new QPushButton(box);
  fresh->setObjectName(QStringLiteral("new_fid"));
  fresh->setStyleSheet(QStringLiteral("QPushButton:enabled { background-color: #2e9e4f; color: white; }"));
  m_binder.caption(fresh, Section::commands, "new_fid");
  m_binder.tooltip(fresh, "new_fid");
  const auto row = [&](int index, const char* key, QWidget* control, int columns) {
    grid->addWidget(labelled(control, key), index, 0);
    grid->addWidget(control, index, 1, 1, columns);
  };
  row(0, "map_name", name, 3);
  row(1, "fid", fid, 1);
  grid->addWidget(fresh, 1, 2);
  grid->addWidget(fid_locked, 1, 3);
  row(2, "map_id", map_id, 2);
  grid->addWidget(map_id_locked, 2, 3);
  row(3, "country", m_form->text("country", QStringLiteral("Text4")), 3);
  row(4, "description", m_form->text("description", QStringLiteral("Text5")), 3);
  grid->setColumnStretch(1, 1);
  m_idle_only.push_back(box);
  connect(fresh, &QPushButton::clicked, this, &f1::draw_fid);
  return box;
}

// A lock outlives whatever ends the program next.
void f1::make_lock(QCheckBox& box, bool& locked) {
  m_binder.caption(&box, Section::labels, "locked");
  connect(&box, &QCheckBox::clicked, this, [this, &locked](bool checked) {
    locked = checked;
    save_now();
  });
}

QWidget* f1::make_look() {
  auto* box = new QGroupBox(this);
  m_binder.caption(box, Section::labels, "look");
  auto* grid = new QGridLayout(box);
  m_styles = new QComboBox(box);
  m_styles->setObjectName(QStringLiteral("List1"));
  m_styles->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  m_styles->setMinimumContentsLength(10);
  m_form->custom(
      "style", m_styles, [this](const QString& value) { m_styles->setCurrentText(value); },
      [this] { return m_styles->currentText(); });
  m_typ = m_form->path("typ", PathEdit::Kind::file, QStringLiteral("List5"));
  m_typ->set_filters({{"TYP files (*.typ)", "*.typ;*.TYP"}});
  auto* use_typ = m_form->flag("use-typ", QStringLiteral("Check_typ"));
  m_binder.caption(use_typ, Section::labels, "use_typ");
  grid->addWidget(labelled(m_styles, "style"), 0, 0);
  grid->addWidget(m_styles, 0, 1);
  grid->addWidget(use_typ, 1, 0);
  grid->addWidget(m_typ, 1, 1);
  grid->setColumnStretch(1, 1);
  m_idle_only.push_back(box);
  connect(use_typ, &QCheckBox::toggled, m_typ, &QWidget::setEnabled);
  return box;
}

QWidget* f1::make_run() {
  auto* box = new QWidget(this);
  auto* column = new QVBoxLayout(box);
  column->setContentsMargins(8, 4, 4, 8);
  m_create = new QPushButton(box);
  m_create->setObjectName(QStringLiteral("Command_create"));
  m_create->setDefault(true);
  QFont bold = m_create->font();
  bold.setBold(true);
  m_create->setFont(bold);
  m_binder.caption(m_create, Section::commands, "create_map");
  m_binder.tooltip(m_create, "create_map");
  m_stop = new QPushButton(box);
  m_stop->setObjectName(QStringLiteral("Command_stop"));
  m_stop->setEnabled(false);
  m_binder.caption(m_stop, Section::commands, "stop");
  m_binder.tooltip(m_stop, "stop");
  m_bar = new QProgressBar(box);
  m_bar->setObjectName(QStringLiteral("progress_bar"));
  m_bar->setTextVisible(false);
  m_binder.name(m_bar, Section::labels, "progress");
  m_elapsed = new QLabel(QStringLiteral("00:00"), box);
  m_elapsed->setObjectName(QStringLiteral("elapsed"));
  m_status = new QLabel(box);
  m_status->setObjectName(QStringLiteral("status"));
  m_status->setTextFormat(Qt::PlainText);
  m_status->setWordWrap(true);
  m_java_label = new QLabel(box);
  m_java_label->setObjectName(QStringLiteral("javlab"));
  m_java_label->setWordWrap(true);
  m_java_label->setEnabled(false);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(m_create, 1);
  buttons->addWidget(m_stop);
  auto* progress = new QHBoxLayout;
  progress->addWidget(m_bar, 1);
  progress->addWidget(m_elapsed);
  column->addLayout(buttons);
  column->addLayout(progress);
  m_open_folder = new QPushButton(box);
  m_open_folder->setObjectName(QStringLiteral("open_folder"));
  m_open_folder->setVisible(false);
  m_binder.caption(m_open_folder, Section::commands, "open_folder");
  connect(m_open_folder, &QPushButton::clicked, this,
          [this] { open_path(build_output_folder(m_workspace.settings)); });
  auto* outcome = new QHBoxLayout;
  outcome->addWidget(m_status, 1);
  outcome->addWidget(m_open_folder);
  column->addLayout(outcome);
  column->addWidget(m_java_label);
  m_idle_only.push_back(m_create);
  connect(m_create, &QPushButton::clicked, this, &f1::create_map);
  connect(m_stop, &QPushButton::clicked, this, [this] {
    m_stop->setEnabled(false);
    m_progress->request_stop();
  });
  return box;
}

QWidget* f1::make_centre() {
  m_rows = new QSplitter(Qt::Vertical, this);
  m_rows->setObjectName(QStringLiteral("rows"));
  m_rows->setChildrenCollapsible(false);
  m_stack = new QStackedWidget(this);
  m_stack->setObjectName(QStringLiteral("pages"));
  m_stack->addWidget(make_plot_page());
  m_tools_page = new ToolsPage(m_workspace, *m_prompts, m_binder, this);
  m_stack->addWidget(m_tools_page);
  m_rows->addWidget(m_stack);
  m_rows->addWidget(make_tabs());
  m_rows->setStretchFactor(0, 3);
  m_rows->setStretchFactor(1, 1);
  return m_rows;
}

QWidget* f1::make_plot_page() {
  auto* page = new QWidget(this);
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(4, 8, 4, 0);
  m_plot = new TilePlot(page);
  m_plot->setObjectName(QStringLiteral("lb1"));
  m_binder.name(m_plot, Section::labels, "tile_plot");
  m_binder.custom([this] {
    m_plot->set_hint(m_binder.text(Section::tooltips, "tile_plot"),
                     m_binder.text(Section::tooltips, "tile_change"));
  });
  m_tiles_label = new QLabel(page);
  m_tiles_label->setObjectName(QStringLiteral("lab_tiles"));
  m_tiles_label->setWordWrap(true);  // a long text must not widen the window
  auto* row = new QHBoxLayout;
  row->setSpacing(2);
  row->addWidget(m_tiles_label, 1);
  struct Tool {
    const char* key;
    PlotButton::Sign sign;
    void (TilePlot::*slot)();
  };
  using Sign = PlotButton::Sign;
  for (const Tool& tool : {Tool{"select_all", Sign::all, &TilePlot::select_all},
                           Tool{"select_none", Sign::none, &TilePlot::select_none},
                           Tool{"select_invert", Sign::inverted, &TilePlot::invert_selection},
                           Tool{"zoom_in", Sign::zoom_in, &TilePlot::zoom_in},
                           Tool{"zoom_out", Sign::zoom_out, &TilePlot::zoom_out},
                           Tool{"zoom_fit", Sign::zoom_fit, &TilePlot::zoom_fit}}) {
    auto* button = new PlotButton(tool.sign, page);
    button->setObjectName(QString::fromUtf8(tool.key));
    m_binder.custom([this, button, key = tool.key] {
      button->setToolTip(m_binder.text(Section::commands, key));
      button->setAccessibleName(m_binder.text(Section::commands, key));
    });
    connect(button, &PlotButton::clicked, m_plot, tool.slot);
    row->addWidget(button);
  }
  column->addLayout(row);
  column->addWidget(m_plot, 1);
  connect(m_plot, &TilePlot::selection_changed, this, &f1::take_selection);
  return page;
}

QWidget* f1::make_tabs() {
  m_tabs = new QTabWidget(this);
  m_tabs->setObjectName(QStringLiteral("tabs"));
  m_command = new QPlainTextEdit(m_tabs);
  m_command->setObjectName(QStringLiteral("Text7"));
  m_command->setReadOnly(true);
  m_command->setTabChangesFocus(true);
  m_command->setLineWrapMode(QPlainTextEdit::NoWrap);
  m_console = new ConsolePanel(m_tabs);
  m_console->setObjectName(QStringLiteral("Text10dos"));
  m_command->setFont(m_console->font());
  m_log = new LogPanel(m_workspace, m_binder, m_tabs);
  m_binder.name(m_command, Section::labels, "tab_command");
  m_binder.name(m_console, Section::labels, "tab_console");
  m_tabs->addTab(m_command, {});
  m_tabs->addTab(m_console, {});
  m_tabs->addTab(m_log, {});
  m_binder.custom([this] {
    m_tabs->setTabText(0, m_binder.text(Section::labels, "tab_command"));
    m_tabs->setTabText(1, m_binder.text(Section::labels, "tab_console"));
    m_tabs->setTabText(2, m_binder.text(Section::labels, "tab_log"));
  });
  connect(m_log, &LogPanel::open_requested, this, [this](const QString& path) { open_path(from_qt(path)); });
  return m_tabs;
}

QWidget* f1::make_option_group(const char* title, const std::vector<Flag>& flags) {
  auto* box = new QGroupBox(this);
  m_binder.caption(box, Section::labels, title);
  auto* column = new QVBoxLayout(box);
  column->setSpacing(3);
  for (const auto& [field, caption, name] : flags) {
    QCheckBox* flag = m_form->flag(field, QString::fromUtf8(name));
    if (*caption != '\0')
      m_binder.caption(flag, Section::labels, caption);
    else  // the check before the build names it by this message
      m_binder.custom([this, flag] { flag->setText(caption_text(to_qt(m_workspace.message(42)))); });
    column->addWidget(flag);
  }
  m_idle_only.push_back(box);
  return box;
}

void f1::add_target_buttons(QWidget* box) {
  m_image_place = new QPushButton(box);
  m_image_place->setObjectName(QStringLiteral("image_place"));
  auto* places = new QMenu(m_image_place);
  m_image_place->setMenu(places);
  connect(places, &QMenu::aboutToShow, this, [this, places] { show_image_places(places); });
  m_binder.custom([this] { show_image_place(); });
  m_launch = new QPushButton(box);
  m_launch->setObjectName(QStringLiteral("Command_launch"));
  m_binder.tooltip(m_launch, "launch");
  m_binder.custom([this] { m_launch->setText(m_binder.said(launch_label(m_workspace.settings))); });
  connect(m_launch, &QPushButton::clicked, this, &f1::launch_chosen);
  box->layout()->addWidget(m_image_place);
  box->layout()->addWidget(m_launch);
}

QWidget* f1::make_elevation() {
  QWidget* group = make_option_group("contours_dem", elevation_flags);
  auto* clip = new QPushButton(group);
  clip->setObjectName(QStringLiteral("clip1tile"));
  m_binder.custom([this, clip] { clip->setText(caption_text(to_qt(m_workspace.message(243)))); });
  m_binder.tooltip(clip, "clip1tile");
  m_clip_label = new QLabel(group);
  m_clip_label->setObjectName(QStringLiteral("Label23"));
  m_clip_label->setWordWrap(true);
  group->layout()->addWidget(clip);
  group->layout()->addWidget(m_clip_label);
  connect(clip, &QPushButton::clicked, this, [this] {
    if (take_settings()) run_stage([this] { clip_contours(); });
  });
  auto* dem = qobject_cast<QCheckBox*>(m_form->control("dem"));
  connect(dem, &QCheckBox::clicked, this, &f1::tell_missing_hgt_folder);
  for (const char* field : {"dem", "contours", "clip-contours"})
    connect(qobject_cast<QCheckBox*>(m_form->control(field)), &QCheckBox::toggled, this, &f1::show_heights);
  return group;
}

QWidget* f1::make_options() {
  auto* content = new QWidget(this);
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(4, 8, 8, 8);
  QWidget* options = make_option_group("options", map_flags);
  auto* edit = new QPushButton(options);
  edit->setObjectName(QStringLiteral("edit_options"));
  m_binder.caption(edit, Section::commands, "edit_options");
  m_binder.tooltip(edit, "edit_options");
  options->layout()->addWidget(edit);
  connect(edit, &QPushButton::clicked, this, [this] { show_option_editor(false); });
  column->addWidget(options);
  column->addWidget(make_elevation());
  QWidget* targets = make_option_group("targets", target_flags);
  add_target_buttons(targets);
  column->addWidget(targets);
  column->addWidget(make_option_group("run", run_flags));
  column->addStretch(1);
  m_options = new SidePanel(content, this);
  return m_options;
}

}  // namespace ferrowen::ui
