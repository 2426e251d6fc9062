#include "ui/contours.hpp"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QRadioButton>

#include "app/start_up.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "elevation/contour_run.hpp"
#include "elevation/download_help.hpp"
#include "elevation/hgt_coverage.hpp"
#include "platform/paths.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int message_no_folder = 51;
constexpr int special_choice = 100;  // "Auto Search" and "Default", behind the slots
constexpr int options_height = 70;
constexpr const char* osmconvert_page = "https://wiki.openstreetmap.org/wiki/Osmconvert";

std::string field_name(const char* field, int slot) { return std::string(field) + std::to_string(slot + 1); }

QListWidget* file_list(QWidget* parent, const char* name) {
  auto* list = new QListWidget(parent);
  list->setObjectName(QLatin1String(name));
  list->setFocusPolicy(Qt::TabFocus);
  return list;
}

void fill(QListWidget& list, const std::string& folder, const std::vector<std::string>& endings) {
  list.clear();
  if (folder.empty()) return;
  for (const std::string& name : list_files(folder, endings))
    list.addItem(to_qt(name));
}

}  // namespace

contours::contours(Workspace& workspace, Prompts& prompts, QWidget* parent)
    : ToolWindow(workspace, prompts, "contours", "contours_title", parent),
      m_form(new FieldForm(this, prompts, m_binder)),
      m_clip_view(new QCheckBox(this)),
      m_caption(new QLabel(this)),
      m_views(new QStackedWidget(this)),
      m_hgt_slot(new QButtonGroup(this)),
      m_clip_slot(new QButtonGroup(this)),
      m_heights(file_list(this, "List1")),
      m_clips(file_list(this, "List2")),
      m_count(new QLabel(this)) {
  m_clip_view->setObjectName(QStringLiteral("Check1"));
  m_binder.caption(m_clip_view, Section::labels, "clp_folder");
  m_binder.tooltip(m_clip_view, "contours_view");
  m_caption->setObjectName(QStringLiteral("Label1"));
  auto* head = new QHBoxLayout;
  head->addWidget(m_caption, 1);
  head->addWidget(m_clip_view);
  m_column->addLayout(head);
  m_views->addWidget(make_slots("hgt-folder-", hgt_folder_slots, "Text2_", "Option1_", *m_hgt_slot));
  m_views->addWidget(make_slots("clip-folder-", clip_folder_slots, "Clip2_", "Option2_", *m_clip_slot));
  m_column->addWidget(m_views);
  m_column->addWidget(make_lists(), 1);
  m_column->addWidget(make_dem());
  m_form->show(workspace.settings);
  connect(m_clip_view, &QCheckBox::toggled, this, &contours::show_view);
  connect(m_form, &FieldForm::changed, this, &contours::show_files);
  for (QButtonGroup* group : {m_hgt_slot, m_clip_slot})
    connect(group, &QButtonGroup::idToggled, this, &contours::show_files);
  const Settings& settings = workspace.settings;
  const int hgt = settings.hgt_auto_search ? special_choice : settings.hgt_slot;
  for (const auto& [group, id] : {std::pair{m_hgt_slot, hgt}, std::pair{m_clip_slot, settings.clip_slot}}) {
    if (QAbstractButton* chosen = group->button(id)) chosen->setChecked(true);
  }
  finish_layout(Runs::nothing);
  show_view();
}

QWidget* contours::make_slots(const char* field, int count, const char* edit, const char* option,
                              QButtonGroup& group) {
  const bool heights = &group == m_hgt_slot;
  auto* page = new QWidget(this);
  auto* grid = new QGridLayout(page);
  grid->setContentsMargins(0, 0, 0, 0);
  for (int slot = 0; slot < count; ++slot) {
    const QString number = QString::number(slot + 1);
    auto* radio = new QRadioButton(number, page);
    radio->setObjectName(QLatin1String(option) + number);
    m_binder.tooltip(radio, "contours_slot");
    group.addButton(radio, slot);
    PathEdit* path =
        m_form->path(field_name(field, slot), PathEdit::Kind::folder, QLatin1String(edit) + number);
    path->set_title(m_binder.text(Section::labels, "select_directory"));
    m_binder.name(path->line(), Section::labels, heights ? "hgt_folder" : "clp_folder");
    connect(path, &PathEdit::path_chosen, this,
            [this, heights](const QString& text) { check_folder(text, heights); });
    grid->addWidget(radio, slot, 0);
    grid->addWidget(path, slot, 1);
  }
  auto* special = new QRadioButton(page);
  special->setObjectName(QLatin1String(option) + QLatin1String(heights ? "auto" : "default"));
  m_binder.caption(special, Section::labels, heights ? "auto_search" : "clip_default");
  m_binder.tooltip(special, heights ? "contours_auto" : "contours_default");
  group.addButton(special, special_choice);
  grid->addWidget(special, count, 0, 1, 2);
  return page;
}

QWidget* contours::make_lists() {
  auto* page = new QWidget(this);
  auto* grid = new QGridLayout(page);
  grid->setContentsMargins(0, 0, 0, 0);
  m_binder.tooltip(m_heights, "contours_heights");
  m_binder.tooltip(m_clips, "contours_clips");
  m_count->setObjectName(QStringLiteral("Label3"));
  grid->addWidget(label_for(m_heights, "hgt_files"), 0, 0);
  grid->addWidget(label_for(m_clips, "clip_files"), 0, 1);
  grid->addWidget(m_heights, 1, 0);
  grid->addWidget(m_clips, 1, 1);
  grid->addWidget(m_count, 2, 0, 1, 2);
  return page;
}

QWidget* contours::make_dem() {
  auto* page = new QWidget(this);
  auto* grid = new QGridLayout(page);
  grid->setContentsMargins(0, 0, 0, 0);
  PathEdit* tool = m_form->path("osmconvert", PathEdit::Kind::file, QStringLiteral("Text1"));
  tool->set_filters(program_filters("osmconvert(exe)"));
  QPlainTextEdit* options = m_form->lines("dem-options", QStringLiteral("Text3"));
  options->setTabChangesFocus(true);
  options->setMaximumHeight(options_height);
  QPushButton* defaults = button("Command5", "defaults", "dem_defaults", [options] {
    Settings initial = default_settings("");
    options->setPlainText(shown_text(initial.dem_options));
  });
  grid->addWidget(label_for(tool->line(), "osmconvert"), 0, 0);
  grid->addWidget(tool, 0, 1, 1, 2);
  grid->addWidget(label_for(options, "dem_options"), 1, 0);
  grid->addWidget(options, 1, 1);
  grid->addWidget(defaults, 1, 2, Qt::AlignTop);
  auto* links = new QHBoxLayout;
  links->addWidget(
      button("Label4", "osmconvert_page", "osmconvert_page", [this] { open_page(osmconvert_page); }));
  links->addWidget(button("Label6", "srtm_page", "srtm_page",
                          [this] { open_page(srtm_base_address(m_workspace.settings)); }));
  links->addStretch();
  m_accept = button("contours_ok", "ok", "contours_ok", [this] { accept(); });
  grid->addLayout(links, 2, 0, 1, 3);
  return page;
}

void contours::show_view() {
  const bool clips = m_clip_view->isChecked();
  m_views->setCurrentIndex(clips ? 1 : 0);
  m_caption->setText(clips ? m_binder.text(Section::labels, "clip_settings") + QStringLiteral(" – ") +
                                 m_binder.text(Section::labels, "used_for_clipping")
                           : m_binder.text(Section::labels, "hgt_folder"));
  show_files();
}

std::string contours::slot_folder(const QButtonGroup& group, const char* field) const {
  const int id = group.checkedId();
  const int current = &group == m_hgt_slot ? m_workspace.settings.hgt_slot : 0;
  const int slot = id >= 0 && id != special_choice ? id : current;
  if (id == special_choice && &group == m_clip_slot) return m_workspace.path(default_clip_folder);
  const auto* path = qobject_cast<PathEdit*>(m_form->control(field_name(field, slot)));
  return path == nullptr ? "" : std::string(trim(from_qt(path->text())));
}

void contours::show_files() {
  Settings shown = m_workspace.settings;
  if (!take_choices(shown).ok()) return;  // a value that is not finished yet; it is told when it is kept
  fill(*m_heights, current_hgt_folder(shown), {".hgt", "hgt.zip"});
  fill(*m_clips, slot_folder(*m_clip_slot, "clip-folder-"), {".pbf"});
  const std::size_t count = contour_cells(m_workspace, m_prompts, shown).to_make.size();
  m_count->setText(m_binder.text(Section::labels, "osm_to_create") + QString::number(count));
}

void contours::check_folder(const QString& path, bool heights) {
  const std::string folder(trim(from_qt(path)));
  if (folder.empty()) return;
  if (!platform::is_absolute(folder) || !folder_exists(folder))
    m_prompts.tell(m_workspace.message(message_no_folder) + folder, Icon::warning);
  else if (heights && !holds_heights(folder))
    m_prompts.tell(from_qt(m_binder.text(Section::labels, "hgt_hint")));
}

// What the window shows, but for the choice of a folder of clips.
Status contours::take_choices(Settings& settings) const {
  Status taken = m_form->take(settings);
  settings.hgt_auto_search = m_hgt_slot->checkedId() == special_choice;
  if (!settings.hgt_auto_search && m_hgt_slot->checkedId() >= 0) settings.hgt_slot = m_hgt_slot->checkedId();
  return taken;
}

void contours::accept() {
  Settings changed = m_workspace.settings;
  if (const Status taken = take_choices(changed); !taken.ok())
    return m_prompts.tell(taken.error, Icon::warning);
  if (m_clip_slot->checkedId() == special_choice) {
    if (!use_clip_folder(changed, m_workspace.path(default_clip_folder)))
      return m_prompts.tell("Check the 5 clip folders you have specified", Icon::warning);
  } else if (m_clip_slot->checkedId() >= 0) {
    changed.clip_slot = m_clip_slot->checkedId();
  }
  // A folder that was typed has not been looked at yet.
  check_folder(to_qt(slot_folder(*m_hgt_slot, "hgt-folder-")), true);
  if (m_clip_slot->checkedId() != special_choice)
    check_folder(to_qt(slot_folder(*m_clip_slot, "clip-folder-")), false);
  m_workspace.settings = changed;
  save_settings();
  QDialog::accept();
}

}  // namespace ferrowen::ui
