#include "ui/editcontours.hpp"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMimeData>
#include <QTabWidget>
#include <QUrl>
#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/contour_script.hpp"
#include "elevation/download_help.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/hgt_coverage.hpp"
#include "elevation/unzip.hpp"
#include "platform/paths.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr const char* tool_page = "https://wiki.openstreetmap.org/wiki/Contours";

QListWidget* list(QWidget* parent, const char* name, bool selectable) {
  auto* made = new QListWidget(parent);
  made->setObjectName(QLatin1String(name));
  // The end of a path says which cell it is.
  made->setTextElideMode(Qt::ElideLeft);
  made->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  made->setSelectionMode(selectable ? QAbstractItemView::ExtendedSelection
                                    : QAbstractItemView::SingleSelection);
  return made;
}

QLineEdit* line(QWidget* parent, const char* name) {
  auto* made = new QLineEdit(parent);
  made->setObjectName(QLatin1String(name));
  return made;
}

void fill(QListWidget& shown, const std::vector<std::string>& texts) {
  shown.clear();
  for (const std::string& text : texts) {
    shown.addItem(to_qt(text));
    shown.item(shown.count() - 1)->setToolTip(to_qt(text));
  }
}

}  // namespace

editcontours::editcontours(Workspace& workspace, Prompts& prompts, QWidget* parent)
    : ToolWindow(workspace, prompts, "editcontours", "editcontours_title", parent),
      m_area(list(this, "List1", true)),
      m_further(list(this, "List3", true)),
      m_expected(list(this, "List2", false)),
      m_needed(list(this, "List4", false)),
      m_missing(list(this, "List5", false)),
      m_interval(line(this, "Text1")),
      m_tolerance(line(this, "Text2")),
      m_base(line(this, "Text4")),
      m_tool(new PathEdit(PathEdit::Kind::file, prompts, m_binder, this)),
      m_folder(new QLabel(this)),
      m_summary(new QLabel(this)),
      m_overwrite(flag("Check1", "overwrite")),
      m_show_console(flag("Check2", "show_console")),
      m_work_folder(flag("Check3", "work_folder")),
      m_pause(flag("checkerror", "pause")),
      m_region(new QComboBox(this)) {
  setAcceptDrops(true);
  m_show_console->setChecked(true);
  auto* tabs = new QTabWidget(this);
  tabs->setObjectName(QStringLiteral("editcontours_tabs"));
  auto* page = new QWidget(tabs);
  auto* column = new QVBoxLayout(page);
  column->addWidget(make_lists(), 1);
  column->addWidget(make_choices());
  column->addWidget(make_make_row());
  tabs->addTab(page, m_binder.text(Section::labels, "tab_make"));
  tabs->addTab(make_download(), m_binder.text(Section::labels, "tab_download"));
  m_column->addWidget(tabs);
  m_interval->setText(QString::number(contour_interval(workspace.settings)));
  m_tolerance->setText(to_qt(number_text(static_cast<float>(workspace.settings.contour_tolerance))));
  m_tool->set_text(to_qt(workspace.settings.contour_tool));
  m_base->setText(to_qt(srtm_base_address(workspace.settings)));
  finish_layout();
  show_area();
  // The window stands there first.
  QMetaObject::invokeMethod(
      this, [this] { tell_missing_folder(); }, Qt::QueuedConnection);
}

void editcontours::tell_missing_folder() {
  const std::vector<std::string> folders = searched_hgt_folders(m_workspace.settings);
  if (std::none_of(folders.begin(), folders.end(), folder_exists))
    m_prompts.tell("Can't locate HGT folder. Click on a Tile with HGT files", Icon::warning);
}

void editcontours::done(int result) {
  keep_choices();
  ToolWindow::done(result);
}

QCheckBox* editcontours::flag(const char* name, const char* key) {
  auto* made = new QCheckBox(this);
  made->setObjectName(QLatin1String(name));
  m_binder.caption(made, Section::labels, key);
  m_binder.tooltip(made, key);
  return made;
}

QWidget* editcontours::make_lists() {
  auto* page = new QWidget(this);
  auto* grid = new QGridLayout(page);
  grid->setContentsMargins(0, 0, 0, 0);
  m_folder->setObjectName(QStringLiteral("Label9"));
  m_folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_folder->setWordWrap(true);
  struct Place {
    QListWidget* shown;
    const char* key;
  };
  int place = 0;
  for (const Place& one :
       {Place{m_area, "hgt_of_area"}, {m_further, "hgt_in_folder"}, {m_expected, "osm_expected"}}) {
    grid->addWidget(label_for(one.shown, one.key), 0, place);
    grid->addWidget(one.shown, 1, place++);
    m_binder.tooltip(one.shown, one.key);
  }
  grid->addWidget(m_folder, 2, 0, 1, place);
  for (QListWidget* shown : {m_area, m_further})
    connect(shown, &QListWidget::itemSelectionChanged, this, &editcontours::show_expected);
  return page;
}

QWidget* editcontours::make_choices() {
  auto* page = new QWidget(this);
  auto* form = new QFormLayout(page);
  form->setContentsMargins(0, 0, 0, 0);
  m_tool->line()->setObjectName(QStringLiteral("Text3"));
  m_tool->button()->setObjectName(QStringLiteral("Command4"));
  m_tool->set_filters(program_filters("Hgt2OSM(exe)"));
  m_binder.tooltip(m_tool->line(), "contour_tool");
  m_binder.tooltip(m_interval, "interval");
  m_binder.tooltip(m_tolerance, "tolerance");
  form->addRow(label_for(m_interval, "interval"), m_interval);
  form->addRow(label_for(m_tolerance, "tolerance"), m_tolerance);
  form->addRow(label_for(m_tool->line(), "contour_tool"), m_tool);
  return page;
}

QWidget* editcontours::make_make_row() {
  auto* page = new QWidget(this);
  auto* flags = new QHBoxLayout;
  for (QCheckBox* one : {m_overwrite, m_show_console, m_work_folder, m_pause})
    flags->addWidget(one);
  flags->addStretch();
  auto* row = new QHBoxLayout;
  row->addWidget(button("Label6", "tool_page", "tool_page", [this] { open_page(tool_page); }));
  row->addStretch();
  row->addWidget(button("Command9", "unzip_heights", "unzip_heights", [this] { unpack(); }));
  row->addWidget(button("select_all", "select_all", "hgt_of_area", [this] { m_area->selectAll(); }));
  row->addWidget(button("Command14", "check_contours", "check_contours",
                        [this] { chkcontours(m_workspace, m_prompts); }));
  row->addWidget(button("Command7", "make_contours", "make_contours", [this] { create_contours(); }));
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(flags);
  column->addLayout(row);
  return page;
}

QWidget* editcontours::make_download() {
  auto* page = new QWidget(this);
  m_region->setObjectName(QStringLiteral("Combo1"));
  m_region->addItem(m_binder.said(search_all), QLatin1String(search_all));
  for (const std::string_view region : srtm_regions)
    m_region->addItem(to_qt(region), to_qt(region));
  m_binder.tooltip(m_region, "region");
  m_binder.tooltip(m_base, "srtm_base");
  m_summary->setObjectName(QStringLiteral("Label8"));
  auto* grid = new QGridLayout;
  grid->addWidget(label_for(m_needed, "hgt_total"), 0, 0);
  grid->addWidget(label_for(m_missing, "hgt_missing"), 0, 1);
  grid->addWidget(m_needed, 1, 0);
  grid->addWidget(m_missing, 1, 1);
  m_binder.tooltip(m_needed, "hgt_total");
  m_binder.tooltip(m_missing, "hgt_missing");
  auto* form = new QFormLayout;
  form->addRow(label_for(m_base, "srtm_base"), m_base);
  form->addRow(label_for(m_region, "region"), m_region);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(button("Command13", "count_hgt", "count_hgt", [this] { count_heights(); }));
  row->addWidget(button("Command3", "download", "download", [this] { open_download_pages(); }));
  row->addWidget(button("Command8", "unzip", "unzip_heights", [this] { unpack(); }));
  auto* column = new QVBoxLayout(page);
  column->addLayout(grid, 1);
  column->addWidget(m_summary);
  column->addLayout(form);
  column->addLayout(row);
  return page;
}

void editcontours::show_area() {
  const Settings& settings = m_workspace.settings;
  const std::string folder = current_hgt_folder(settings);
  std::vector<std::string> area;
  for (const std::string& name : needed_cells(m_workspace, m_prompts)) {
    const CellFiles files = find_cell_files({name}, searched_hgt_folders(settings), CellFile::hgt);
    area.push_back(files.found.empty() ? platform::join(folder, name) : files.found.front());
  }
  fill(*m_area, area);
  std::vector<std::string> further;
  for (const std::string& name : folder.empty() ? std::vector<std::string>{} : list_files(folder, {""})) {
    const bool heights = ends_with_ignoring_case(name, ".hgt") || ends_with_ignoring_case(name, ".zip");
    if (heights && !cell_of_file(name).empty()) further.push_back(platform::join(folder, name));
  }
  fill(*m_further, further);
  m_area->selectAll();
  m_folder->setText(folder.empty() ? m_binder.text(Section::labels, "no_hgt_folder")
                                   : m_binder.text(Section::labels, "paste_into") + to_qt(folder));
  const DownloadState state = download_state(m_workspace, m_prompts);
  fill(*m_needed, state.needed);
  fill(*m_missing, state.missing);
  m_summary->setText(m_binder.said(state.summary));
}

std::vector<std::string> editcontours::selected_heights() const {
  const QListWidget& used = m_further->selectedItems().isEmpty() ? *m_area : *m_further;
  std::vector<std::string> paths;
  for (int row = 0; row < used.count(); ++row) {
    if (used.item(row)->isSelected()) paths.push_back(from_qt(used.item(row)->text()));
  }
  return paths;
}

void editcontours::show_expected() {
  std::vector<std::string> names;
  for (const std::string& path : selected_heights())
    names.push_back(contour_file_name(platform::name_of(path)));
  fill(*m_expected, names);
}

void editcontours::take_choices(long& interval, double& tolerance) {
  Settings& settings = m_workspace.settings;
  settings.contour_tool = trim(from_qt(m_tool->text()));
  interval = lenient_whole_number(trim(from_qt(m_interval->text())));
  tolerance = tolerance_value(from_qt(m_tolerance->text()));
  m_tolerance->setText(to_qt(number_text(static_cast<float>(tolerance))));
}

// What was typed and not yet used is kept for the next time, unless no contours could be made with it.
void editcontours::keep_choices() {
  Settings& settings = m_workspace.settings;
  const std::string tool(trim(from_qt(m_tool->text())));
  const long interval = lenient_whole_number(trim(from_qt(m_interval->text())));
  const double tolerance = tolerance_value(from_qt(m_tolerance->text()));
  const bool good = interval >= least_interval && interval <= highest_interval;
  const bool other_numbers = interval != contour_interval(settings) ||
                             static_cast<float>(tolerance) != static_cast<float>(settings.contour_tolerance);
  const std::string address(trim(from_qt(m_base->text())));
  const bool other_address = address != srtm_base_address(settings);
  if (tool == settings.contour_tool && !other_address && !(good && other_numbers)) return;
  settings.contour_tool = tool;
  if (other_address) settings.srtm_address = address;
  if (good) store_contour_choices(settings, interval, tolerance);
  save_settings();
}

void editcontours::create_contours() {
  ContourRequest request;
  take_choices(request.interval, request.tolerance);
  request.height_files = selected_heights();
  request.overwrite = m_overwrite->isChecked();
  request.show_console = m_show_console->isChecked();
  request.copy_to_work_folder = m_work_folder->isChecked();
  request.pause = m_pause->isChecked();
  run_stage([this, &request] {
    const ContourOutcome report = make_contours(m_workspace, m_prompts, *m_progress, request);
    save_settings();
    if (report.result == StageResult::done) chkcontours(m_workspace, m_prompts);
  });
}

void editcontours::count_heights() {
  offer_renaming_in_area(m_workspace, m_prompts);
  show_area();
  const DownloadState state = download_state(m_workspace, m_prompts);
  m_prompts.tell(download_message(state, m_workspace),
                 state.missing.empty() ? Icon::information : Icon::warning);
}

void editcontours::unpack() {
  run_stage([this] {
    ferrowen::unzip(m_workspace, m_prompts, *m_progress, current_hgt_folder(m_workspace.settings),
                    seven_zip_missing_for_contours);
    show_area();
  });
}

void editcontours::open_download_pages() {
  const DownloadState state = download_state(m_workspace, m_prompts);
  if (state.missing.empty()) return m_prompts.tell(download_message(state, m_workspace));
  for (const std::string& page :
       download_pages(from_qt(m_base->text()), from_qt(m_region->currentData().toString()), state.missing))
    open_page(page);
}

void editcontours::dragEnterEvent(QDragEnterEvent* event) {
  if (!busy() && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

// A download that is dropped here goes into the height folder.
void editcontours::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    if (!url.isLocalFile()) continue;
    const Status taken = take_download(m_workspace, from_qt(QDir::toNativeSeparators(url.toLocalFile())));
    if (!taken.ok()) m_prompts.tell(taken.error, Icon::warning);
  }
  count_heights();
}

}  // namespace ferrowen::ui
