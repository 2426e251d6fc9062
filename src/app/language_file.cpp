#include "app/language_file.hpp"

#include <algorithm>
#include <optional>

#include "app/language_tags.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::size_t most_problems = 1000;

struct Line {
  std::size_t number = 0;
  bool has_text = false;  // holds a ":" that no comment swallows
  std::string key, text;
  [[nodiscard]] bool is_blank() const { return !has_text && key.empty(); }
};

Line read_line(std::size_t number, std::string_view line) {
  line = line.substr(0, line.find(language_comment));
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return {number, false, std::string(trim(line)), ""};
  return {number, true, std::string(trim(line.substr(0, colon))), std::string(line.substr(colon + 1))};
}

class Reader {
 public:
  explicit Reader(std::string_view text)
      : m_text(replace_all(text.substr(text.starts_with(byte_order_mark) ? byte_order_mark.size() : 0), "\r",
                           "")) {}
  LanguageFile read();

 private:
  void problem(std::size_t line, std::string text);
  [[nodiscard]] std::size_t line_at(std::size_t offset) const;
  std::vector<Line> lines_below(std::size_t tag_end, std::size_t end);
  [[nodiscard]] std::string display_name() const;
  void read_messages();
  void read_message(const Line& line);
  void read_section(Section section);
  void read_commands(const std::vector<Line>& lines);
  void read_command(std::size_t position, const Line& line);
  void read_keyed(Section section, const std::vector<Line>& lines);
  void read_item(Section section, const std::map<std::string_view, std::size_t>& positions, const Line& line);
  void tell_missing_items(Section section, std::size_t tag_line);
  void tell_missing_messages(std::size_t tag_line);
  std::map<std::size_t, LanguageText>& texts(Section section) {
    return m_file.texts.at(static_cast<std::size_t>(section));
  }

  std::string m_text;
  LanguageFile m_file;
};

LanguageFile Reader::read() {
  const std::size_t marker = m_text.find(language_marker);
  if (marker == std::string::npos) {
    problem(0, "The line " + std::string(language_marker) + " is missing: this is no language file.");
    return m_file;
  }
  m_file.marked = true;
  m_file.display_name = display_name();
  if (m_file.display_name.empty())
    problem(0, "The line " + std::string(language_name_start) + " with the language's name is missing.");
  read_messages();
  for (std::size_t section = 0; section < section_count; ++section)
    read_section(static_cast<Section>(section));
  return m_file;
}

void Reader::problem(std::size_t line, std::string text) {
  if (m_file.problems.size() < most_problems) {
    m_file.problems.push_back({line, std::move(text)});
  } else if (m_file.problems.size() == most_problems) {
    m_file.problems.push_back({0, "There is more, but this is enough for one look."});
  }
}

std::size_t Reader::line_at(std::size_t offset) const {
  return 1 + static_cast<std::size_t>(
                 std::count(m_text.begin(), m_text.begin() + static_cast<std::ptrdiff_t>(offset), '\n'));
}

// The lines of a section. What stands on the line of the tag itself is none of them.
std::vector<Line> Reader::lines_below(std::size_t tag_end, std::size_t end) {
  const std::string_view body = std::string_view(m_text).substr(tag_end, end - tag_end);
  const std::string_view rest = body.substr(0, body.find('\n'));
  std::size_t number = line_at(tag_end);
  if (!read_line(number, rest).is_blank()) problem(number, "What stands behind a section's tag is not read.");
  std::vector<Line> lines;
  for (const std::string& line : split_lines(body.substr(std::min(rest.size() + 1, body.size()))))
    lines.push_back(read_line(++number, line));
  return lines;
}

std::string Reader::display_name() const {
  for (std::size_t start = 0; start < m_text.size();) {
    const std::size_t end = std::min(m_text.find('\n', start), m_text.size());
    std::string_view line = std::string_view(m_text).substr(start, end - start);
    if (line.starts_with(language_name_start)) {
      line.remove_prefix(language_name_start.size());
      return std::string(trim(line.substr(0, line.find(language_comment))));
    }
    start = end + 1;
  }
  return "";
}

void Reader::read_messages() {
  const std::size_t tag = m_text.find(messages_tag);
  if (tag == std::string::npos) {
    problem(0, "The section " + std::string(messages_tag) + " is missing: all messages stay English.");
    return;
  }
  for (const Line& line : lines_below(tag + messages_tag.size(), m_text.size()))
    read_message(line);
  tell_missing_messages(line_at(tag));
}

void Reader::read_message(const Line& line) {
  if (line.is_blank()) return;
  const std::optional<long> number = exact_whole_number(line.key);
  const bool counts = line.has_text && number && *number > 0;
  if (!counts) {
    const bool out_of_range = is_digits(line.key) || number;
    problem(line.number, out_of_range
                             ? "Number " + line.key + " is out of range: messages have the numbers 1 to 250."
                             : "This line is superfluous: it does not begin with a message number and ':'.");
    return;
  }
  if (*number > message_count) {
    problem(line.number, "Number " + line.key + " is out of range: messages have the numbers 1 to 250.");
    return;
  }
  const int message = static_cast<int>(*number);
  if (english_message(message).empty())
    problem(line.number, "Message " + line.key + " is superfluous: there is no such message.");
  if (m_file.messages.contains(message))
    problem(line.number, "Message " + line.key + " stands here for the second time; this one counts.");
  m_file.messages[message] = {line.number, line.text};
}

void Reader::tell_missing_messages(std::size_t tag_line) {
  for (int number = 1; number <= message_count; ++number) {
    const std::string_view english = english_message(number);
    if (english.empty() || m_file.messages.contains(number)) continue;
    problem(tag_line, "Message " + std::to_string(number) + " is missing: \"" + std::string(english) + "\"");
  }
}

void Reader::read_section(Section section) {
  const std::size_t start = m_text.find(opening_tag(section), m_text.find(language_marker));
  if (start == std::string::npos) {
    if (!interface_items(section).empty())
      problem(0, "The section " + opening_tag(section) + " is missing: its texts stay English.");
    return;
  }
  const std::size_t tag_end = start + opening_tag(section).size();
  const std::size_t end = m_text.find(closing_tag(section), tag_end);
  if (end == std::string::npos) {
    problem(line_at(start),
            "The section " + opening_tag(section) + " is not read: it has no " + closing_tag(section) + ".");
    return;
  }
  if (const std::size_t again = m_text.find(opening_tag(section), end); again != std::string::npos)
    problem(line_at(again), "A second section " + opening_tag(section) + " is not read.");
  const std::vector<Line> lines = lines_below(tag_end, end);
  section == Section::commands ? read_commands(lines) : read_keyed(section, lines);
  tell_missing_items(section, line_at(start));
}

void Reader::read_commands(const std::vector<Line>& lines) {
  for (std::size_t position = 0; position < lines.size(); ++position)
    read_command(position, lines[position]);
}

void Reader::read_command(std::size_t position, const Line& line) {
  const std::vector<InterfaceItem>& items = interface_items(Section::commands);
  if (position >= items.size()) {
    if (!line.is_blank())
      problem(line.number,
              "This line is superfluous: there are " + std::to_string(items.size()) + " commands.");
    return;
  }
  const std::string wanted(items[position].key);
  if (!line.has_text) {
    problem(line.number, "This line stands in the place of '" + wanted + "', but has no ':' and a text.");
    return;
  }
  const bool key_of_another =
      line.key != wanted &&
      std::any_of(items.begin(), items.end(), [&](const auto& item) { return item.key == line.key; });
  if (key_of_another)
    problem(line.number,
            "'" + line.key + "' stands in the place of '" + wanted + "': commands count by their position.");
  texts(Section::commands)[position] = {line.number, line.text};
}

void Reader::read_keyed(Section section, const std::vector<Line>& lines) {
  std::map<std::string_view, std::size_t> positions;
  for (const InterfaceItem& item : interface_items(section))
    positions.emplace(item.key, positions.size());
  for (const Line& line : lines)
    read_item(section, positions, line);
}

void Reader::read_item(Section section, const std::map<std::string_view, std::size_t>& positions,
                       const Line& line) {
  if (line.is_blank()) return;
  if (!line.has_text) {
    problem(line.number, "This line is superfluous: it has no ':' and a text.");
    return;
  }
  const auto known = positions.find(line.key);
  if (known == positions.end()) {
    problem(line.number, "'" + line.key + "' is superfluous: " + opening_tag(section) + " has no such key.");
    return;
  }
  if (texts(section).contains(known->second))
    problem(line.number, "'" + line.key + "' stands here for the second time; this one counts.");
  texts(section)[known->second] = {line.number, line.text};
}

void Reader::tell_missing_items(Section section, std::size_t tag_line) {
  const std::vector<InterfaceItem>& items = interface_items(section);
  for (std::size_t position = 0; position < items.size(); ++position) {
    if (texts(section).contains(position)) continue;
    problem(tag_line, opening_tag(section) + ": '" + std::string(items[position].key) + "' is missing: \"" +
                          std::string(items[position].english) + "\"");
  }
}

}  // namespace

LanguageFile parse_language(std::string_view text) { return Reader(text).read(); }

std::vector<std::size_t> unreadable_lines(std::string_view text) {
  std::vector<std::size_t> unreadable;
  std::size_t number = 0;
  for (const std::string& line : split_lines(text)) {
    ++number;
    if (!is_valid_utf8(line) || contains(line, std::string_view("\0", 1))) unreadable.push_back(number);
  }
  return unreadable;
}

std::string problem_text(const LanguageProblem& problem) {
  return problem.line == 0 ? problem.text : "line " + std::to_string(problem.line) + ": " + problem.text;
}

}  // namespace ferrowen
