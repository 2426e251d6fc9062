#include <algorithm>

#include "app/language_file.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

std::string without_ending(const std::string& file) {
  return file.substr(0, file.size() - language_ending.size());
}

Status readable(const std::string& path, std::string_view text) {
  if (text.empty()) return {path + ": the file is empty"};
  const std::vector<std::size_t> unreadable = unreadable_lines(text);
  if (unreadable.empty()) return {};
  return {path + ": line " + std::to_string(unreadable.front()) +
          " is not UTF-8 text. Save the file as UTF-8; nothing of it has been loaded."};
}

void apply(Workspace& workspace, const LanguageFile& language) {
  use_english(workspace);
  for (const auto& [number, message] : language.messages)
    workspace.messages.set(number, message.text);
  for (std::size_t section = 0; section < section_count; ++section) {
    for (const auto& [position, item] : language.texts.at(section))
      workspace.texts.set(static_cast<Section>(section), position, item.text);
  }
}

}  // namespace

Status load_language(Workspace& workspace, const std::string& path) {
  const Result<std::string> text = read_file(path, largest_language_file);
  if (!text.ok()) return {text.error};
  if (Status status = readable(path, text.value); !status.ok()) return status;
  const LanguageFile language = parse_language(text.value);
  if (!language.marked) return {path + ": " + language.problems.front().text};
  apply(workspace, language);
  return {};
}

void use_english(Workspace& workspace) {
  workspace.messages.reset();
  workspace.texts.reset();
}

Status choose_language(Workspace& workspace, std::string_view file) {
  const std::string name(trim(file));
  Status chosen;
  if (name.empty())
    use_english(workspace);
  else
    chosen = load_language(workspace, platform::join(workspace.settings.languages_folder, name));
  if (chosen.ok()) workspace.settings.language = name;
  return chosen;
}

std::vector<Language> loadlanguages(const Workspace& workspace) {
  const std::string& folder = workspace.settings.languages_folder;
  std::vector<Language> languages;
  for (const std::string& file : list_files(folder, {std::string(language_ending), ".M5L"})) {
    const Result<std::string> text = read_file(platform::join(folder, file), largest_language_file);
    const LanguageFile language = parse_language(text.value);
    if (!language.marked) continue;
    const bool named = !language.display_name.empty() && is_valid_utf8(language.display_name);
    languages.push_back({file, named ? language.display_name : without_ending(file)});
  }
  std::stable_sort(languages.begin(), languages.end(), [](const Language& a, const Language& b) {
    return lower_ascii(a.display_name) < lower_ascii(b.display_name);
  });
  return languages;
}

}  // namespace ferrowen
