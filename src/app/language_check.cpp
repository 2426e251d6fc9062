#include <algorithm>

#include "app/language_file.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t most_unreadable = 100;

using Problems = std::vector<LanguageProblem>;

void compare_end(Problems& problems, const LanguageText& translated, bool english_has, bool translation_has,
                 const std::string& what) {
  if (english_has == translation_has) return;
  problems.push_back({translated.line, "The English text " + what +
                                           (english_has ? ", this one does not." : " not, this one does.")});
}

// The numbers of the places, in order: "12" for a text with %1 and %2.
std::string places_of(std::string_view text) {
  std::string places;
  for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    if (at + 1 < text.size() && text[at + 1] >= '1' && text[at + 1] <= '9') places += text[at + 1];
  }
  std::sort(places.begin(), places.end());
  return places;
}

// What follows is put between this quote and one behind it.
bool ends_with_opening_quote(std::string_view text) { return text.ends_with(" '") || text.ends_with(":'"); }

// Names and paths are put before and behind texts: a blank or an opening quote at the end is a part of them.
void compare(Problems& problems, std::string_view english, const LanguageText& translated) {
  const std::string_view text = translated.text;
  if (text.empty() && !english.empty()) {
    problems.push_back({translated.line, "The text is empty. English: \"" + std::string(english) + "\""});
    return;
  }
  compare_end(problems, translated, english.starts_with(' '), text.starts_with(' '), "begins with a blank");
  compare_end(problems, translated, english.ends_with(' '), text.ends_with(' '), "ends with a blank");
  compare_end(problems, translated, ends_with_opening_quote(english), ends_with_opening_quote(text),
              "ends with '");
  if (places_of(english) != places_of(text))
    problems.push_back({translated.line, "The places (%1, %2, ...) are not those of the English text: \"" +
                                             std::string(english) + "\""});
}

void compare_all(Problems& problems, const LanguageFile& file) {
  for (const auto& [number, translated] : file.messages)
    compare(problems, english_message(number), translated);
  for (std::size_t section = 0; section < section_count; ++section) {
    const std::vector<InterfaceItem>& items = interface_items(static_cast<Section>(section));
    for (const auto& [position, translated] : file.texts.at(section))
      compare(problems, items.at(position).english, translated);
  }
}

void tell_unreadable(Problems& problems, std::string_view text) {
  const std::vector<std::size_t> lines = unreadable_lines(text);
  for (std::size_t i = 0; i < std::min(lines.size(), most_unreadable); ++i)
    problems.push_back({lines[i], "This line is not UTF-8 text: the file cannot be loaded."});
  if (lines.size() > most_unreadable)
    problems.push_back({0, std::to_string(lines.size()) + " lines are not UTF-8 text."});
}

}  // namespace

Problems check_language(std::string_view text) {
  const LanguageFile file = parse_language(text);
  Problems problems = file.problems;
  tell_unreadable(problems, text);
  compare_all(problems, file);
  std::stable_sort(problems.begin(), problems.end(),
                   [](const LanguageProblem& a, const LanguageProblem& b) { return a.line < b.line; });
  return problems;
}

}  // namespace ferrowen
