#include "ui/converter_window.hpp"

#include <QDir>
#include <QDragEnterEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollArea>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/coastline.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "ui/qt_text.hpp"
#include "ui/window_layout.hpp"

namespace ferrowen::ui {

namespace {

constexpr int window_width = 1020, window_height = 680;
constexpr int preview_delay_milliseconds = 150;
constexpr int shown_rows = 3;  // of the list of results
constexpr int kerning_margin = 4;

std::string path_of(const QListWidgetItem& item) { return from_qt(item.data(Qt::UserRole).toString()); }

void add_path(QListWidget& list, const std::string& path) {
  auto* item = new QListWidgetItem(to_qt(platform::name_of(path)), &list);
  item->setData(Qt::UserRole, to_qt(path));
  item->setToolTip(to_qt(path));
}

}  // namespace

ConverterWindow::ConverterWindow(Workspace& workspace, Prompts& prompts, Format format, QWidget* parent)
    : QDialog(parent),
      m_workspace(workspace),
      m_prompts(prompts),
      m_binder(workspace.texts),
      m_format(std::move(format)) {
  setObjectName(QLatin1String(m_format.name));
  setWindowTitle(m_binder.text(Section::labels, m_format.title_key));
  setAcceptDrops(true);
  m_preview_timer.setSingleShot(true);
  m_preview_timer.setInterval(preview_delay_milliseconds);
  connect(&m_preview_timer, &QTimer::timeout, this, &ConverterWindow::show_preview);
}

void ConverterWindow::finish_window() {
  m_columns = new QSplitter(Qt::Horizontal, this);
  m_columns->setChildrenCollapsible(false);
  m_columns->addWidget(make_left());
  m_columns->addWidget(make_right());
  m_columns->setStretchFactor(1, 1);
  auto* column = new QVBoxLayout(this);
  column->addWidget(m_columns, 1);
  column->addWidget(make_bottom());
  m_progress.emplace(m_workspace.texts,
                     WindowProgress::Controls{m_bar, m_elapsed, m_status, nullptr, nullptr});
  m_progress->begin();
  update_buttons();
  assign_mnemonics(*this);
  resize(window_width, window_height);
  const WindowLayout layout(m_workspace.settings);
  restoreGeometry(layout.value(objectName()));
  m_columns->restoreState(layout.value(objectName() + QStringLiteral(".columns")));
}

QPushButton* ConverterWindow::push_button(const char* name, Section section, const char* key,
                                          const char* tooltip_key) {
  auto* button = new QPushButton(this);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  m_binder.caption(button, section, key);
  m_binder.tooltip(button, tooltip_key);
  return button;
}

TypeBox* ConverterWindow::type_box(QFormLayout& form, const char* name, const char* label_key, MpKind kind,
                                   const std::string& type) {
  auto* box = new TypeBox(kind, m_binder, this);
  box->setObjectName(QLatin1String(name));
  box->set_type(type);
  m_binder.tooltip(box, "mp_type");
  auto* label = new QLabel(this);
  label->setBuddy(box);
  m_binder.caption(label, Section::labels, label_key);
  // A marked letter is drawn without kerning, a little wider than the hint of the label.
  m_binder.custom([label] { label->setMinimumWidth(label->sizeHint().width() + kerning_margin); });
  form.addRow(label, box);
  return box;
}

QWidget* ConverterWindow::make_left() {
  auto* left = new QWidget(this);
  auto* column = new QVBoxLayout(left);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(make_files(), 1);
  auto* choices = new QGroupBox(left);
  m_binder.caption(choices, Section::labels, "mp_choices");
  auto* form = new QFormLayout(choices);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  make_choices(*form);
  m_choices = choices;
  column->addWidget(choices);
  column->addWidget(make_results());
  return scrolled(left);
}

// On a small screen the results would push the buttons below it out of sight.
QWidget* ConverterWindow::scrolled(QWidget* content) {
  auto* area = new QScrollArea(this);
  area->setWidget(content);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // The results are hidden at first and counted all the same.
  const int width = std::max(content->minimumSizeHint().width(), m_result_box->minimumSizeHint().width());
  area->setMinimumWidth(width + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
  return area;
}

QWidget* ConverterWindow::make_files() {
  auto* box = new QGroupBox(this);
  m_binder.caption(box, Section::labels, "mp_files");
  m_files = new QListWidget(box);
  m_files->setObjectName(QStringLiteral("mp_files"));
  m_files->setSelectionMode(QAbstractItemView::ExtendedSelection);
  m_files->setMinimumHeight(m_files->fontMetrics().lineSpacing() * shown_rows);
  m_binder.name(m_files, Section::labels, "mp_files");
  m_binder.tooltip(m_files, "mp_files");
  m_add = push_button("mp_add", Section::commands, "mp_add", "mp_add");
  m_remove = push_button("mp_remove", Section::commands, "mp_remove", "mp_remove");
  auto* row = new QHBoxLayout;
  row->addWidget(m_add);
  row->addWidget(m_remove);
  row->addStretch();
  auto* column = new QVBoxLayout(box);
  column->addWidget(m_files, 1);
  column->addLayout(row);
  connect(m_files, &QListWidget::currentRowChanged, this, [this] { preview_soon(); });
  connect(m_add, &QPushButton::clicked, this, &ConverterWindow::choose_files);
  connect(m_remove, &QPushButton::clicked, this, [this] {
    qDeleteAll(m_files->selectedItems());
    update_buttons();
    preview_soon();
  });
  return box;
}

QWidget* ConverterWindow::make_results() {
  auto* box = new QGroupBox(this);
  m_result_box = box;
  m_binder.caption(box, Section::labels, "mp_results");
  m_results = new QListWidget(box);
  m_results->setObjectName(QStringLiteral("mp_results"));
  m_results->setMaximumHeight(m_results->fontMetrics().lineSpacing() * (shown_rows + 1));
  m_binder.name(m_results, Section::labels, "mp_results");
  m_binder.tooltip(m_results, "mp_results");
  m_summary = new QLabel(box);
  m_summary->setObjectName(QStringLiteral("Label2"));
  m_summary->setTextFormat(Qt::PlainText);
  m_encoding = new QComboBox(box);
  m_encoding->setObjectName(QStringLiteral("mp_encoding"));
  m_encoding->addItem(QStringLiteral("--unicode"));
  m_encoding->addItem(to_qt(label_code_page_option));
  m_binder.tooltip(m_encoding, "mp_encoding");
  auto* label = new QLabel(box);
  label->setBuddy(m_encoding);
  m_binder.caption(label, Section::labels, "mp_encoding");
  m_build = push_button("mp_build", Section::commands, "mp_build", "mp_build");
  m_show = push_button("mp_show", Section::commands, "mp_show", "mp_show");
  auto* encoding = new QHBoxLayout;
  encoding->addWidget(label);
  encoding->addWidget(m_encoding, 1);
  auto* row = new QHBoxLayout;
  row->addWidget(m_build);
  row->addWidget(m_show);
  row->addStretch();
  auto* column = new QVBoxLayout(box);
  column->addWidget(m_summary);
  column->addWidget(m_results);
  column->addLayout(encoding);
  column->addLayout(row);
  box->hide();
  connect(m_build, &QPushButton::clicked, this, &ConverterWindow::build_map);
  connect(m_show, &QPushButton::clicked, this, [this] {
    if (m_results->currentItem() != nullptr) show_mp(m_prompts, path_of(*m_results->currentItem()));
  });
  return box;
}

QWidget* ConverterWindow::make_right() {
  auto* right = new QWidget(this);
  m_plot_file = new QLabel(right);
  m_plot_file->setObjectName(QStringLiteral("mp_plot_file"));
  m_plot_file->setTextFormat(Qt::PlainText);
  m_plot = new TilePlot(right);
  m_plot->setObjectName(QStringLiteral("mp_plot"));
  m_binder.name(m_plot, Section::labels, "mp_plot");
  m_plot->add_layer(std::make_unique<GridLayer>());
  m_plot->add_layer(std::make_unique<CoastLayer>(load_coastline()));
  auto layer = std::make_unique<ShapeLayer>();
  m_shapes = layer.get();
  m_plot->add_layer(std::move(layer));
  m_plot->set_empty_text(m_binder.text(Section::labels, "mp_drop_here"));
  auto* column = new QVBoxLayout(right);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(m_plot_file);
  column->addWidget(m_plot, 1);
  return right;
}

QWidget* ConverterWindow::make_bottom() {
  auto* bottom = new QWidget(this);
  m_bar = new QProgressBar(bottom);
  m_bar->setObjectName(QStringLiteral("mp_bar"));
  m_binder.name(m_bar, Section::labels, "progress");
  m_elapsed = new QLabel(bottom);
  m_elapsed->setObjectName(QStringLiteral("mp_elapsed"));
  m_status = new QLabel(bottom);
  m_status->setObjectName(QStringLiteral("mp_status"));
  m_status->setTextFormat(Qt::PlainText);
  m_convert = push_button("mp_convert", Section::commands, "mp_convert", "mp_convert");
  m_stop = push_button("mp_stop", Section::commands, "stop", "mp_stop");
  auto* close = push_button("mp_close", Section::commands, "close", "mp_close");
  auto* row = new QHBoxLayout(bottom);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(m_bar, 1);
  row->addWidget(m_elapsed);
  row->addWidget(m_status);
  row->addStretch();
  row->addWidget(m_convert);
  row->addWidget(m_stop);
  row->addWidget(close);
  connect(m_convert, &QPushButton::clicked, this, &ConverterWindow::convert);
  connect(m_stop, &QPushButton::clicked, this, [this] { m_progress->request_stop(); });
  connect(close, &QPushButton::clicked, this, &ConverterWindow::reject);
  return bottom;
}

std::vector<std::string> ConverterWindow::files() const {
  std::vector<std::string> paths;
  for (int row = 0; row < m_files->count(); ++row)
    paths.push_back(path_of(*m_files->item(row)));
  return paths;
}

void ConverterWindow::add_files(const QStringList& paths) {
  for (const QString& path : paths) {
    const std::string file = platform::absolute(from_qt(path));
    const std::vector<std::string> there = files();
    if (!ends_with_ignoring_case(file, m_format.ending))
      m_prompts.tell(m_format.refusal, Icon::warning);
    else if (std::find(there.begin(), there.end(), file) == there.end())
      add_path(*m_files, file);
  }
  if (m_files->currentRow() < 0) m_files->setCurrentRow(0);
  update_buttons();
}

void ConverterWindow::choose_files() {
  const FileQuestion question{
      from_qt(m_binder.text(Section::labels, "mp_files")), {m_format.filter}, "", false};
  QStringList chosen;
  for (const std::string& file : m_prompts.choose_files(question))
    chosen << to_qt(file);
  add_files(chosen);
}

void ConverterWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!m_busy && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void ConverterWindow::dropEvent(QDropEvent* event) {
  QStringList paths;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) paths << QDir::toNativeSeparators(url.toLocalFile());
  }
  add_files(paths);
}

void ConverterWindow::update_buttons() {
  m_convert->setEnabled(!m_busy && m_files->count() > 0);
  m_remove->setEnabled(!m_busy && m_files->count() > 0);
  m_add->setEnabled(!m_busy);
  m_files->setEnabled(!m_busy);
  m_choices->setEnabled(!m_busy);
  m_stop->setEnabled(m_busy);
  const bool has_result = !m_busy && m_results->count() > 0;
  m_build->setEnabled(has_result);
  m_show->setEnabled(has_result);
}

void ConverterWindow::set_busy(bool busy) {
  m_busy = busy;
  update_buttons();
}

void ConverterWindow::convert() {
  if (m_busy) return;
  // The look at a file ends first.
  m_convert_next = m_previewing;
  if (m_previewing) return m_progress->request_stop();
  set_busy(true);
  m_progress->begin();
  m_result = convert_files(m_workspace, m_prompts, *m_progress, files(), take_choices());
  show_choices();
  show_result();
  set_busy(false);
  Q_EMIT converted();
  if (m_close_when_done) QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
}

void ConverterWindow::show_result() {
  m_results->clear();
  for (const ConvertedFile& file : m_result.files)
    add_path(*m_results, file.output);
  m_results->setCurrentRow(0);
  m_result_box->setVisible(!m_result.files.empty());
  m_summary->setText(m_binder.said(conversion_summary(m_result.counts)));
  const std::string_view key = m_result.end == ConversionEnd::cancelled ? "mp_stopped" : "mp_done";
  m_status->setText(m_binder.text(Section::labels, key).arg(m_result.files.size()).arg(m_files->count()));
}

// A click in between asks for a stop of the older look; the newer one follows it.
void ConverterWindow::show_preview() {
  if (m_busy) return;
  if (m_previewing) {
    m_progress->request_stop();
    return preview_soon();
  }
  m_previewing = true;
  m_progress->clear_stop();
  const QListWidgetItem* item = m_files->currentItem();
  const std::string file = item == nullptr ? "" : path_of(*item);
  const std::string text = file.empty() ? "" : converted_text(file, *m_progress, take_choices());
  m_shapes->set_shapes(read_mp_shapes(text));
  const bool is_empty = m_shapes->shapes().empty();
  m_plot->set_empty_text(
      !is_empty ? QString()
                : m_binder.text(Section::labels, file.empty() ? "mp_drop_here" : "mp_no_preview"));
  m_plot_file->setText(to_qt(platform::name_of(file)));
  m_plot->set_area(m_shapes->area());
  show_preview_text();
  m_progress->fraction(0);
  m_previewing = false;
  Q_EMIT preview_shown();
  if (std::exchange(m_convert_next, false) && !m_close_when_done)
    QMetaObject::invokeMethod(this, &ConverterWindow::convert, Qt::QueuedConnection);
  if (m_close_when_done) QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
}

void ConverterWindow::build_map() {
  if (m_results->currentItem() == nullptr) return;
  m_file_to_build = m_results->currentItem()->data(Qt::UserRole).toString();
  if (m_result.has_foreign_letters)
    use_label_encoding(m_workspace.settings, m_encoding->currentIndex() == 0 ? LabelEncoding::unicode
                                                                             : LabelEncoding::code_page_1251);
  accept();
}

void ConverterWindow::reject() {
  if (m_busy || m_previewing) {
    m_close_when_done = true;
    m_progress->request_stop();
    return;
  }
  QDialog::reject();
}

void ConverterWindow::done(int result) {
  m_preview_timer.stop();
  WindowLayout layout(m_workspace.settings);
  layout.set(objectName(), saveGeometry());
  layout.set(objectName() + QStringLiteral(".columns"), m_columns->saveState());
  layout.store(m_workspace.settings);
  QDialog::done(result);
}

}  // namespace ferrowen::ui
