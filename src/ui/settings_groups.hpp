// Which settings stand together in the settings window, and in which order.
#pragma once

#include <string_view>
#include <vector>

#include "app/settings.hpp"

namespace ferrowen::ui {

struct SettingsGroup {
  Page page;
  std::string_view title;  // an item of the labels
  std::vector<std::string_view> fields;
};

// Closed and only to be read: values that the program keeps for itself.
inline constexpr std::string_view internal_group = "group_internal";
// Facts of the machine instead of fields.
inline constexpr std::string_view computer_group = "group_computer";

inline constexpr int page_count = static_cast<int>(Page::program) + 1;

// Every field of the record stands in one group, on the page that the settings table gives it.
const std::vector<SettingsGroup>& settings_groups();

}  // namespace ferrowen::ui
