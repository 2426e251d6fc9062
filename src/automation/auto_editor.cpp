#include "automation/auto_editor.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/device_image.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_exists = 121;
constexpr std::string_view heap_option = "-Xmx";
constexpr std::string_view default_style = "default";

std::string yes_no(bool value) { return value ? "yes" : "no"; }

std::string contours_word(const Settings& settings) {
  if (!settings.contours) return "no";
  return settings.clip_contours ? "clip" : "yes";
}

std::string hgt_word(const Settings& settings) {
  const int slot = std::clamp(settings.hgt_slot, 0, hgt_folder_slots - 1);
  return settings.hgt_auto_search ? "auto" : settings.hgt_folders.at(static_cast<std::size_t>(slot));
}

// Options that are switched off, and lines behind the end mark, are none that are selected.
std::vector<std::string> selected_options(const Settings& settings) {
  std::vector<std::string> options;
  if (!settings.use_options_text) return options;
  for (const std::string& line : split_lines(settings.options_text)) {
    const std::string_view option = trim(line);
    if (option.starts_with("##")) break;
    if (!option.empty() && option[0] != '#') options.emplace_back(option);
  }
  return options;
}

std::vector<std::string> words_of(std::string_view text) { return split(replace_all(text, "\t", " "), " "); }

// "2g", "1500m", "1048576k"; `unit` is that of a number without a letter. "" for what is no size.
std::string megabytes_of(std::string_view size, char unit) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(size.data(), size.data() + size.size(), number);
  const auto digits = static_cast<std::size_t>(end - size.data());
  constexpr std::uint64_t most = 1ULL << 40;
  if (error != std::errc() || number > most || size.size() > digits + 1) return "";
  if (digits < size.size()) unit = lower_ascii(size.substr(digits))[0];
  const std::uint64_t kilobytes = unit == 'b'   ? number / 1024
                                  : unit == 'k' ? number
                                  : unit == 'm' ? number * 1024
                                  : unit == 'g' ? number * 1024 * 1024
                                                : 0;
  return kilobytes < 1024 ? "" : std::to_string(kilobytes / 1024);
}

// The values of a tag; nothing for a tag that is unknown.
std::vector<std::string> values_of(std::string_view tag, const Settings& settings) {
  const std::string fid(trim(settings.fid));
  if (tag == "file") return {settings.input};
  if (tag == "mapname") return {settings.map_name};
  if (tag == "gmapsupp_name") return {settings.image_named_after_map ? "" : settings.image_name};
  if (tag == "basecamp") return {yes_no(settings.register_map)};
  if (tag == "memory") return {heap_megabytes(settings.java_options)};
  if (tag == "maxnodes") return {settings.max_nodes};
  if (tag == "gmapsupp") return {yes_no(settings.device_image)};
  if (tag == "fid") return {lenient_whole_number(fid) == 0 ? "auto" : fid};
  if (tag == "mapid") return {settings.map_id};
  if (tag == "country") return {settings.country};
  if (tag == "description") return {settings.description};
  if (tag == "typ") return {settings.use_typ ? "current" : ""};
  if (tag == "style") return {settings.style};
  if (tag == "dem") return {yes_no(settings.dem)};
  if (tag == "contours") return {contours_word(settings)};
  if (tag == "hgt") return {hgt_word(settings)};
  std::vector<std::string> options = selected_options(settings);
  // A blank one says that there are none, whatever the settings of a later run hold.
  return options.empty() ? std::vector<std::string>{""} : options;
}

}  // namespace

std::string heap_megabytes(std::string_view java_options) {
  std::string size;
  // The last one of several holds; the setting may be a bare number, too.
  for (const std::string& word : words_of(java_options)) {
    if (word.starts_with(heap_option)) size = word.substr(heap_option.size());
  }
  const std::string_view all = trim(java_options);
  if (size.empty() && is_digits(all.substr(0, 1))) return megabytes_of(all, 'm');
  return megabytes_of(size, 'b');
}

std::string with_heap(std::string_view java_options, const std::string& megabytes) {
  const std::string heap = std::string(heap_option) + megabytes + "m";
  if (!trim(java_options).starts_with('-')) return heap;
  std::string text = heap;
  for (const std::string& word : words_of(java_options)) {
    if (!word.empty() && !word.starts_with(heap_option)) text += " " + word;
  }
  return text;
}

std::string newscrpt(std::string_view template_text, const Settings& settings) {
  std::string script;
  for (const std::string& line : split_lines(lower_ascii(template_text))) {
    const std::size_t open = line.find('<');
    const std::size_t close = open == std::string::npos ? open : line.find('>', open);
    if (trim(line).empty()) continue;
    const std::string tag = close == std::string::npos ? "" : line.substr(open + 1, close - open - 1);
    if (find_auto_tag(tag) == nullptr) {
      script += line + std::string(crlf);
      continue;
    }
    for (const std::string& value : values_of(tag, settings))
      script += "<" + tag + ">" + value + "</" + tag + ">" + std::string(crlf);
  }
  return script;
}

std::string new_script(const Workspace& workspace) {
  return newscrpt(read_whole_file(workspace.path(file_name::script_template)), workspace.settings);
}

std::vector<std::string> script_tag_templates(const Workspace& workspace) {
  std::vector<std::string> lines = split_lines(read_whole_file(workspace.path(file_name::tag_templates)));
  std::erase_if(lines, [](const std::string& line) { return trim(line).empty(); });
  return lines;
}

EditedText insert_tag(std::string_view text, std::size_t caret, std::string_view tag) {
  caret = std::min(caret, text.size());
  const std::string_view before = text.substr(0, caret);
  const std::string_view after = text.substr(caret);
  EditedText edited{std::string(before), 0};
  if (!before.empty() && !before.ends_with('\n')) edited.text += crlf;
  edited.text += tag;
  edited.caret = edited.text.size();
  if (!after.empty() && !after.starts_with('\r') && !after.starts_with('\n')) edited.text += crlf;
  edited.text += after;
  return edited;
}

std::string script_caption(const std::string& path, bool changed) {
  return "Auto Script " + platform::name_of(path) + (changed ? "X" : "");
}

std::string save_script(const Workspace& workspace, Prompts& prompts, const ScriptPlace& place,
                        std::string_view text) {
  const std::string pattern = "*" + std::string(auto_ending);
  std::optional<std::string> path =
      prompts.choose_file({"", {{"Automate Files ", pattern}}, place.path, true, false});
  if (!path || path->empty()) return "";
  if (!ends_with_ignoring_case(*path, auto_ending)) *path += auto_ending;
  const bool is_own = place.is_own && same_file(*path, place.path);
  if (file_exists(*path) && !is_own &&
      prompts.ask(workspace.message(message_exists) + platform::name_of(*path) + "\r\n\r\nOverwrite?",
                  Buttons::yes_no_cancel, Icon::warning) != Answer::yes)
    return "";
  const Status saved = safe_write(*path, with_crlf(text));
  if (saved.ok()) return *path;
  prompts.tell(saved.error, Icon::critical);
  return "";
}

bool is_saved(const ScriptPlace& place, std::string_view text) {
  if (!place.is_own || !file_exists(place.path)) return false;
  const Result<std::string> bytes = read_file(place.path);
  return bytes.ok() && with_crlf(decode_tool_text(bytes.value)) == with_crlf(text);
}

bool is_plain_file(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(platform::file_system_path(path), error);
}

bool delete_script(Prompts& prompts, const std::string& path) {
  if (prompts.ask(platform::name_of(path) + "\r\n\r\nDelete? ", Buttons::yes_no, Icon::warning) !=
      Answer::yes)
    return false;
  const Status removed = remove_file(path);
  if (!removed.ok()) prompts.tell(removed.error, Icon::critical);
  return removed.ok();
}

AutoFacts auto_facts(const Workspace& workspace) {
  const std::string styles = workspace.settings.styles_folder;
  const auto is_style = [styles](const std::string& name) {
    return name == default_style || folder_exists(platform::join(styles, name));
  };
  return {is_plain_file, [](const std::string& path) { return folder_exists(path); }, is_style};
}

}  // namespace ferrowen
