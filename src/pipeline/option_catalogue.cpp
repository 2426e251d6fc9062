#include "pipeline/option_catalogue.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "app/tool_query.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

using Catalogue = std::vector<CatalogueOption>;

constexpr int message_locate_mkgmap = 46, message_locate_splitter = 90;
constexpr std::size_t most_options = 5000;  // of a text that is rubbish
constexpr std::size_t help_width = 79;

std::size_t indent_of(std::string_view line) { return std::min(line.find_first_not_of(' '), line.size()); }

// Joins the lines that were broken because the next word had no room; every other line end is meant, as in
// lists, tables and examples.
class HelpText {
 public:
  void add(std::string_view line) {
    const std::string_view content = trim(line);
    if (content.empty()) {
      m_after_blank = !m_text.empty();
      return;
    }
    const std::size_t first_word = std::min(content.find(' '), content.size());
    const bool was_broken = m_previous_length + 1 + first_word > help_width;
    const bool is_item = content.starts_with("- ") || content.starts_with("* ");
    if (!m_text.empty()) m_text += m_after_blank ? "\n\n" : was_broken && !is_item ? " " : "\n";
    m_text += content;
    m_after_blank = false;
    m_previous_length = indent_of(line) + content.size();
  }
  std::string take() {
    m_after_blank = false;
    return std::exchange(m_text, "");
  }

 private:
  std::string m_text;
  bool m_after_blank = false;
  std::size_t m_previous_length = 0;
};

bool is_name_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}

// Length of "--name" or "-c" at the beginning of a text; 0 when no option stands there.
std::size_t name_length(std::string_view text) {
  const std::size_t dashes = text.starts_with("--") ? 2 : 1;
  if (!text.starts_with('-')) return 0;
  const auto end = std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(std::min(dashes, text.size())),
                                    text.end(), is_name_character);
  const auto length = static_cast<std::size_t>(end - text.begin());
  return length > dashes && text[dashes] != '-' ? length : 0;
}

// "--mapname=name", "--max-jobs[=integer]", "-c filename", "--route".
CatalogueOption option_of(std::string_view head, const std::string& section) {
  CatalogueOption option;
  const std::size_t length = name_length(head);
  option.name = head.substr(0, length);
  option.section = section;
  std::string_view rest = trim(head.substr(length));
  if (rest.starts_with("[=") && rest.ends_with(']')) {
    option.kind = OptionKind::optional_value;
    rest = rest.substr(2, rest.size() - 3);
  } else if (!rest.empty()) {
    option.kind = OptionKind::value;
    if (rest.starts_with('=')) rest.remove_prefix(1);
  }
  option.hint = rest;
  return option;
}

class MkgmapReader {
 public:
  Catalogue read(std::string_view text) {
    for (const std::string& line : split_lines(text)) {
      if (m_options.size() + m_heads.size() > most_options) break;
      take(line);
    }
    finish();
    return std::move(m_options);
  }

 private:
  void take(const std::string& line) {
    if (line.starts_with("=== ")) return take_heading(line);
    if (line.empty() || line.starts_with(' ') || line.starts_with('\t')) {
      m_has_help = m_has_help || !trim(line).empty();
      if (!m_heads.empty()) m_help.add(replace_all(line, "\t", "    "));
      return;
    }
    const bool is_option = name_length(line) > 0;
    if (m_has_help || !is_option) finish();
    if (is_option && m_section != "Java") m_heads.push_back(option_of(line, m_section));
  }

  // "=== Hill Shading (DEM) options ==="
  void take_heading(std::string_view line) {
    finish();
    std::string_view name = trim(line.substr(std::string_view("=== ").size()));
    while (name.ends_with('=') || name.ends_with(' '))
      name.remove_suffix(1);
    for (const std::string_view ending : {" options", " Options"})
      if (name.ends_with(ending)) name.remove_suffix(ending.size());
    m_section = name;
  }

  void finish() {
    const std::string help = m_help.take();
    for (CatalogueOption& option : m_heads) {
      option.help = help;
      m_options.push_back(std::move(option));
    }
    m_heads.clear();
    m_has_help = false;
  }

  Catalogue m_options, m_heads;
  HelpText m_help;
  std::string m_section;
  bool m_has_help = false;
};

// The help of an option with a value begins like "The name of ..." or tells its default.
void tell_kind(CatalogueOption& option) {
  const std::string& help = option.help;
  if (contains(help, "Default is true") || contains(help, "Default is false")) {
    option.kind = OptionKind::optional_value;
    option.hint = "true|false";
    return;
  }
  constexpr std::array<std::string_view, 3> articles = {"The ", "A ", "An "};
  const bool names_a_thing = std::any_of(articles.begin(), articles.end(),
                                         [&](std::string_view article) { return help.starts_with(article); });
  const bool has_value = names_a_thing || contains(help, "Default is");
  option.kind = has_value ? OptionKind::value : OptionKind::flag;
}

bool is_short_option(const CatalogueOption& option) { return !option.name.starts_with("--"); }

}  // namespace

Catalogue read_mkgmap_options(std::string_view text) {
  Catalogue options = MkgmapReader().read(text);
  // Options are stored by their long names; each short one stands above its long one.
  std::erase_if(options, is_short_option);
  return options;
}

Catalogue read_splitter_options(std::string_view text) {
  Catalogue options;
  for (const std::string& line : split_lines(text)) {
    const std::string_view content = trim(line);
    const std::size_t length = name_length(content);
    const bool is_head =
        length > 0 && content.starts_with("--") && line.starts_with(" ") && indent_of(line) <= 2;
    if (is_head && options.size() < most_options) {
      options.push_back({std::string(content.substr(0, length)), "",
                         std::string(trim(content.substr(length))), "", OptionKind::flag});
    } else if (!options.empty() && line.starts_with("  ") && !content.empty()) {
      options.back().help.append(options.back().help.empty() ? "" : " ").append(content);
    }
  }
  for (CatalogueOption& option : options)
    tell_kind(option);
  return options;
}

Result<Catalogue> query_option_catalogue(Workspace& workspace, Prompts& prompts, Progress& progress,
                                         OptionTool tool) {
  const bool is_mkgmap = tool == OptionTool::mkgmap;
  const Settings& settings = workspace.settings;
  const std::string jar(trim(is_mkgmap ? settings.mkgmap_jar : settings.splitter_jar));
  if (jar.empty())
    return failed<Catalogue>(workspace.message(is_mkgmap ? message_locate_mkgmap : message_locate_splitter));
  const std::string argument = is_mkgmap ? "--help=options" : "--help";
  const Result<std::string> output = ask_jar(workspace, prompts, progress, jar, {argument});
  if (!output.ok()) return failed<Catalogue>(output.error);
  Catalogue options = is_mkgmap ? read_mkgmap_options(output.value) : read_splitter_options(output.value);
  if (options.empty()) return failed<Catalogue>(jar + ": no list of options came from this program.");
  return {std::move(options), ""};
}

}  // namespace ferrowen
