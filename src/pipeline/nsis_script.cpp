#include "pipeline/nsis_script.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view name_line = "!DEFINE INSTALLER_NAME";
constexpr std::string_view typ_ending = ".TYP";
// Separators and wildcards would lead elsewhere or nowhere; the dollar begins a variable.
constexpr std::string_view never_in_names = "\\/:*?\"<>|$";

// Between the first and the last quote, or all of it when there are no two.
std::string_view unquoted(std::string_view text) {
  text = trim(text);
  const std::size_t first = text.find('"');
  const std::size_t last = text.rfind('"');
  return first == last ? text : text.substr(first + 1, last - first - 1);
}

bool separates(char c) { return c == '"' || c == '\\' || c == '/'; }

// The file name around the ending at `at`; blanks belong to it inside quotes only.
std::string name_around(std::string_view line, std::size_t at) {
  const bool is_quoted =
      std::count(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(at), '"') % 2 != 0;
  std::size_t begin = at;
  while (begin > 0 && !separates(line[begin - 1]) && (is_quoted || line[begin - 1] != ' '))
    --begin;
  return std::string(trim(line.substr(begin, at + typ_ending.size() - begin)));
}

// Temporary files carry a "~" in their names.
void add_typ(NsisScript& script, std::string name) {
  if (contains(name, "~") || name.size() == typ_ending.size()) return;
  const auto is_same = [&](const std::string& one) { return equal_ignoring_case(one, name); };
  if (std::none_of(script.typs.begin(), script.typs.end(), is_same)) script.typs.push_back(std::move(name));
}

std::string_view without_mark(std::string_view name) {
  return !name.empty() && (name[0] == 'x' || name[0] == 'X') ? name.substr(1) : name;
}

}  // namespace

NsisScript parse_nsis_script(std::string_view text) {
  NsisScript script;
  for (const std::string& line : split_lines(text)) {
    const std::string upper = upper_ascii(trim(line));
    if (upper.starts_with(name_line)) script.installer_name = unquoted(trim(line).substr(name_line.size()));
    const std::string whole = upper_ascii(line);
    const std::size_t at = whole.find(typ_ending);
    if (at != std::string::npos) add_typ(script, name_around(line, at));
  }
  return script;
}

bool is_installer_name(std::string_view name) {
  return !trim(name).empty() && std::none_of(name.begin(), name.end(), [](char c) {
    return contains(never_in_names, std::string_view(&c, 1)) || (c >= '\0' && c < ' ');
  });
}

bool same_typ_name(std::string_view one, std::string_view other) {
  return equal_ignoring_case(one, other) || equal_ignoring_case(without_mark(one), other) ||
         equal_ignoring_case(one, without_mark(other));
}

}  // namespace ferrowen
