#include "ui/tag_keys.hpp"

#include <QClipboard>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

#include "app/osm_tag_keys.hpp"
#include "platform/desktop.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int key_column = 0, meaning_column = 1, values_column = 2, columns = 3;
constexpr int window_width = 940, window_height = 560;
constexpr int values_width = 270;
constexpr const char* wiki = "https://wiki.openstreetmap.org/wiki/Key:";

bool matches(const QTreeWidgetItem& item, const QStringList& words) {
  QString text;
  for (int column = 0; column < columns; ++column)
    text += item.text(column) + QLatin1Char(' ');
  return std::all_of(words.begin(), words.end(),
                     [&](const QString& each) { return text.contains(each, Qt::CaseInsensitive); });
}

}  // namespace

tag_keys::tag_keys(const InterfaceTexts& texts, Prompts& prompts, QWidget* parent)
    : QDialog(parent),
      open_address(platform::open_with_desktop),
      m_prompts(prompts),
      m_binder(texts),
      m_search(new QLineEdit(this)),
      m_list(new QTreeWidget(this)) {
  setObjectName(QStringLiteral("tag_keys"));
  setWindowTitle(m_binder.text(Section::labels, "tag_title"));
  auto* label = new QLabel(this);
  label->setBuddy(m_search);
  m_binder.caption(label, Section::commands, "search");
  m_search->setObjectName(QStringLiteral("tag_search"));
  m_search->setClearButtonEnabled(true);
  m_search->setPlaceholderText(m_binder.text(Section::labels, "tag_search"));
  m_search->installEventFilter(this);
  m_binder.name(m_search, Section::labels, "tag_search");
  m_binder.tooltip(m_search, "tag_search");
  make_list();

  auto* buttons = new QDialogButtonBox(this);
  m_open = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
  m_copy = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  m_open->setObjectName(QStringLiteral("tag_open"));
  m_copy->setObjectName(QStringLiteral("tag_copy"));
  close->setObjectName(QStringLiteral("tag_close"));
  for (QPushButton* button : {m_open, m_copy, close})
    button->setAutoDefault(false);  // Enter opens the page of the chosen key
  m_binder.caption(m_open, Section::commands, "open_wiki");
  m_binder.tooltip(m_open, "open_wiki");
  m_binder.caption(m_copy, Section::commands, "copy");
  m_binder.caption(close, Section::commands, "close");
  auto* column = new QVBoxLayout(this);
  auto* search_row = new QHBoxLayout;
  search_row->addWidget(label);
  search_row->addWidget(m_search, 1);
  column->addLayout(search_row);
  column->addWidget(m_list, 1);
  column->addWidget(buttons);
  connect(m_search, &QLineEdit::textChanged, this, &tag_keys::filter);
  connect(m_open, &QPushButton::clicked, this, &tag_keys::open_page);
  connect(m_copy, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(current_key()); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  assign_mnemonics(*this);
  resize(window_width, window_height);
  filter();
  m_search->setFocus();
}

void tag_keys::make_list() {
  m_list->setObjectName(QStringLiteral("tag_list"));
  m_list->setRootIsDecorated(false);
  m_list->setAlternatingRowColors(true);
  m_list->setColumnCount(columns);
  m_list->setHeaderLabels({m_binder.text(Section::labels, "tag_key"),
                           m_binder.text(Section::labels, "tag_meaning"),
                           m_binder.text(Section::labels, "tag_values")});
  m_list->installEventFilter(this);
  m_binder.name(m_list, Section::labels, "tag_title");
  for (const OsmTagKey& key : osm_tag_keys()) {
    auto* item =
        new QTreeWidgetItem(m_list, {to_qt(key.key), m_binder.said(key.meaning), to_qt(key.examples)});
    // A narrow window cuts the sentences off.
    for (int column = 0; column < columns; ++column)
      item->setToolTip(column, item->text(column));
  }
  m_list->header()->setStretchLastSection(false);
  m_list->header()->setSectionResizeMode(key_column, QHeaderView::ResizeToContents);
  m_list->header()->setSectionResizeMode(meaning_column, QHeaderView::Stretch);
  m_list->header()->setSectionResizeMode(values_column, QHeaderView::Interactive);
  m_list->header()->resizeSection(values_column, values_width);
  connect(m_list, &QTreeWidget::itemDoubleClicked, this, &tag_keys::open_page);
}

QString tag_keys::current_key() const {
  const QTreeWidgetItem* item = m_list->currentItem();
  return item == nullptr || item->isHidden() ? QString() : item->text(key_column);
}

void tag_keys::filter() {
  const QStringList words = m_search->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  QTreeWidgetItem* first = nullptr;
  for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
    QTreeWidgetItem* item = m_list->topLevelItem(row);
    item->setHidden(!matches(*item, words));
    const bool named =
        !words.isEmpty() && item->text(key_column).startsWith(words.first(), Qt::CaseInsensitive);
    const bool first_named = first != nullptr && !words.isEmpty() &&
                             first->text(key_column).startsWith(words.first(), Qt::CaseInsensitive);
    if (!item->isHidden() && (first == nullptr || (named && !first_named))) first = item;
  }
  m_list->setCurrentItem(first);
  for (QPushButton* button : {m_open, m_copy})
    button->setEnabled(first != nullptr);
}

void tag_keys::open_page() {
  const QString key = current_key();
  if (key.isEmpty()) return;
  const std::string problem = open_address(wiki + from_qt(key));
  if (!problem.empty()) m_prompts.tell(problem, Icon::warning);
}

bool tag_keys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    open_page();
    return true;
  }
  if (watched == m_search && (key == Qt::Key_Up || key == Qt::Key_Down)) {
    QCoreApplication::sendEvent(m_list, event);
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace ferrowen::ui
