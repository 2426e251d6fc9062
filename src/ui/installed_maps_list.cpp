#include "ui/installed_maps_list.hpp"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSplitter>
#include <QVBoxLayout>

#include "base/fold_name.hpp"
#include "pipeline/registration.hpp"
#include "platform/desktop.hpp"
#include "ui/push_button.hpp"
#include "ui/qt_text.hpp"
#include "ui/surplus.hpp"

namespace ferrowen::ui {

namespace {

constexpr int product_column = 0, fid_column = 1, typ_column = 2, columns = 4;
constexpr int window_width = 960, window_height = 600;
constexpr int product_width = 220, typ_width = 220;

// Family IDs are numbers and sort as such.
class MapItem : public QTreeWidgetItem {
 public:
  MapItem(const InstalledMap& map, int index)
      : QTreeWidgetItem({to_qt(map.product), to_qt(map.fid), to_qt(map.typ), to_qt(map.location)}) {
    setData(product_column, Qt::UserRole, index);
    setTextAlignment(fid_column, Qt::AlignRight | Qt::AlignVCenter);
    // A narrow window cuts the paths off.
    for (int column = 0; column < columns; ++column)
      setToolTip(column, text(column));
  }
  bool operator<(const QTreeWidgetItem& other) const override {
    const int column = treeWidget() == nullptr ? product_column : treeWidget()->sortColumn();
    if (column == fid_column) return text(column).toInt() < other.text(column).toInt();
    return QString::localeAwareCompare(text(column), other.text(column)) < 0;
  }
};

}  // namespace

installed_maps_list::installed_maps_list(Workspace& workspace, Prompts& prompts, Progress& progress,
                                         QWidget* parent)
    : QDialog(parent),
      open_folder(platform::open_with_desktop),
      m_workspace(workspace),
      m_prompts(prompts),
      m_progress(progress),
      m_binder(workspace.texts) {
  setObjectName(QStringLiteral("installed_maps_list"));
  setWindowTitle(m_binder.text(Section::labels, "maps_title"));
  auto* label = new QLabel(this);
  m_search = new QLineEdit(this);
  m_search->setObjectName(QStringLiteral("maps_search"));
  m_search->setClearButtonEnabled(true);
  m_search->installEventFilter(this);
  label->setBuddy(m_search);
  m_binder.caption(label, Section::commands, "search");
  m_binder.tooltip(m_search, "maps_search");
  m_count = new QLabel(this);
  m_count->setObjectName(QStringLiteral("maps_count"));
  auto* top = new QHBoxLayout;
  top->addWidget(label);
  top->addWidget(m_search, 1);
  top->addWidget(m_count);
  auto* rows = new QSplitter(Qt::Vertical, this);
  rows->setChildrenCollapsible(false);
  rows->addWidget(make_list());
  rows->addWidget(make_values());
  rows->setStretchFactor(0, 3);
  rows->setStretchFactor(1, 2);
  m_place = new QLabel(this);
  m_place->setObjectName(QStringLiteral("maps_place"));
  m_place->setTextFormat(Qt::PlainText);
  m_place->setWordWrap(true);
  m_place->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* column = new QVBoxLayout(this);
  column->addLayout(top);
  column->addWidget(rows, 1);
  column->addWidget(m_place);
  column->addWidget(make_buttons());
  connect(m_search, &QLineEdit::textChanged, this, &installed_maps_list::filter);
  assign_mnemonics(*this);
  resize(window_width, window_height);
  refresh();
  m_search->setFocus();
}

QWidget* installed_maps_list::make_list() {
  m_list = new QTreeWidget(this);
  m_list->setObjectName(QStringLiteral("Li"));
  m_list->setRootIsDecorated(false);
  m_list->setAlternatingRowColors(true);
  m_list->setUniformRowHeights(true);
  m_list->setColumnCount(columns);
  m_list->setHeaderLabels(
      {m_binder.text(Section::labels, "maps_product"), m_binder.text(Section::labels, "maps_fid"),
       m_binder.text(Section::labels, "maps_typ"), m_binder.text(Section::labels, "maps_location")});
  m_list->installEventFilter(this);
  m_binder.name(m_list, Section::labels, "maps_title");
  QHeaderView* header = m_list->header();
  header->setSectionResizeMode(fid_column, QHeaderView::ResizeToContents);
  header->resizeSection(product_column, product_width);
  header->resizeSection(typ_column, typ_width);
  m_list->sortByColumn(product_column, Qt::AscendingOrder);
  connect(m_list, &QTreeWidget::currentItemChanged, this, &installed_maps_list::show_chosen);
  connect(m_list, &QTreeWidget::itemDoubleClicked, this, &installed_maps_list::open_chosen);
  return m_list;
}

QWidget* installed_maps_list::make_values() {
  auto* box = new QWidget(this);
  auto* label = new QLabel(box);
  m_values = new QPlainTextEdit(box);
  m_values->setObjectName(QStringLiteral("maps_values"));
  m_values->setReadOnly(true);
  m_values->setTabChangesFocus(true);
  m_values->setLineWrapMode(QPlainTextEdit::NoWrap);
  m_values->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  label->setBuddy(m_values);
  m_binder.caption(label, Section::labels, "maps_values");
  auto* column = new QVBoxLayout(box);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(label);
  column->addWidget(m_values, 1);
  return box;
}

QWidget* installed_maps_list::make_buttons() {
  auto* buttons = new QDialogButtonBox(this);
  const auto add = [&](const char* name, const char* key, void (installed_maps_list::*slot)()) {
    QPushButton* button = push_button(buttons, name);
    buttons->addButton(button, QDialogButtonBox::ActionRole);
    m_binder.caption(button, Section::commands, key);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
  };
  m_remove = add("maps_remove", "remove_map", &installed_maps_list::remove_chosen);
  m_open = add("maps_open", "open_folder", &installed_maps_list::open_chosen);
  m_copy = push_button(buttons, "maps_copy");
  buttons->addButton(m_copy, QDialogButtonBox::ActionRole);
  m_binder.caption(m_copy, Section::commands, "copy");
  add("maps_refresh", "refresh", &installed_maps_list::refresh);
  add("maps_unused", "unused_maps", &installed_maps_list::show_unused);
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  close->setObjectName(QStringLiteral("maps_close"));
  close->setAutoDefault(false);
  m_binder.caption(close, Section::commands, "close");
  m_binder.tooltip(m_remove, "maps_remove");
  m_binder.tooltip(m_copy, "maps_copy");
  connect(m_copy, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(m_values->toPlainText()); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  return buttons;
}

void installed_maps_list::refresh() {
  m_registry = open_registry(m_workspace);
  const InstalledMap* before = chosen();
  const bool is_chosen = before != nullptr;
  const std::string key = is_chosen ? before->key : "";
  m_maps = querymapsource(m_workspace, *m_registry, m_prompts, m_progress);
  const std::string place = m_registry->place();
  m_place->setText(place.empty()
                       ? m_binder.text(Section::labels, "maps_place_system")
                       : m_binder
                             .text(Section::labels,
                                   m_registry->wine_prefix().empty() ? "maps_place_own" : "maps_place_wine")
                             .arg(to_qt(place)));
  m_list->clear();
  for (int index = 0; index < static_cast<int>(m_maps.size()); ++index) {
    auto* item = new MapItem(m_maps[static_cast<std::size_t>(index)], index);
    m_list->addTopLevelItem(item);
    const InstalledMap& map = m_maps[static_cast<std::size_t>(index)];
    // At first the one whose name stood in the way of the last registration.
    const bool is_wanted =
        is_chosen ? map.key == key : same_name(map.product, m_workspace.product_to_replace);
    if (is_wanted) m_list->setCurrentItem(item);
  }
  m_list->sortItems(m_list->sortColumn(), m_list->header()->sortIndicatorOrder());
  filter();
}

void installed_maps_list::filter() {
  const QString word = m_search->text().trimmed();
  int shown = 0;
  QTreeWidgetItem* first = nullptr;
  for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
    QTreeWidgetItem* item = m_list->topLevelItem(row);
    bool matches = word.isEmpty();
    for (int column = 0; column < columns; ++column)
      matches = matches || item->text(column).contains(word, Qt::CaseInsensitive);
    item->setHidden(!matches);
    if (!matches) continue;
    if (first == nullptr) first = item;
    ++shown;
  }
  if (m_list->currentItem() == nullptr || m_list->currentItem()->isHidden()) m_list->setCurrentItem(first);
  m_count->setText(m_binder.text(Section::labels, "maps_count").arg(shown).arg(m_maps.size()));
  show_chosen();
}

const InstalledMap* installed_maps_list::chosen() const {
  const QTreeWidgetItem* item = m_list->currentItem();
  if (item == nullptr || item->isHidden()) return nullptr;
  const auto index = static_cast<std::size_t>(item->data(product_column, Qt::UserRole).toInt());
  return index < m_maps.size() ? &m_maps[index] : nullptr;
}

void installed_maps_list::show_chosen() {
  const InstalledMap* map = chosen();
  m_remove->setEnabled(map != nullptr);
  m_open->setEnabled(map != nullptr && !map->path.empty());
  m_copy->setEnabled(map != nullptr);
  QString text;
  if (map == nullptr)
    text = to_qt(m_maps.empty() ? m_workspace.message(22) : std::string());
  else if (map->key.empty())
    text = m_binder.text(Section::labels, "maps_package").arg(to_qt(map->path));
  else
    for (const std::string& line : family_values(*m_registry, *map))
      text += shown_text(line) + QLatin1Char('\n');
  m_values->setPlainText(text);
}

void installed_maps_list::remove_chosen() {
  const InstalledMap* map = chosen();
  if (map == nullptr) return;
  // Packages have no key; their names tell them apart.
  const MapChoice choice{map->product, map->fid, map->key};
  remove_registered_map(m_workspace, m_prompts, m_progress, *m_registry, choice);
  refresh();
}

void installed_maps_list::open_chosen() {
  const InstalledMap* map = chosen();
  if (map == nullptr || map->path.empty()) return;
  const std::string problem = open_folder(map->path);
  if (!problem.empty())
    m_prompts.tell(m_workspace.message(203) + "\r\n" + map->path + "\r\n" + problem, Icon::warning);
}

void installed_maps_list::show_unused() {
  surplus(m_workspace, m_prompts, m_progress, this).exec();
  refresh();
}

bool installed_maps_list::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (watched == m_list && key == Qt::Key_Delete) {
    remove_chosen();
    return true;
  }
  if (watched == m_search && (key == Qt::Key_Up || key == Qt::Key_Down)) {
    QCoreApplication::sendEvent(m_list, event);
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace ferrowen::ui
