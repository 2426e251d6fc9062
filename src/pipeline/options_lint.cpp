#include "pipeline/options_lint.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "base/text.hpp"

namespace ferrowen {

namespace {

// Each of them adds an input to those before it.
constexpr std::array<std::string_view, 2> repeatable = {"--input-file", "--read-config"};

struct Word {
  std::size_t begin = 0, length = 0;
};

// Words as parse_arguments takes them: blanks inside double quotes separate none.
std::vector<Word> words_of(std::string_view line) {
  std::vector<Word> words;
  for (std::size_t place = 0; place < line.size();) {
    place = line.find_first_not_of(" \t\r", place);
    if (place == std::string_view::npos) break;
    const std::size_t begin = place;
    for (bool quoted = false; place < line.size(); ++place) {
      if (line[place] == '"') quoted = !quoted;
      if (!quoted && (line[place] == ' ' || line[place] == '\t')) break;
    }
    words.push_back({begin, place - begin});
  }
  return words;
}

bool is_mark(std::string_view content) {
  const std::string mark = lower_ascii(content);
  return mark == "<dem>" || mark == "</dem>";
}

// Where the option of a line that is switched off begins; npos when its comment is mere words.
std::size_t switched_off_option(std::string_view line) {
  const std::size_t place = line.find_first_not_of("# \t");
  const bool is_option = place != std::string_view::npos && line.substr(place).starts_with("--");
  return is_option ? place : std::string_view::npos;
}

class Linter {
 public:
  Linter(OptionTool tool, const std::vector<CatalogueOption>& known) : m_tool(tool) {
    for (const CatalogueOption& option : known)
      m_known.emplace(option.name, &option);
  }

  OptionsLint lint(std::string_view text) {
    for (const std::string& line : split_lines(text)) {
      take_line(line);
      ++m_line;
    }
    find_repeated();
    std::stable_sort(m_lint.findings.begin(), m_lint.findings.end(),
                     [](const OptionFinding& one, const OptionFinding& other) {
                       return one.range.line < other.range.line;
                     });
    return std::move(m_lint);
  }

 private:
  void take_line(std::string_view line) {
    const bool is_mkgmap = m_tool == OptionTool::mkgmap;
    const std::string_view content = trim(line);
    m_value_follows = m_value_follows && content.empty();
    if (m_ended || (is_mkgmap && contains(line, "##"))) {
      m_ended = true;
      return add({m_line, 0, line.size()}, OptionPart::ignored);
    }
    if (content.starts_with('#')) return take_comment(line, line.find('#'));
    if (is_mkgmap && is_mark(content)) {
      m_in_dem_block = !content.starts_with("</");
      return add(place_of(line, content), OptionPart::block_mark);
    }
    if (m_in_dem_block) return take_dem_line(line, content);
    for (const Word& each : words_of(line)) {
      if (is_mkgmap && line[each.begin] == '#') return take_comment(line, each.begin);
      take_word(line, each);
    }
  }

  [[nodiscard]] TextRange place_of(std::string_view line, std::string_view part) const {
    return {m_line, static_cast<std::size_t>(part.data() - line.data()), part.size()};
  }

  void add(TextRange range, OptionPart part) {
    if (range.length > 0) m_lint.spans.push_back({range, part});
  }

  void take_comment(std::string_view line, std::size_t begin) {
    add({m_line, begin, line.size() - begin}, OptionPart::comment);
    const std::size_t option = switched_off_option(line.substr(begin));
    if (option == std::string_view::npos) return;
    const std::string_view rest = line.substr(begin + option);
    const std::string_view name = rest.substr(0, rest.find_first_of("= \t\r"));
    m_lint.places.push_back({known_name(std::string(name)), place_of(line, name), false});
  }

  void take_word(std::string_view line, const Word& each) {
    const TextRange range{m_line, each.begin, each.length};
    const std::string_view written = line.substr(each.begin, each.length);
    if (written.starts_with("--")) return take_option(range, written, '=');
    if (written.starts_with('-')) {  // "-c more.args"
      m_value_follows = true;
      return add(range, OptionPart::name);
    }
    add(range, m_value_follows ? OptionPart::value : OptionPart::word);
    if (!m_value_follows) find(range, OptionFault::no_dashes, std::string(written));
    m_value_follows = false;
  }

  // A line of a file that mkgmap reads: name=value or name:value, with or without the dashes.
  void take_dem_line(std::string_view line, std::string_view content) {
    if (content.empty()) return;
    const std::size_t sign = content.find_first_of("=:");
    const bool has_colon = sign != std::string_view::npos && content[sign] == ':';
    take_option(place_of(line, content), content, has_colon ? ':' : '=');
  }

  void take_option(TextRange range, std::string_view written, char sign) {
    m_value_follows = false;
    const std::size_t end = std::min(written.find(sign), written.size());
    const TextRange name_range{m_line, range.begin, end};
    std::string name(written.substr(0, end));
    if (!name.starts_with("--")) name.insert(0, "--");
    const std::string plain = known_name(name);
    add(name_range, OptionPart::name);
    add({m_line, range.begin + end, range.length - end}, OptionPart::value);
    m_lint.places.push_back({plain, name_range, true});
    if (!m_known.empty() && !m_known.contains(plain) && !is_experimental(plain))
      find(name_range, OptionFault::unknown, name);
    if (end < written.size()) check_value(range, plain, written.substr(end + 1));
  }

  void check_value(TextRange range, const std::string& name, std::string_view value) {
    const auto option = m_known.find(name);
    if (option == m_known.end() || value.empty() || is_digits(value) || value != option->second->hint) return;
    find({m_line, range.begin + range.length - value.size(), value.size()}, OptionFault::placeholder, name);
  }

  // mkgmap takes "--no-" in front of every option, and any name that begins with "x-".
  [[nodiscard]] std::string known_name(const std::string& name) const {
    constexpr std::string_view negation = "--no-";
    if (m_tool != OptionTool::mkgmap || !name.starts_with(negation)) return name;
    return "--" + name.substr(negation.size());
  }
  [[nodiscard]] bool is_experimental(std::string_view name) const {
    return m_tool == OptionTool::mkgmap && name.starts_with("--x-");
  }

  void find(TextRange range, OptionFault fault, std::string subject, std::size_t other_line = 0) {
    m_lint.findings.push_back({range, fault, std::move(subject), other_line});
  }

  void find_repeated() {
    std::map<std::string_view, std::vector<const OptionPlace*>> by_name;
    for (const OptionPlace& place : m_lint.places) {
      if (place.active && std::find(repeatable.begin(), repeatable.end(), place.name) == repeatable.end())
        by_name[place.name].push_back(&place);
    }
    for (const auto& [name, places] : by_name) {
      for (std::size_t i = 0; places.size() > 1 && i < places.size(); ++i)
        find(places[i]->range, OptionFault::repeated, places[i]->name,
             places[i == 0 ? 1 : i - 1]->range.line);
    }
  }

  OptionTool m_tool;
  std::map<std::string_view, const CatalogueOption*> m_known;
  OptionsLint m_lint;
  std::size_t m_line = 0;
  bool m_ended = false, m_in_dem_block = false, m_value_follows = false;
};

}  // namespace

const OptionPlace* OptionsLint::find(std::string_view name) const {
  const OptionPlace* found = nullptr;
  for (const OptionPlace& place : places) {
    if (place.name != name) continue;
    if (place.active) return &place;
    if (found == nullptr) found = &place;
  }
  return found;
}

OptionsLint lint_options(std::string_view text, OptionTool tool, const std::vector<CatalogueOption>& known) {
  return Linter(tool, known).lint(text);
}

}  // namespace ferrowen
