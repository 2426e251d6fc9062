#include "automation/auto_script.hpp"

#include <algorithm>
#include <map>

#include "base/text.hpp"
#include "pipeline/identifiers.hpp"
#include "platform/charset.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t most_problems = 2000;
constexpr std::size_t most_told = 20;
constexpr std::size_t longest_quote = 60;
constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";
constexpr std::size_t map_id_digits = 8;

// As it is shown in a message: cut, without control characters.
std::string in_quotes(std::string_view text) {
  std::string shown(text.substr(0, longest_quote));
  shown.resize(shown.size() - unfinished_utf8_tail(shown));
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
  return "'" + shown + (text.size() > longest_quote ? "...'" : "'");
}

bool is_line_of_text(std::string_view line) {
  return std::none_of(line.begin(), line.end(),
                      [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\t'; });
}

class Reader {
 public:
  AutoScript read(std::string_view text) {
    for (const std::string& line : split_lines(text)) {
      ++m_line;
      if (m_closed || m_script.problems.size() >= most_problems) break;
      if (!trim(line).empty()) read_line(trim(line));
    }
    if (!m_opened) problem("<ferrowen> is missing: this is no automation script.");
    if (m_opened && !m_closed && m_script.problems.size() < most_problems)
      problem("</ferrowen> is missing at the end.");
    return std::move(m_script);
  }

 private:
  void problem(const std::string& text) {
    m_script.problems.push_back({std::max<std::size_t>(m_line, 1), text});
  }

  void read_line(std::string_view line) {
    const std::size_t end = line.find('>');
    if (!m_opened) return read_root(line);
    if (!is_line_of_text(line)) return problem("This is no text: " + in_quotes(line));
    if (line[0] != '<' || end == std::string_view::npos)
      return problem("Neither a tag nor a blank line: " + in_quotes(line));
    const std::string tag = lower_ascii(trim(line.substr(1, end - 1)));
    if (tag == "/" + std::string(auto_root)) {
      m_closed = true;
      return;
    }
    if (find_auto_tag(tag) == nullptr) return problem("Unknown tag: " + in_quotes(line.substr(0, end + 1)));
    const std::string closing = "</" + tag + ">";
    const std::string_view rest = line.substr(end + 1);
    if (!ends_with_ignoring_case(rest, closing))
      return problem("The tag is never closed: " + closing + " is missing.");
    take(tag, std::string(trim(rest.substr(0, rest.size() - closing.size()))));
  }

  void read_root(std::string_view line) {
    m_opened = equal_ignoring_case(line, "<" + std::string(auto_root) + ">");
    if (m_opened) return;
    problem("The first line must be <ferrowen>, not " + in_quotes(line));
    m_opened = m_closed = true;  // what follows is something else
  }

  void take(const std::string& tag, std::string value) {
    const auto [first, is_new] = m_first_lines.emplace(tag, m_line);
    if (!is_new && find_auto_tag(tag)->kind != AutoTagKind::option)
      return problem("<" + tag + "> stands in line " + std::to_string(first->second) + " already.");
    m_script.settings.push_back({tag, std::move(value), m_line});
  }

  AutoScript m_script;
  std::map<std::string, std::size_t, std::less<>> m_first_lines;
  std::size_t m_line = 0;
  bool m_opened = false, m_closed = false;
};

std::string number_problem(const std::string& value) {
  const bool is_number = is_digits(value) && value.size() < 10 && lenient_whole_number(value) > 0;
  return is_number ? "" : in_quotes(value) + " is not a number.";
}

std::string word_problem(const std::string& value, const std::vector<std::string_view>& words) {
  const bool known =
      std::any_of(words.begin(), words.end(), [&](std::string_view word) { return is_word(value, word); });
  if (known) return "";
  std::string text = in_quotes(value) + " must be ";
  for (std::size_t i = 0; i < words.size(); ++i)
    text += (i == 0 ? "\"" : i + 1 == words.size() ? " or \"" : ", \"") + std::string(words[i]) + "\"";
  return text + ".";
}

std::string missing_problem(const std::string& value, const std::function<bool(const std::string&)>& exists,
                            std::string_view what) {
  return !exists || exists(value) ? "" : std::string(what) + " " + in_quotes(value) + " is not there.";
}

std::string map_id_problem(const std::string& value) {
  const bool right = value.size() == map_id_digits && is_digits(value) && lenient_whole_number(value) != 0;
  return right ? "" : in_quotes(value) + " is no map ID: 8 digits are needed.";
}

std::string value_problem(const AutoSetting& setting, const AutoFacts& facts) {
  const std::string& value = setting.value;
  if (value.empty()) return setting.tag == "file" ? "No input file is named." : "";
  switch (find_auto_tag(setting.tag)->kind) {
    case AutoTagKind::file:
      return missing_problem(value, facts.file_exists, "The file");
    case AutoTagKind::number:
      return number_problem(value);
    case AutoTagKind::yes_no:
      return word_problem(value, {"yes", "no"});
    case AutoTagKind::contours:
      return word_problem(value, {"yes", "no", "clip"});
    case AutoTagKind::fid:
      return is_word(value, "auto") || is_fid(value)
                 ? ""
                 : in_quotes(value) + " is no family ID: a number from 1 to " + std::to_string(highest_fid) +
                       ", or \"auto\".";
    case AutoTagKind::map_id:
      return map_id_problem(value);
    case AutoTagKind::typ:
      return is_word(value, "current") ? "" : missing_problem(value, facts.file_exists, "The TYP file");
    case AutoTagKind::style:
      return missing_problem(value, facts.style_exists, "The style");
    case AutoTagKind::hgt:
      return is_word(value, "auto") ? "" : missing_problem(value, facts.folder_exists, "The folder");
    case AutoTagKind::option:
    case AutoTagKind::text:
      break;
  }
  return "";
}

}  // namespace

const std::vector<AutoTag>& auto_tags() {
  static const std::vector<AutoTag> tags = {
      {"file", AutoTagKind::file, "The map file, with its full path."},
      {"mapname", AutoTagKind::text, "Name of the map."},
      {"gmapsupp_name", AutoTagKind::text, "Name of the device image."},
      {"basecamp", AutoTagKind::yes_no, "Register the map with BaseCamp and MapSource: yes or no."},
      {"memory", AutoTagKind::number, "Memory for Java, in MB."},
      {"maxnodes", AutoTagKind::number, "Most nodes in a tile."},
      {"gmapsupp", AutoTagKind::yes_no, "Make a device image: yes or no."},
      {"fid", AutoTagKind::fid, "Family ID: a number, or auto for a new one."},
      {"mapid", AutoTagKind::map_id, "Map ID: 8 digits."},
      {"country", AutoTagKind::text, "Country name written into the map."},
      {"description", AutoTagKind::text, "Description written into the map."},
      {"typ", AutoTagKind::typ, "TYP file: its full path, current, or blank for none."},
      {"style", AutoTagKind::style, "Name of the style."},
      {"dem", AutoTagKind::yes_no, "Add a digital elevation model: yes or no."},
      {"contours", AutoTagKind::contours, "Add contour lines: yes, no, or clip."},
      {"hgt", AutoTagKind::hgt, "Folder of height files, or auto."},
      {"option", AutoTagKind::option, "One mkgmap option; may stand several times."},
  };
  return tags;
}

const AutoTag* find_auto_tag(std::string_view name) {
  const auto found = std::find_if(auto_tags().begin(), auto_tags().end(),
                                  [&](const AutoTag& tag) { return equal_ignoring_case(tag.name, name); });
  return found == auto_tags().end() ? nullptr : &*found;
}

std::optional<std::string> AutoScript::value(std::string_view tag) const {
  const auto found = std::find_if(settings.begin(), settings.end(),
                                  [&](const AutoSetting& setting) { return setting.tag == tag; });
  return found == settings.end() ? std::nullopt : std::optional(found->value);
}

std::vector<std::string> AutoScript::values(std::string_view tag) const {
  std::vector<std::string> found;
  for (const AutoSetting& setting : settings) {
    if (setting.tag == tag) found.push_back(setting.value);
  }
  return found;
}

AutoScript parse_auto_script(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    return {{}, {{1, "The script is in UTF-16. Save it as UTF-8."}}};
  if (bytes.starts_with(utf8_mark)) bytes.remove_prefix(utf8_mark.size());
  if (is_valid_utf8(bytes)) return Reader().read(bytes);
  const std::optional<std::string> text = platform::decode(bytes, platform::ansi_code_page());
  if (!text) return {{}, {{1, "The script is no text."}}};
  return Reader().read(*text);
}

std::vector<AutoProblem> check_auto_script(const AutoScript& script, const AutoFacts& facts) {
  std::vector<AutoProblem> problems = script.problems;
  for (const AutoSetting& setting : script.settings) {
    const std::string text = value_problem(setting, facts);
    if (!text.empty()) problems.push_back({setting.line, "<" + setting.tag + ">: " + text});
  }
  if (problems.empty() && !script.value("file"))
    problems.push_back({1, "<file> is missing: no input file is named."});
  std::stable_sort(problems.begin(), problems.end(),
                   [](const AutoProblem& one, const AutoProblem& other) { return one.line < other.line; });
  return problems;
}

std::vector<std::string> problem_lines(const std::vector<AutoProblem>& problems) {
  std::vector<std::string> lines;
  for (const AutoProblem& problem : problems) {
    if (lines.size() == most_told) {
      lines.push_back("... and " + std::to_string(problems.size() - most_told) + " more");
      break;
    }
    lines.push_back("line " + std::to_string(problem.line) + ": " + problem.text);
  }
  return lines;
}

bool is_word(std::string_view value, std::string_view word) { return equal_ignoring_case(trim(value), word); }

}  // namespace ferrowen
