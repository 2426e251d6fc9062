#include "ui/option_list.hpp"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/qt_text.hpp"

namespace ferrowen::ui {

namespace {

constexpr int name_column = 0, place_column = 1;
constexpr int list_share = 3, help_share = 2;

QString html_of(const CatalogueOption& option) {
  const QString equals = option.hint.empty() ? QString() : QLatin1Char('=') + to_qt(option.hint);
  const bool optional = option.kind == OptionKind::optional_value && !equals.isEmpty();
  const QString head =
      to_qt(option.name) + (optional ? QLatin1Char('[') + equals + QLatin1Char(']') : equals);
  const QString section = option.section.empty()
                              ? QString()
                              : QStringLiteral("<p><i>%1</i></p>").arg(to_qt(option.section).toHtmlEscaped());
  return QStringLiteral("<p><b>%1</b></p>%2<p style=\"white-space: pre-wrap\">%3</p>")
      .arg(head.toHtmlEscaped(), section, to_qt(option.help).toHtmlEscaped());
}

// Every word of the search must stand in the name or the help.
bool matches(const CatalogueOption& option, const QStringList& words) {
  const QString text = to_qt(option.name) + QLatin1Char(' ') + to_qt(option.help);
  return std::all_of(words.begin(), words.end(),
                     [&](const QString& each) { return text.contains(each, Qt::CaseInsensitive); });
}

}  // namespace

OptionList::OptionList(TextBinder& binder, QWidget* parent)
    : QWidget(parent),
      m_binder(binder),
      m_search(new QLineEdit(this)),
      m_list(new QTreeWidget(this)),
      m_state(new QLabel(this)),
      m_help(new QTextBrowser(this)) {
  m_search->setObjectName(QStringLiteral("option_search"));
  m_search->setClearButtonEnabled(true);
  m_search->installEventFilter(this);
  binder.custom([this] {
    m_search->setPlaceholderText(m_binder.text(Section::labels, "option_search"));
    m_list->setHeaderLabels(
        {m_binder.text(Section::labels, "option_name"), m_binder.text(Section::labels, "option_place")});
  });
  binder.tooltip(m_search, "option_search");
  m_list->setObjectName(QStringLiteral("option_list"));
  m_list->setRootIsDecorated(false);
  m_list->setUniformRowHeights(true);
  m_list->setAlternatingRowColors(true);
  m_list->installEventFilter(this);
  m_list->header()->setStretchLastSection(false);
  m_list->header()->setSectionResizeMode(name_column, QHeaderView::Stretch);
  m_list->header()->setSectionResizeMode(place_column, QHeaderView::ResizeToContents);
  binder.name(m_list, Section::labels, "option_list");
  m_state->setObjectName(QStringLiteral("option_state"));
  m_state->setWordWrap(true);
  m_help->setObjectName(QStringLiteral("option_help"));
  m_help->setOpenLinks(false);
  m_help->setTabChangesFocus(true);
  binder.name(m_help, Section::labels, "option_help");

  auto* label = new QLabel(this);
  label->setBuddy(m_search);
  binder.caption(label, Section::commands, "search");
  binder.name(m_search, Section::labels, "option_search");
  auto* search_row = new QHBoxLayout;
  search_row->addWidget(label);
  search_row->addWidget(m_search, 1);
  auto* upper = new QWidget(this);
  auto* upper_column = new QVBoxLayout(upper);
  upper_column->setContentsMargins(0, 0, 0, 0);
  upper_column->addLayout(search_row);
  upper_column->addWidget(m_list, 1);
  upper_column->addWidget(m_state);
  auto* rows = new QSplitter(Qt::Vertical, this);
  rows->setChildrenCollapsible(false);
  rows->addWidget(upper);
  rows->addWidget(m_help);
  rows->setStretchFactor(0, list_share);
  rows->setStretchFactor(1, help_share);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(rows);

  connect(m_search, &QLineEdit::textChanged, this, &OptionList::filter);
  connect(m_list, &QTreeWidget::itemDoubleClicked, this, &OptionList::chosen);
  connect(m_list, &QTreeWidget::currentItemChanged, this, [this] {
    show_help();
    Q_EMIT current_changed();
  });
}

void OptionList::show_options(const std::vector<CatalogueOption>& options) {
  m_options = options;
  m_list->clear();
  for (const CatalogueOption& option : m_options) {
    auto* item = new QTreeWidgetItem(m_list, {to_qt(option.name), QString()});
    item->setToolTip(name_column, to_qt(option.name));
  }
  filter();
}

void OptionList::show_state(const QString& text) { m_state->setText(text); }

void OptionList::show_count() {
  int shown = 0;
  for (int row = 0; row < m_list->topLevelItemCount(); ++row)
    shown += m_list->topLevelItem(row)->isHidden() ? 0 : 1;
  const QString all = QString::number(m_list->topLevelItemCount());
  show_state(m_binder.text(Section::labels, "option_count").arg(QString::number(shown), all));
}

void OptionList::show_places(const OptionsLint& lint) {
  for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
    const OptionPlace* place = lint.find(m_options[static_cast<std::size_t>(row)].name);
    QTreeWidgetItem* item = m_list->topLevelItem(row);
    QString text;
    if (place != nullptr)
      text = m_binder.text(Section::labels, place->active ? "option_used" : "option_off")
                 .arg(place->range.line + 1);
    if (item->text(place_column) == text) continue;
    item->setText(place_column, text);
    QFont font = m_list->font();
    font.setBold(place != nullptr && place->active);
    item->setFont(name_column, font);
  }
}

const CatalogueOption* OptionList::current() const {
  QTreeWidgetItem* item = m_list->currentItem();
  if (item == nullptr || item->isHidden()) return nullptr;
  return &m_options[static_cast<std::size_t>(m_list->indexOfTopLevelItem(item))];
}

void OptionList::filter() {
  const QStringList words = m_search->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  QTreeWidgetItem* first = nullptr;
  QTreeWidgetItem* first_by_name = nullptr;
  for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
    QTreeWidgetItem* item = m_list->topLevelItem(row);
    item->setHidden(!matches(m_options[static_cast<std::size_t>(row)], words));
    if (item->isHidden()) continue;
    if (first == nullptr) first = item;
    const bool named =
        !words.isEmpty() && item->text(name_column).contains(words.first(), Qt::CaseInsensitive);
    if (first_by_name == nullptr && named) first_by_name = item;
  }
  // While a person types the best hit is the chosen one: a name before a word of the help.
  if (first_by_name != nullptr && !words.isEmpty()) first = first_by_name;
  if (m_list->currentItem() == nullptr || m_list->currentItem()->isHidden() || !words.isEmpty())
    m_list->setCurrentItem(first);
  if (first != nullptr && m_list->currentItem() != nullptr) m_list->scrollToItem(m_list->currentItem());
  show_count();
  show_help();
  Q_EMIT current_changed();
}

void OptionList::show_help() {
  const CatalogueOption* option = current();
  m_help->setHtml(option == nullptr ? QString() : html_of(*option));
}

// Up and down move in the list while a person types; Enter takes the option.
bool OptionList::search_key(int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Q_EMIT chosen();
      return true;
    case Qt::Key_Escape:
      if (m_search->text().isEmpty()) return false;
      m_search->clear();
      return true;
    default:
      return false;
  }
}

bool OptionList::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  auto* key_event = static_cast<QKeyEvent*>(event);
  const int key = key_event->key();
  if (watched == m_search && (key == Qt::Key_Up || key == Qt::Key_Down)) {
    QCoreApplication::sendEvent(m_list, event);
    return true;
  }
  const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (watched == m_search || enter) return search_key(key);
  return QWidget::eventFilter(watched, event);
}

}  // namespace ferrowen::ui
