// editcontours: makes contour files from heights, and helps to download what is missing.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>

#include "ui/path_edit.hpp"
#include "ui/tool_window.hpp"

namespace ferrowen::ui {

// Controls, by object name:
//   List1   heights of the current area    List3   further heights, used instead when some are selected
//   List2   contours to be made            Label9  the height folder
//   Text1   interval    Text2  tolerance   Text3   contour tool          Command4  chooses it
//   Check1  overwrite   Check2 show the console   Check3 in the working folder     checkerror  pause
//   Command7  creates   Command14 checks   Command13 counts   Command3  download pages
//   Command8, Command9  unzip, one on each page
//   Text4   base address                   Combo1  region     Label6   page of the contour tool
//   List4   needed, List5  not downloaded  Label8  their count
class editcontours : public ToolWindow {
  Q_OBJECT
 public:
  editcontours(Workspace& workspace, Prompts& prompts, QWidget* parent = nullptr);
  void done(int result) override;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QWidget* make_lists();
  QWidget* make_choices();
  QWidget* make_make_row();
  QWidget* make_download();
  QCheckBox* flag(const char* name, const char* key);
  void show_area();
  void show_expected();
  void count_heights();
  void create_contours();
  void unpack();
  void open_download_pages();
  [[nodiscard]] std::vector<std::string> selected_heights() const;
  void tell_missing_folder();
  void keep_choices();
  void take_choices(long& interval, double& tolerance);

  QListWidget *m_area, *m_further, *m_expected, *m_needed, *m_missing;
  QLineEdit *m_interval, *m_tolerance, *m_base;
  PathEdit* m_tool;
  QLabel *m_folder, *m_summary;
  QCheckBox *m_overwrite, *m_show_console, *m_work_folder, *m_pause;
  QComboBox* m_region;
};

}  // namespace ferrowen::ui
