// What the converters gpx2mp and kml2mp share as windows: the files, a look at what will be written, progress
// and stop, the results, and the way from there to a map.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <optional>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "mp/conversion.hpp"
#include "ui/shape_layer.hpp"
#include "ui/text_binder.hpp"
#include "ui/tile_plot.hpp"
#include "ui/type_box.hpp"
#include "ui/window_progress.hpp"

namespace ferrowen::ui {

// Controls, by object name, beside those of each window:
//   mp_files       files to convert; they may be dropped on the window   mp_add, mp_remove
//   mp_plot        the lines and points that will be written             mp_plot_file   of which file
//   mp_convert, mp_stop, mp_bar, mp_status, mp_elapsed                   mp_close
//   Label2         summary of what was written                           mp_results     the files written
//   mp_encoding    how a map keeps the labels                            mp_build, mp_show
class ConverterWindow : public QDialog {
  Q_OBJECT
 public:
  void add_files(const QStringList& paths);
  // The MP file that the person wants a map of; empty when the window was just closed.
  [[nodiscard]] QString file_to_build() const { return m_file_to_build; }

  void reject() override;  // stops a conversion first
  void done(int result) override;

 Q_SIGNALS:
  void preview_shown();
  void converted();

 protected:
  struct Format {
    const char* name;       // of the window
    const char* title_key;  // label
    FileFilter filter;
    std::string ending, refusal;
  };
  ConverterWindow(Workspace& workspace, Prompts& prompts, Format format, QWidget* parent);

  // The window's own controls, into this form.
  virtual void make_choices(QFormLayout& form) = 0;
  // Their values, as what the conversion works with.
  virtual SourceFormat take_choices() = 0;
  // A type that the conversion has shortened, back into its box.
  virtual void show_choices() = 0;
  // Called when a look at a file is over, for those who show more of it.
  virtual void show_preview_text() {}
  // Called at the end of each window's constructor.
  void finish_window();

  TypeBox* type_box(QFormLayout& form, const char* name, const char* label_key, MpKind kind,
                    const std::string& type);
  template <typename Button>
  Button* caption(Button* button, const char* name, const char* key) {
    button->setObjectName(QLatin1String(name));
    m_binder.caption(button, Section::labels, key);
    return button;
  }
  // The preview follows this control.
  void preview_soon() { m_preview_timer.start(); }

  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

  Workspace& m_workspace;
  Prompts& m_prompts;
  TextBinder m_binder;

 private:
  QPushButton* push_button(const char* name, Section section, const char* key, const char* tooltip_key);
  QWidget* make_left();
  QWidget* scrolled(QWidget* content);
  QWidget* make_files();
  QWidget* make_results();
  QWidget* make_right();
  QWidget* make_bottom();
  void choose_files();
  void convert();
  void show_result();
  void show_preview();
  void build_map();
  void set_busy(bool busy);
  void update_buttons();
  [[nodiscard]] std::vector<std::string> files() const;

  Format m_format;
  std::optional<WindowProgress> m_progress;
  Conversion m_result;
  QString m_file_to_build;
  bool m_busy = false, m_previewing = false, m_convert_next = false, m_close_when_done = false;
  QTimer m_preview_timer;

  QListWidget *m_files = nullptr, *m_results = nullptr;
  QPushButton *m_add = nullptr, *m_remove = nullptr, *m_convert = nullptr, *m_stop = nullptr,
              *m_build = nullptr, *m_show = nullptr;
  QComboBox* m_encoding = nullptr;
  QLabel *m_summary = nullptr, *m_plot_file = nullptr, *m_status = nullptr, *m_elapsed = nullptr;
  QProgressBar* m_bar = nullptr;
  QSplitter* m_columns = nullptr;
  QWidget *m_choices = nullptr, *m_result_box = nullptr;
  TilePlot* m_plot = nullptr;
  ShapeLayer* m_shapes = nullptr;  // owned by the plot
};

}  // namespace ferrowen::ui
