// Settings for tests, written as on a command line.
#pragma once

#include <doctest/doctest.h>

#include <string>
#include <string_view>

#include "app/settings.hpp"
#include "base/text.hpp"

namespace ferrowen::test {

// Takes "name=value; name=value"; a blank value gives the field's default.
inline void assign(Settings& settings, std::string_view assignments) {
  for (const std::string& one : split(assignments, "; ")) {
    const Field* field = find_field(one.substr(0, one.find('=')));
    REQUIRE(field != nullptr);
    assign_stored(settings, *field, one.substr(one.find('=') + 1), "");
  }
}

inline Settings settings_of(std::string_view assignments) {
  Settings settings = default_settings("");
  assign(settings, assignments);
  return settings;
}

}  // namespace ferrowen::test
