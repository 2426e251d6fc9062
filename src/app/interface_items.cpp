#include "app/interface_lists.hpp"

namespace ferrowen {

namespace {

std::vector<InterfaceItem> all_labels() {
  std::vector<InterfaceItem> items = labels_items();
  items.insert(items.end(), said_items().begin(), said_items().end());
  items.insert(items.end(), finding_items().begin(), finding_items().end());
  items.insert(items.end(), word_items().begin(), word_items().end());
  return items;
}

}  // namespace

const std::vector<InterfaceItem>& interface_items(Section section) {
  switch (section) {
    case Section::commands:
      return commands_items();
    case Section::settings:
      return settings_items();
    case Section::menus:
      return menus_items();
    case Section::tooltips:
      return tooltips_items();
    case Section::labels:
      break;
  }
  static const std::vector<InterfaceItem> labels = all_labels();
  return labels;
}

}  // namespace ferrowen
