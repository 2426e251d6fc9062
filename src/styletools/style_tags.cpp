#include "styletools/style_tags.hpp"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "base/text.hpp"
#include "styletools/tag_tests.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view main_keys[] = {
    "amenity",  "landuse",  "natural",  "leisure",  "sport",        "shop",    "military",
    "waterway", "tourism",  "man_made", "power",    "power_source", "highway", "railway",
    "aeroway",  "historic", "building", "boundary", "barrier",
};

// Its place among the main keys; behind them all for every other key.
std::ptrdiff_t rank(std::string_view key) {
  return std::distance(std::begin(main_keys), std::find(std::begin(main_keys), std::end(main_keys), key));
}

std::string percent_encoded(std::string_view text) {
  std::string encoded;
  for (const char c : text) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (plain) {
      encoded += c;
      continue;
    }
    encoded += '%' + f_mat(hexadecimal_text(static_cast<unsigned char>(c)));
  }
  return encoded;
}

}  // namespace

std::vector<TagCount> gettag(const LoadedStyle& style) {
  std::map<std::pair<std::string, std::string>, std::size_t> counts;
  for (const StyleStatement& statement : style.rules.statements) {
    std::set<std::pair<std::string, std::string>> tested;
    for (const Alternative& alternative : parse_tests(statement.tests).value_or(std::vector<Alternative>{})) {
      for (const TagTest& test : alternative) {
        if (test.form == TagTest::Form::equals) tested.emplace(test.key, test.value);
        if (test.form == TagTest::Form::exists) tested.emplace(test.key, "*");
      }
    }
    for (const auto& tag : tested)
      ++counts[tag];
  }
  std::vector<TagCount> found;
  for (const auto& [tag, rules] : counts)
    found.push_back({tag.first, tag.second, rules, rank(tag.first) < std::ssize(main_keys)});
  std::stable_sort(found.begin(), found.end(), [](const TagCount& left, const TagCount& right) {
    if (const auto ranks = std::pair(rank(left.key), rank(right.key)); ranks.first != ranks.second)
      return ranks.first < ranks.second;
    if (left.key != right.key) return left.key < right.key;
    return left.rules > right.rules;
  });
  return found;
}

std::string tag_search_address(std::string_view key, std::string_view value) {
  const std::string tag = std::string(key) + (value == "*" ? "" : "=" + std::string(value));
  return "https://wiki.openstreetmap.org/w/index.php?search=" + percent_encoded(tag);
}

std::optional<std::size_t> srch(const StyleText& style, std::string_view word, std::size_t from) {
  const std::size_t count = style.lines.size();
  for (std::size_t step = 0; step < count; ++step) {
    const std::size_t at = (from + step) % count;
    if (contains_ignoring_case(style.lines[at].text, word)) return at;
  }
  return std::nullopt;
}

std::uint32_t last_line(const LoadedStyle& style, std::string_view file, std::uint32_t line) {
  for (const StyleStatement& statement : style.rules.statements) {
    if (statement.place.line == line && style.text.files[statement.place.file].path == file)
      return std::max(statement.last_line, line);
  }
  return line;
}

std::optional<std::size_t> line_at(const StyleText& style, std::string_view file, std::uint32_t line) {
  for (const StyleFile& one : style.files) {
    if (one.path != file || one.line_count == 0) continue;
    const auto begin = style.lines.begin() + static_cast<std::ptrdiff_t>(one.first_line);
    const auto end = begin + static_cast<std::ptrdiff_t>(one.line_count);
    const auto behind = std::upper_bound(begin, end, line, [](std::uint32_t wanted, const StyleLine& each) {
      return wanted < each.place.line;
    });
    return static_cast<std::size_t>((behind == begin ? behind : behind - 1) - style.lines.begin());
  }
  return std::nullopt;
}

}  // namespace ferrowen
