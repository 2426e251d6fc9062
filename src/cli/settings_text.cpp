#include "cli/settings_text.hpp"

#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/near_names.hpp"
#include "cli/table.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view written_line_end = "\\n";

std::string_view type_name(FieldType type) {
  switch (type) {
    case FieldType::text:
      return "text";
    case FieldType::path:
      return "path";
    case FieldType::lines:
      return "lines";
    case FieldType::number:
      return "number";
    case FieldType::real:
      return "real";
    case FieldType::flag:
      break;
  }
  return "flag";
}

Json json_value(const Field& field, const std::string& text) {
  if (field.type == FieldType::flag) return text == "1";
  if (field.type == FieldType::number) return lenient_whole_number(text);
  if (field.type == FieldType::real) return lenient_number(text);
  return text;
}

// Trimmed texts that name no file are stored like paths too.
bool names_a_file(const Field& field) {
  if (field.type != FieldType::path) return false;
  if (field.page == Page::folders || field.page == Page::tools || field.page == Page::elevation) return true;
  return field.name == "input" || field.name == "typ" || ends_with_ignoring_case(field.name, "-folder");
}

// A program may be named without a path: it is looked up in PATH then.
bool may_be_a_bare_name(const Field& field, const std::string& value) {
  const bool bare = value.find_first_of("/\\") == std::string::npos;
  return field.page == Page::tools && bare && !file_exists(value);
}

std::string absolute_value(const Field& field, const std::string& value) {
  const bool other_system = platform::separator == '/' && contains(value, ":\\");
  if (!names_a_file(field) || value.empty() || other_system || may_be_a_bare_name(field, value)) return value;
  return platform::absolute(value);
}

std::string text_for(const Field& field, std::string_view value) {
  if (field.type == FieldType::lines) return replace_all(value, written_line_end, crlf);
  return field.type == FieldType::path ? absolute_value(field, std::string(trim(value))) : std::string(value);
}

std::vector<Page> pages_in_order() {
  return {Page::map,       Page::options,  Page::splitter, Page::folders, Page::tools,
          Page::elevation, Page::identity, Page::device,   Page::program};
}

}  // namespace

std::string plain_value(const Settings& settings, const Field& field) {
  return replace_all(stored_text(settings, field), line_joint, "\n");
}

std::string value_on_one_line(const Settings& settings, const Field& field) {
  const std::vector<std::string> lines = split(plain_value(settings, field), "\n");
  std::string text = lines.empty() ? "" : lines.front();
  if (lines.size() < 2) return text;
  const std::size_t more = lines.size() - 1;
  return text + (text.empty() ? "[" : " [") + std::to_string(more) +
         (more == 1 ? " more line]" : " more lines]");
}

Json field_object(const Settings& settings, const Field& field) {
  Json object;
  object["name"] = field.name;
  object["page"] = page_name(field.page);
  object["label"] = field.label;
  object["type"] = type_name(field.type);
  object["value"] = json_value(field, plain_value(settings, field));
  return object;
}

std::string settings_table(const Settings& settings, bool with_labels) {
  Table table({{""}, {""}});
  for (const Page page : pages_in_order()) {
    table.add({std::string(page_name(page))});
    for (const Field& field : settings_fields()) {
      if (field.page != page) continue;
      table.add({"  " + std::string(field.name), value_on_one_line(settings, field)});
      if (with_labels) table.add({"", "  (" + std::string(field.label) + ")"});
    }
  }
  return table.text();
}

Status assign_text(Settings& settings, std::string_view assignment, const Field*& field) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos)
    return {"'" + std::string(assignment) + "' is not of the form NAME=VALUE."};
  const Result<const Field*> found = field_named(trim(assignment.substr(0, equals)));
  if (!found.ok()) return {found.error};
  field = found.value;
  return assign_checked(settings, *field, text_for(*field, assignment.substr(equals + 1)));
}

Result<const Field*> field_named(std::string_view name) {
  if (const Field* field = find_field(name); field != nullptr) return {field, ""};
  std::vector<std::string_view> names;
  for (const Field& field : settings_fields())
    names.push_back(field.name);
  const std::vector<std::string> near = near_names(name, names);
  std::string error = "There is no setting '" + std::string(name) + "'.";
  error += near.empty() ? " 'ferrowen settings show' lists them."
                        : " Did you mean " + join_texts(near, ", ") + "?";
  return failed<const Field*>(error);
}

}  // namespace ferrowen
