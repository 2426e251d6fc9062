#include "styletools/style_text.hpp"

#include <algorithm>
#include <map>

#include "app/style_info.hpp"
#include "base/encoding.hpp"
#include "base/text.hpp"
#include "styletools/style_scan.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t deepest_include = 64;
constexpr std::string_view include_keyword = "include";
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

void replace_in(std::string& text, std::string_view from, std::string_view to) {
  if (contains(text, from)) text = replace_all(text, from, to);
}

// Blanks and brackets as the checks expect them, in this order.
void normalise(std::string& line) {
  std::replace(line.begin(), line.end(), '\t', ' ');
  replace_in(line, "  ", " ");
  replace_in(line, " =", "=");
  replace_in(line, "[ ", "[");
  if (!trim(line).starts_with('#')) replace_in(line, "[0X", "[0x");
  std::erase(line, '\r');
  replace_in(line, " ]", "]");
  replace_in(line, " {", "{");
  replace_in(line, " }", "}");
}

bool is_comment(std::string_view line) { return trim(line).starts_with('#'); }

// A bracket opened at the end of a line draws the next line up; a comment draws up comments alone, so that
// it never swallows a rule, wherever on its line it begins.
bool draws_up(std::string_view line, std::string_view next) {
  if (!line.ends_with('{') && !line.ends_with('[')) return false;
  return without_comment(line) == trim(line) || (is_comment(line) && is_comment(next));
}

class TextReader {
 public:
  TextReader(StyleText& style, const IncludeSource& source) : m_style(style), m_source(source) {}

  void read_rule_file(const StyleFileBytes& file) {
    if (m_known.contains(file.path)) return;
    m_is_base = !file.name.empty();
    read(m_is_base ? file.name : std::string(rule_file_name(m_style.kind)), file);
  }

 private:
  // A rule file or an included one, with everything that it includes.
  void read(const std::string& name, const StyleFileBytes& file) {
    const auto index = static_cast<std::uint32_t>(m_style.files.size());
    m_style.files.push_back(
        {name, file.path, file.folder, m_style.lines.size(), 0, m_open.empty(), m_is_base});
    add_lines(index, file.bytes);
    m_style.files[index].line_count = m_style.lines.size() - m_style.files[index].first_line;
    m_known.emplace(file.path, index);
    m_open.push_back(index);
    follow_includes(index);
    m_open.pop_back();
  }

  void report(StylePlace place, std::string text) { m_style.problems.push_back({place, std::move(text)}); }

  void add_lines(std::uint32_t file, std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
      const std::string text = "This text is in UTF-16; mkgmap reads UTF-8.";
      m_style.unread.push_back(m_style.files[file].path + ": " + text);
      return report({file, 0}, text);
    }
    if (bytes.starts_with(byte_order_mark)) bytes.remove_prefix(byte_order_mark.size());
    if (contains(bytes, std::string_view("\0", 1)))
      report({file, 0}, "This is no text: it holds bytes of value 0.");
    const bool old_line_ends = !contains(bytes, "\n") && contains(bytes, "\r");
    if (old_line_ends) report({file, 0}, "The lines end with CR alone; mkgmap and editors expect LF.");
    const bool is_utf8 = is_valid_utf8(bytes);
    std::vector<std::uint32_t> foreign;  // lines in another encoding
    const char end = old_line_ends ? '\r' : '\n';
    for (std::uint32_t number = 1; !bytes.empty(); ++number) {
      const std::size_t length = bytes.find(end);
      std::string line(bytes.substr(0, length));
      bytes.remove_prefix(length == std::string_view::npos ? bytes.size() : length + 1);
      if (!is_utf8 && !is_valid_utf8(line)) {
        foreign.push_back(number);
        line = utf8_or_latin1(line);  // so that it can be shown and its rules be checked
      }
      normalise(line);
      add_line({file, number}, std::move(line));
    }
    if (!foreign.empty()) report({file, foreign.front()}, foreign_text(foreign.size() - 1));
  }

  static std::string foreign_text(std::size_t more) {
    const std::string others = more == 0 ? "" : " (and " + std::to_string(more) + " more below)";
    return "This line" + others + " is not in UTF-8: mkgmap refuses the file.";
  }

  void add_line(StylePlace place, std::string line) {
    const bool has_previous = m_style.lines.size() > m_style.files[place.file].first_line;
    const bool is_drawn_up = has_previous && draws_up(m_last_line, line);
    m_last_line = line;
    if (is_drawn_up)
      m_style.lines.back().text += line;
    else
      m_style.lines.push_back({place, std::move(line)});
  }

  void follow_includes(std::uint32_t file) {
    const StyleFile own = m_style.files[file];
    for (std::size_t at = own.first_line; at < own.first_line + own.line_count; ++at) {
      const StyleLine line = m_style.lines[at];
      std::string name = chk_include(line.text);
      if (name.empty()) {
        std::string mistake = include_mistake(line.text);
        if (!mistake.empty()) report(line.place, std::move(mistake));
        continue;
      }
      report_spelling(line.place, line.text);
      const std::size_t index = m_style.includes.size();
      m_style.includes.push_back(
          {line.place, std::move(name), std::string(include_words(line.text).style), std::nullopt});
      follow(index, own.folder);
    }
  }

  // What mkgmap refuses, however plain it is what is meant.
  void report_spelling(StylePlace place, std::string_view line) {
    const IncludeWords words = include_words(line);
    if (!trim(line).starts_with(include_keyword)) report(place, "mkgmap knows 'include' in lower case only.");
    if (!words.is_quoted && words.name.find_first_of("/\\") != std::string_view::npos)
      report(place, "'" + std::string(words.name) + "' must stand in quotes.");
  }

  void follow(std::size_t index, const std::string& folder) {
    const StyleInclude include = m_style.includes[index];
    const std::optional<StyleFileBytes> file = m_source(include, folder);
    if (file && !file->note.empty())
      return m_style.problems.push_back({include.place, file->note, "", !file->is_broken});
    if (!file) return report(include.place, "The included file '" + include.name + "' is missing.");
    const auto known = m_known.find(file->path);
    if (known != m_known.end()) {
      m_style.includes[index].target = known->second;
      if (std::find(m_open.begin(), m_open.end(), known->second) != m_open.end())
        report(include.place, "'" + include.name + "' includes itself.");
      return;
    }
    if (m_open.size() >= deepest_include)
      return report(include.place, "'" + include.name + "' is included too deeply.");
    const auto target = static_cast<std::uint32_t>(m_style.files.size());
    m_style.includes[index].target = target;
    read(include.name, *file);
  }

  StyleText& m_style;
  const IncludeSource& m_source;
  std::vector<std::uint32_t> m_open;  // files whose include lines are being followed, outermost first
  bool m_is_base = false;
  std::string m_last_line;                       // before it was joined with others
  std::map<std::string, std::uint32_t> m_known;  // the files read, by their paths
};

}  // namespace

std::string StyleText::text() const {
  std::string all;
  for (const StyleLine& line : lines) {
    all += line.text;
    all += crlf;
  }
  return all;
}

StyleText read_style_text(RuleKind kind, const StyleFileBytes& rule_file, const IncludeSource& source) {
  return read_style_text(kind, std::vector{rule_file}, source);
}

StyleText read_style_text(RuleKind kind, const std::vector<StyleFileBytes>& rule_files,
                          const IncludeSource& source) {
  StyleText style;
  style.kind = kind;
  TextReader reader(style, source);
  for (const StyleFileBytes& file : rule_files)
    reader.read_rule_file(file);
  return style;
}

std::string include_mistake(std::string_view line) {
  line = trim(line);
  if (!equal_ignoring_case(line.substr(0, include_keyword.size()), include_keyword) ||
      !chk_include(line).empty())
    return "";
  line = trim(line.substr(include_keyword.size()));
  if (line.empty() || !contains("'\"", line.substr(0, 1))) return "";
  const bool is_closed = line.find(line.front(), 1) != std::string_view::npos;
  return is_closed ? "This include line names no file." : "The quote of this include line is never closed.";
}

std::string chk_include(std::string_view text) {
  std::string names;
  while (!text.empty()) {
    const std::size_t length = text.find('\n');
    if (const std::string_view name = include_words(text.substr(0, length)).name; !name.empty())
      names.append(names.empty() ? "" : crlf).append(name);
    text.remove_prefix(length == std::string_view::npos ? text.size() : length + 1);
  }
  return names;
}

std::string include_letter(std::uint32_t file) {
  if (file == 0) return "";
  constexpr std::uint32_t letters = 26;
  std::string name;
  for (std::uint32_t left = file; left > 0; left = (left - 1) / letters)
    name.insert(name.begin(), static_cast<char>('a' + (left - 1) % letters));
  return name + ") ";
}

std::string include_label(const StyleText& style) {
  std::string label = "Include:";
  for (std::uint32_t file = 1; file < style.files.size(); ++file)
    label += " " + include_letter(file) + style.files[file].name;
  return label;
}

}  // namespace ferrowen
