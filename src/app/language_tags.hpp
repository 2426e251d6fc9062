// The fixed words of a language file, for its reader and its template.
#pragma once

#include <string>
#include <string_view>

#include "app/interface_texts.hpp"

namespace ferrowen {

inline constexpr std::string_view language_marker = "<language>";
inline constexpr std::string_view language_name_start = "mlanguage=";
inline constexpr std::string_view messages_tag = "<messages>";
inline constexpr char language_comment = '#';

inline constexpr std::array<std::string_view, section_count> section_names = {"commands", "settings", "menus",
                                                                              "tooltiptxt", "labels"};

inline std::string opening_tag(Section section) {
  return "<" + std::string(section_names.at(static_cast<std::size_t>(section))) + ">";
}
inline std::string closing_tag(Section section) {
  return "</" + std::string(section_names.at(static_cast<std::size_t>(section))) + ">";
}

}  // namespace ferrowen
