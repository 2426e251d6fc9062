// Settings as `ferrowen settings` shows and takes them.
#pragma once

#include <string>
#include <string_view>

#include "app/settings.hpp"
#include "base/status.hpp"
#include "cli/session.hpp"

namespace ferrowen {

// The plain value; several lines are separated by LF.
std::string plain_value(const Settings& settings, const Field& field);
// Its first line, with a mark when there are more.
std::string value_on_one_line(const Settings& settings, const Field& field);
// Name, page, label, type and the value in the JSON type that fits.
Json field_object(const Settings& settings, const Field& field);
// All fields, grouped by page; with the label below each when `with_labels`.
std::string settings_table(const Settings& settings, bool with_labels);

// Takes "NAME=VALUE" over into the record. In a field of several lines the two characters "\n" begin a new
// line; a relative path becomes absolute. On success `field` is the field that was set.
Status assign_text(Settings& settings, std::string_view assignment, const Field*& field);
// The field of this name, or an error that proposes similar names.
Result<const Field*> field_named(std::string_view name);

}  // namespace ferrowen
