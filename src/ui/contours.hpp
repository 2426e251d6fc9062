// contours: the folders of heights and of clipped contours, osmconvert, and the DEM options.
#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QListWidget>
#include <QStackedWidget>

#include "ui/field_form.hpp"
#include "ui/tool_window.hpp"

namespace ferrowen::ui {

// Controls, by object name:
//   Check1    switches between "HGT Folder" and "CLP Folder"      Label1   caption of the view
//   Text2_1.. folders of heights      Option1_1.. which is in use      Option1_auto     Auto Search
//   Clip2_1.. folders of clips        Option2_1.. which is in use      Option2_default  the program's own
//   folder Text1     osmconvert              Text3    DEM options             Command5         their default
//   List1     heights found           List2    clipped files found     Label3           contours to be
//   created Label4, Label6  pages of osmconvert and of SRTM                    contours_ok
class contours : public ToolWindow {
  Q_OBJECT
 public:
  // When it is accepted the settings record has been changed and saved.
  contours(Workspace& workspace, Prompts& prompts, QWidget* parent = nullptr);
  void accept() override;

 private:
  QWidget* make_slots(const char* field, int count, const char* edit, const char* option,
                      QButtonGroup& group);
  QWidget* make_lists();
  QWidget* make_dem();
  void show_view();
  void show_files();
  void check_folder(const QString& path, bool heights);
  [[nodiscard]] Status take_choices(Settings& settings) const;
  [[nodiscard]] std::string slot_folder(const QButtonGroup& group, const char* field) const;

  FieldForm* m_form;
  QCheckBox* m_clip_view;
  QLabel* m_caption;
  QStackedWidget* m_views;
  QButtonGroup *m_hgt_slot, *m_clip_slot;
  QListWidget *m_heights, *m_clips;
  QLabel* m_count;
};

}  // namespace ferrowen::ui
