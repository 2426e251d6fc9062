#include "app/said_texts.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <optional>

#include "app/interface_lists.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr int deepest = 3;  // "line 3: "a" must be "yes" or "no"."
constexpr std::size_t most_places = 10;
using Captures = std::array<std::string_view, most_places>;

bool is_place(std::string_view text, std::size_t at) {
  return at + 1 < text.size() && text[at] == '%' && text[at + 1] >= '1' && text[at + 1] <= '9';
}

// An English line cut at its places.
struct Pattern {
  std::string_view key;
  std::vector<std::string_view> words;  // before, between and behind the places
  std::vector<std::size_t> places;      // their numbers
  std::size_t weight = 0;               // signs that are no places
};

Pattern pattern_of(const InterfaceItem& item) {
  Pattern pattern{item.key, {}, {}, 0};
  std::size_t start = 0;
  for (std::size_t at = 0; at < item.english.size(); ++at) {
    if (!is_place(item.english, at)) continue;
    pattern.words.push_back(item.english.substr(start, at - start));
    pattern.places.push_back(static_cast<std::size_t>(item.english[at + 1] - '0'));
    start = at + 2;
  }
  pattern.words.push_back(item.english.substr(start));
  for (const std::string_view word : pattern.words)
    pattern.weight += word.size();
  return pattern;
}

struct Known {
  std::map<std::string_view, std::string_view> whole, words;  // the key by the English line
  std::vector<Pattern> patterns;                              // the most particular first
};

Known known_lines() {
  Known known;
  for (const auto* items : {&said_items(), &finding_items()}) {
    for (const InterfaceItem& item : *items) {
      Pattern pattern = pattern_of(item);
      if (pattern.places.empty())
        known.whole.emplace(item.english, item.key);
      else
        known.patterns.push_back(std::move(pattern));
    }
  }
  for (const InterfaceItem& item : word_items()) {
    if (Pattern pattern = pattern_of(item); !pattern.places.empty())
      known.patterns.push_back(std::move(pattern));
    else
      known.words.emplace(item.english, item.key);
  }
  std::stable_sort(known.patterns.begin(), known.patterns.end(),
                   [](const Pattern& a, const Pattern& b) { return a.weight > b.weight; });
  return known;
}

const Known& known() {
  static const Known lines = known_lines();
  return lines;
}

std::optional<Captures> match(const Pattern& pattern, std::string_view line) {
  const std::string_view first = pattern.words.front(), last = pattern.words.back();
  if (line.size() < first.size() + last.size() || !line.starts_with(first) || !line.ends_with(last))
    return {};
  std::string_view rest = line.substr(first.size(), line.size() - first.size() - last.size());
  Captures captures;
  for (std::size_t i = 0; i + 1 < pattern.places.size(); ++i) {
    const std::size_t found = rest.find(pattern.words[i + 1]);
    if (found == std::string_view::npos) return {};
    captures.at(pattern.places[i]) = rest.substr(0, found);
    rest.remove_prefix(found + pattern.words[i + 1].size());
  }
  captures.at(pattern.places.back()) = rest;
  return captures;
}

class Speaker {
 public:
  explicit Speaker(const InterfaceTexts& texts) : m_texts(texts) {}

  [[nodiscard]] std::string line(std::string_view english) const {
    const auto word = known().words.find(english);
    return word == known().words.end() ? part(english, 0) : m_texts(Section::labels, word->second);
  }

 private:
  // Words are not looked for in the places: a map may have the name of one.
  [[nodiscard]] std::string part(std::string_view english, int depth) const {
    if (depth > deepest || english.empty()) return std::string(english);
    if (const auto found = known().whole.find(english); found != known().whole.end())
      return m_texts(Section::labels, found->second);
    if (std::string page = page_text(english); !page.empty()) return page;
    for (const Pattern& pattern : known().patterns) {
      const std::optional<Captures> captures = match(pattern, english);
      if (captures) return filled(pattern, *captures, depth);
    }
    return behind_a_place(english, depth);
  }

  // "FILE:12: what is wrong with it", whatever stands before the colon.
  [[nodiscard]] std::string behind_a_place(std::string_view english, int depth) const {
    constexpr std::string_view colon = ": ";
    const std::size_t found = english.find(colon);
    if (found == std::string_view::npos) return std::string(english);
    const std::string_view rest = english.substr(found + colon.size());
    return std::string(english.substr(0, found + colon.size())) + part(rest, depth + 1);
  }

  [[nodiscard]] std::string filled(const Pattern& pattern, const Captures& captures, int depth) const {
    const std::string text = m_texts(Section::labels, pattern.key);
    std::string line;
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (!is_place(text, at)) {
        line += text[at];
        continue;
      }
      line += part(captures.at(static_cast<std::size_t>(text[++at] - '0')), depth + 1);
    }
    return line;
  }

  // Messages name the pages of the settings.
  [[nodiscard]] std::string page_text(std::string_view english) const {
    constexpr std::size_t page_count = 9;
    for (std::size_t page = 0; page < page_count; ++page) {
      const InterfaceItem& item = settings_items()[page];
      if (item.english == english) return m_texts(Section::settings, item.key);
    }
    return "";
  }

  const InterfaceTexts& m_texts;
};

}  // namespace

std::string said(const InterfaceTexts& texts, std::string_view english) {
  const Speaker speaker(texts);
  std::string spoken;
  for (std::size_t start = 0; start <= english.size();) {
    const std::size_t end = std::min(english.find('\n', start), english.size());
    const std::string_view line = english.substr(start, end - start);
    const std::string_view core = trim(line);
    const std::size_t blanks = core.empty() ? line.size() : line.find(core.front());
    spoken.append(line.substr(0, blanks)).append(speaker.line(core));
    spoken.append(line.substr(std::min(blanks + core.size(), line.size())));
    if (end < english.size()) spoken += '\n';
    start = end + 1;
  }
  return spoken;
}

}  // namespace ferrowen
