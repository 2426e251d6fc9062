#include "app/settings.hpp"

#include <algorithm>
#include <charconv>

#include "app/moved_folder.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t most_lines = 500;  // lines that the loader looks at
constexpr std::size_t shortest_max_nodes = 4;
constexpr int map_name_box_line = 13;  // a second box for the map name; holds the same value as line 37
constexpr std::size_t program_folder_line = 145;  // no setting: where the program folder was

std::string joined_lines(std::string_view text) { return replace_all(text, crlf, line_joint); }

std::string separate_lines(std::string_view text) { return replace_all(text, line_joint, crlf); }

// A stored value must stay on its line, whatever it holds.
std::string on_one_line(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return text;
}

std::string initial_text(const Field& field, std::string_view home) {
  std::string text = replace_all(field.initial, "{home}", home);
  text = replace_all(text, "{user}", platform::home_folder());
  if (text != field.initial && platform::separator != '/') text = replace_all(text, "/", "\\");
  return text;
}

bool flag_of(std::string_view text) { return lenient_number(text) != 0; }

template <typename Slots>
auto& slot_of(Slots& slots, int slot) {
  return slots.at(static_cast<std::size_t>(slot));
}

std::string member_text(const Settings& settings, const Field& field) {
  return std::visit(
      [&](auto member) -> std::string {
        const auto& value = settings.*member;
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, std::string>)
          return value;
        else if constexpr (std::is_same_v<Value, bool>)
          return value ? "1" : "0";
        else if constexpr (std::is_same_v<Value, int>)
          return std::to_string(value);
        else if constexpr (std::is_same_v<Value, double>)
          return number_text(value);
        else
          return slot_of(value, field.slot);
      },
      field.member);
}

void set_member(Settings& settings, const Field& field, const std::string& text) {
  std::visit(
      [&](auto member) {
        auto& value = settings.*member;
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, std::string>)
          value = text;
        else if constexpr (std::is_same_v<Value, bool>)
          value = flag_of(text);
        else if constexpr (std::is_same_v<Value, int>)
          value = static_cast<int>(lenient_whole_number(text));
        else if constexpr (std::is_same_v<Value, double>)
          value = lenient_number(replace_all(text, ",", "."));
        else
          slot_of(value, field.slot) = text;
      },
      field.member);
}

// "&h" + text must be a number other than zero.
bool is_colour(std::string_view text) {
  unsigned long number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  return error == std::errc{} && end == text.data() + text.size() && number != 0;
}

// What a person may write for a flag; nothing when it is none.
std::string flag_text(std::string_view text) {
  const std::string lower = lower_ascii(trim(text));
  for (const std::string_view word : {"1", "-1", "yes", "on", "true"})
    if (lower == word) return "1";
  for (const std::string_view word : {"0", "no", "off", "false"})
    if (lower == word) return "0";
  return "";
}

Status wrong(const Field& field, std::string_view text, std::string_view wanted) {
  return {std::string(field.name) + ": '" + std::string(text) + "' is not " + std::string(wanted) + "."};
}

bool is_thread_priority(std::string_view text) {
  const std::vector<std::string> names = split(thread_priorities, ",");
  return std::find(names.begin(), names.end(), text) != names.end();
}

// Commands say "java"; the settings only decide which program of that name it is.
Status check_java_name(std::string_view path) {
  const std::string name = lower_ascii(platform::name_of(path));
  if (name == "java" || name == "java.exe") return {};
  return {"You have selected:\r\n" + platform::name_of(path)};
}

Status check_rule(const Field& field, std::string_view text) {
  if (field.name == "colour" && !text.empty() && !is_colour(text)) return wrong(field, text, "a colour");
  if (field.name == "max-jobs" && lenient_number(text) <= 0) return {"max-jobs must be > 0 "};
  if (field.name == "output-folder" && !text.empty() && !platform::is_absolute(text))
    return wrong(field, text, "an absolute path");
  if (field.name == "thread-priority" && !text.empty() && !is_thread_priority(text))
    return wrong(field, text, "one of " + std::string(thread_priorities));
  if ((field.name == "max-nodes" || field.name == "max-areas") && !text.empty() && !is_digits(text))
    return wrong(field, text, "a whole number");
  const int slots = field.name == "hgt-slot"    ? hgt_folder_slots
                    : field.name == "clip-slot" ? clip_folder_slots
                                                : 0;
  const std::optional<long> slot = slots > 0 ? exact_whole_number(text) : std::nullopt;
  if (slot && (*slot < 0 || *slot >= slots))
    return wrong(field, text, "a number from 0 to " + std::to_string(slots - 1));
  if (field.name == "java" && !text.empty()) return check_java_name(text);
  if (must_exist(field) && !text.empty() && !folder_exists(std::string(text)))
    return {std::string(text) + " does not exist."};
  return {};
}

void apply_load_rules(LoadedSettings& loaded, std::string_view home, bool name_is_blank) {
  Settings& settings = loaded.settings;
  if (settings.max_nodes.size() < shortest_max_nodes) settings.max_nodes = "1000000";
  if (!is_colour(settings.colour)) settings.colour.clear();
  if (!settings.output_folder.empty() && !platform::is_absolute(settings.output_folder))
    settings.output_folder = initial_text(*find_field("output-folder"), home);
  if (!folder_exists(settings.styles_folder))
    loaded.notes.push_back("Please reset in " + std::string(page_name(Page::folders)));
  if (name_is_blank && settings.device_image) settings.map_name = "gmapsupp";
  settings.first_map_id = "13224385";
}

}  // namespace

std::string stored_text(const Settings& settings, const Field& field) {
  const std::string text = member_text(settings, field);
  if (field.name == "state-48" && text == "0") return "";
  return on_one_line(field.type == FieldType::lines ? joined_lines(text) : text);
}

void assign_stored(Settings& settings, const Field& field, std::string_view text, std::string_view home) {
  std::string value(trim(text).empty() ? "" : text);
  if (value.empty()) value = initial_text(field, home);
  if (field.type == FieldType::path) value = trim(value);
  set_member(settings, field, field.type == FieldType::lines ? separate_lines(value) : value);
}

bool must_exist(const Field& field) {
  return field.page == Page::folders && field.name.ends_with("-folder") && field.name != "output-folder" &&
         field.name != "map-folder";
}

Status assign_checked(Settings& settings, const Field& field, std::string_view text) {
  std::string value(text);
  if (contains(value, std::string_view("\0", 1))) return wrong(field, "(NUL)", "a text");
  if (field.type != FieldType::lines && value.find_first_of("\r\n") != std::string::npos)
    return wrong(field, text, "a text on one line");
  if (Status rule = check_rule(field, trim(value)); !rule.ok()) return rule;
  if (field.type == FieldType::flag) {
    value = flag_text(text);
    if (value.empty()) return wrong(field, text, "yes or no");
  }
  if (field.type == FieldType::number && !exact_whole_number(trim(text)))
    return wrong(field, text, "a whole number");
  if (field.type == FieldType::real && !exact_number(replace_all(trim(text), ",", ".")))
    return wrong(field, text, "a number");
  if (field.type == FieldType::path) value = trim(value);
  set_member(settings, field, field.type == FieldType::lines ? with_crlf(separate_lines(value)) : value);
  return {};
}

Settings default_settings(std::string_view home) {
  Settings settings;
  for (const Field& field : settings_fields())
    assign_stored(settings, field, "", home);
  settings.program_folder = home;
  return settings;
}

std::string settings_text(const Settings& settings) {
  const auto last_line = static_cast<std::size_t>(settings_fields().back().line);
  std::vector<std::string> lines(std::max(last_line, program_folder_line) + 1);
  for (const Field& field : settings_fields())
    lines[static_cast<std::size_t>(field.line)] = stored_text(settings, field);
  lines[map_name_box_line] = on_one_line(settings.map_name);
  lines[program_folder_line] = on_one_line(settings.program_folder);
  return join_texts(lines, crlf) + std::string(crlf);
}

LoadedSettings parse_settings(std::string_view text, std::string_view home) {
  std::vector<std::string> lines = split_lines(text);
  lines.resize(most_lines);
  LoadedSettings loaded;
  for (const Field& field : settings_fields())
    assign_stored(loaded.settings, field, lines[static_cast<std::size_t>(field.line)], home);
  loaded.settings.program_folder = lines[program_folder_line];
  follow_program_folder(loaded.settings, home);
  const bool no_name = trim(lines[static_cast<std::size_t>(find_field("map-name")->line)]).empty();
  const bool no_box_name = trim(lines[map_name_box_line]).empty();
  if (no_name && !no_box_name) loaded.settings.map_name = lines[map_name_box_line];
  apply_load_rules(loaded, home, no_name && no_box_name);
  return loaded;
}

std::string memory_of_java_options(std::string_view java_options) {
  const std::size_t start = java_options.find("Xmx");
  if (start == std::string_view::npos)
    return trim(java_options).starts_with('-') ? "" : std::string(trim(java_options));
  const std::string_view rest = java_options.substr(start + 3);
  return std::string(rest.substr(0, rest.find('m')));
}

}  // namespace ferrowen
