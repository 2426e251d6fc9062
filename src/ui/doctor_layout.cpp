// The controls of the Style Doctor and what they are connected to.
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "ui/doctor.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int highest_draw_order = 255;
constexpr int list_share = 2, text_share = 1;
constexpr int window_share = 300;  // pixels; only their relation counts

QLabel* label_for(QWidget* control, TextBinder& binder, const char* key, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setBuddy(control);
  binder.caption(label, Section::labels, key);
  binder.name(control, Section::labels, key);
  return label;
}

}  // namespace

QPushButton* doctor::button(const char* name, const char* caption, void (doctor::*work)()) {
  auto* made = new QPushButton(this);
  made->setObjectName(QLatin1String(name));
  made->setAutoDefault(false);
  m_binder.caption(made, Section::commands, caption);
  connect(made, &QPushButton::clicked, this, work);
  return made;
}

void doctor::make_controls() {
  auto* column = new QVBoxLayout(this);
  column->addWidget(make_top());
  m_columns = new QSplitter(Qt::Horizontal, this);
  m_columns->setChildrenCollapsible(false);
  QWidget* list = make_list();
  m_columns->addWidget(list);
  m_columns->addWidget(make_style_side());
  m_columns->setStretchFactor(0, list_share);
  m_columns->setStretchFactor(1, text_share);
  m_columns->setSizes({list_share * window_share, text_share * window_share});
  auto* middle = new QHBoxLayout;
  middle->addWidget(make_checks());
  middle->addWidget(m_columns, 1);
  column->addLayout(middle, 1);
  column->addWidget(make_bottom());
}

QWidget* doctor::make_top() {
  auto* top = new QWidget(this);
  m_style = new QComboBox(top);
  m_style->setObjectName(QStringLiteral("doctor_style"));
  m_binder.tooltip(m_style, "doctor_style_box");
  m_typ_path = new PathEdit(PathEdit::Kind::file, m_prompts, m_binder, top);
  m_typ_path->line()->setObjectName(QStringLiteral("doctor_typ"));
  m_typ_path->set_filters({{"TYP (*.typ)", "*.typ"}});
  m_binder.tooltip(m_typ_path->line(), "doctor_typ_box");
  m_lowest = new QSpinBox(top);
  m_lowest->setObjectName(QStringLiteral("Combo4"));
  m_lowest->setRange(0, highest_draw_order);
  m_binder.tooltip(m_lowest, "doctor_lowest");
  auto* row = new QHBoxLayout(top);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(label_for(m_style, m_binder, "doctor_style", top));
  row->addWidget(m_style, 1);
  row->addWidget(label_for(m_typ_path->line(), m_binder, "doctor_typ", top));
  row->addWidget(m_typ_path, 2);
  row->addWidget(label_for(m_lowest, m_binder, "doctor_lowest", top));
  row->addWidget(m_lowest);
  return top;
}

QWidget* doctor::make_checks() {
  auto* side = new QWidget(this);
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  m_kinds = new QButtonGroup(this);
  for (const RuleKind kind : rule_kinds) {
    auto* option = new QRadioButton(side);
    const std::string number = std::to_string(static_cast<int>(kind));
    option->setObjectName(to_qt("Option2_" + number));
    m_binder.caption(option, Section::labels, "doctor_" + std::string(rule_file_name(kind)));
    m_kinds->addButton(option, static_cast<int>(kind));
    column->addWidget(option);
  }
  m_kinds->button(0)->setChecked(true);
  connect(m_kinds, &QButtonGroup::idClicked, this, [this] { show_kind(chosen_kind()); });
  for (const DoctorCheck check : doctor_checks) {
    auto* run_button = new QPushButton(side);
    const std::string name(check_name(check));
    run_button->setObjectName(to_qt("doctor_check_" + name));
    run_button->setAutoDefault(false);
    m_binder.caption(run_button, Section::commands, "doctor_" + name);
    m_binder.tooltip(run_button, "doctor_" + name);
    connect(run_button, &QPushButton::clicked, this, [this, check] { run(check); });
    column->addWidget(run_button);
  }
  QPushButton* all = button("doctor_all", "doctor_all", &doctor::run_all);
  QPushButton* whole = button("Command13", "doctor_whole", &doctor::whole_report);
  m_binder.tooltip(all, "doctor_all");
  m_binder.tooltip(whole, "doctor_whole");
  column->addSpacing(8);
  column->addWidget(all);
  column->addWidget(whole);
  column->addStretch(1);
  return side;
}

QWidget* doctor::make_list() {
  auto* side = new QWidget(this);
  m_filter.setSourceModel(&m_table);
  m_show = new QComboBox(side);
  m_show->setObjectName(QStringLiteral("doctor_show"));
  m_binder.name(m_show, Section::labels, "doctor_show");
  m_binder.tooltip(m_show, "doctor_show");
  auto* words = new QLineEdit(side);
  words->setObjectName(QStringLiteral("doctor_filter"));
  words->setClearButtonEnabled(true);
  words->setPlaceholderText(m_binder.text(Section::labels, "doctor_filter"));
  m_binder.name(words, Section::labels, "doctor_filter");
  m_binder.tooltip(words, "doctor_filter");
  m_list = new QTableView(side);
  m_list->setObjectName(QStringLiteral("List4"));
  m_binder.name(m_list, Section::labels, "doctor_list");
  m_list->setModel(&m_filter);
  m_list->setSortingEnabled(true);
  m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_list->setSelectionMode(QAbstractItemView::SingleSelection);
  m_list->setAlternatingRowColors(true);
  m_list->setTabKeyNavigation(false);
  m_list->setWordWrap(false);
  m_list->setIconSize({32, 16});
  m_list->verticalHeader()->hide();
  m_list->verticalHeader()->setDefaultSectionSize(m_list->fontMetrics().height() + 6);
  m_list->horizontalHeader()->setSectionResizeMode(DoctorTable::detail, QHeaderView::Stretch);
  m_list->horizontalHeader()->setHighlightSections(false);
  for (const auto& [column, width] : {std::pair(DoctorTable::marker, 34), std::pair(DoctorTable::kind, 68),
                                      std::pair(DoctorTable::finding, 190), std::pair(DoctorTable::type, 92),
                                      std::pair(DoctorTable::place, 96)})
    m_list->setColumnWidth(column, width);
  auto* row = new QHBoxLayout;
  row->addWidget(m_show);
  row->addWidget(words, 1);
  m_preview = new TypPreview(m_binder, side);
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(row);
  column->addWidget(m_list, 1);
  column->addWidget(m_preview);
  connect(m_show, &QComboBox::currentIndexChanged, this, [this](int index) {
    m_filter.set_check(index <= 0 ? std::nullopt
                                  : std::optional(static_cast<DoctorCheck>(m_show->itemData(index).toInt())));
  });
  connect(words, &QLineEdit::textChanged, &m_filter, &DoctorFilter::set_words);
  connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& now) { show_row(now); });
  connect(m_list, &QTableView::clicked, this, [this](const QModelIndex& index) { show_row(index); });
  return side;
}

QWidget* doctor::make_style_side() {
  auto* tabs = new QTabWidget(this);
  tabs->setObjectName(QStringLiteral("doctor_tabs"));
  auto* page = new QWidget(tabs);
  m_text = new StyleView(m_binder, m_prompts, page);
  m_types = new QComboBox(page);
  m_types->setObjectName(QStringLiteral("Combo3"));
  m_binder.tooltip(m_types, "doctor_types");
  auto* row = new QHBoxLayout;
  row->addWidget(label_for(m_types, m_binder, "doctor_types", page));
  row->addWidget(m_types, 1);
  auto* column = new QVBoxLayout(page);
  column->addLayout(row);
  column->addWidget(m_text, 1);
  m_conditions = new QListWidget(tabs);
  m_conditions->setObjectName(QStringLiteral("List2"));
  m_conditions->setUniformItemSizes(true);
  m_binder.name(m_conditions, Section::labels, "doctor_conditions");
  tabs->addTab(page, m_binder.text(Section::labels, "doctor_text"));
  tabs->addTab(m_conditions, m_binder.text(Section::labels, "doctor_conditions"));
  tabs->addTab(make_tags(), m_binder.text(Section::labels, "doctor_tags"));
  m_typ_list = new TypList(m_binder, tabs, TypList::Order::shown);
  m_typ_list->setObjectName(QStringLiteral("doctor_typ_list"));
  m_binder.name(m_typ_list, Section::labels, "doctor_typ_types");
  tabs->addTab(m_typ_list, m_binder.text(Section::labels, "doctor_typ_types"));
  connect(m_types, &QComboBox::currentIndexChanged, this, &doctor::show_type);
  connect(m_conditions, &QListWidget::currentRowChanged, this, &doctor::show_condition);
  return tabs;
}

QWidget* doctor::make_tags() {
  auto* page = new QWidget(this);
  m_tags = new QTreeWidget(page);
  m_tags->setObjectName(QStringLiteral("doctor_tags"));
  m_tags->setRootIsDecorated(false);
  m_tags->setUniformRowHeights(true);
  m_tags->setSortingEnabled(false);
  m_tags->setHeaderLabels({m_binder.text(Section::labels, "tag_key"),
                           m_binder.text(Section::labels, "doctor_value"),
                           m_binder.text(Section::labels, "doctor_rules")});
  m_binder.name(m_tags, Section::labels, "doctor_tags");
  auto* search = new QLineEdit(page);
  search->setObjectName(QStringLiteral("doctor_tag_search"));
  search->setClearButtonEnabled(true);
  search->setPlaceholderText(m_binder.text(Section::labels, "doctor_tag_search"));
  m_binder.name(search, Section::labels, "doctor_tag_search");
  QPushButton* web = button("doctor_tag_web", "doctor_web", &doctor::search_tag);
  m_binder.tooltip(web, "doctor_web");
  auto* row = new QHBoxLayout;
  row->addWidget(search, 1);
  row->addWidget(web);
  auto* column = new QVBoxLayout(page);
  column->addLayout(row);
  column->addWidget(m_tags, 1);
  connect(search, &QLineEdit::textChanged, this, [this](const QString& words) {
    for (int at = 0; at < m_tags->topLevelItemCount(); ++at) {
      QTreeWidgetItem* item = m_tags->topLevelItem(at);
      const QString tag = item->text(0) + QLatin1Char('=') + item->text(1);
      item->setHidden(!tag.contains(words.trimmed(), Qt::CaseInsensitive));
    }
  });
  connect(m_tags, &QTreeWidget::itemDoubleClicked, this, &doctor::search_tag);
  return page;
}

QWidget* doctor::make_bottom() {
  auto* bottom = new QWidget(this);
  m_counts = new QLabel(bottom);
  m_counts->setObjectName(QStringLiteral("doctor_counts"));
  auto* row = new QHBoxLayout(bottom);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(m_counts, 1);
  row->addWidget(button("doctor_export_text", "doctor_export_text", &doctor::export_text));
  row->addWidget(button("doctor_export_csv", "doctor_export_csv", &doctor::export_csv));
  row->addWidget(button("doctor_export_editor", "doctor_export_editor", &doctor::export_editor));
  row->addWidget(button("doctor_close", "close", &doctor::reject));
  return bottom;
}

}  // namespace ferrowen::ui
