// tag_keys: the OSM keys that map makers meet, to look up and to read about in the wiki.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <functional>
#include <string>

#include "base/prompts.hpp"
#include "ui/text_binder.hpp"

namespace ferrowen::ui {

// Controls, by object name: tag_search, tag_list, tag_open, tag_copy, tag_close.
class tag_keys : public QDialog {
  Q_OBJECT
 public:
  tag_keys(const InterfaceTexts& texts, Prompts& prompts, QWidget* parent = nullptr);

  // Opens a web address; "" or the reason why not. The desktop's browser unless a test puts something else
  // here.
  std::function<std::string(const std::string&)> open_address;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void make_list();
  void filter();
  void open_page();
  [[nodiscard]] QString current_key() const;

  Prompts& m_prompts;
  TextBinder m_binder;
  QLineEdit* m_search;
  QTreeWidget* m_list;
  QPushButton *m_open = nullptr, *m_copy = nullptr;
};

}  // namespace ferrowen::ui
