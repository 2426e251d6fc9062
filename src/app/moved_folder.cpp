#include "app/moved_folder.hpp"

#include <algorithm>
#include <vector>

#include "app/settings.hpp"
#include "base/files.hpp"
#include "base/fold_name.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

// Walks the names of a path; several separators in a row count as one.
class Names {
 public:
  Names(std::string_view path, const PathRules& rules)
      : m_path(path), m_separators(rules.separator == '/' ? "/" : "\\/") {}

  // The next name; "" behind the last one.
  std::string_view next() {
    const std::size_t start = m_path.find_first_not_of(m_separators, m_position);
    if (start == std::string_view::npos) return "";
    m_position = std::min(m_path.find_first_of(m_separators, start), m_path.size());
    return m_path.substr(start, m_position - start);
  }
  // What has not been walked yet, without the separators before it.
  [[nodiscard]] std::string_view rest() const {
    const std::size_t start = m_path.find_first_not_of(m_separators, m_position);
    return start == std::string_view::npos ? "" : m_path.substr(start);
  }
  [[nodiscard]] bool starts_at_root() const {
    return !m_path.empty() && m_path.find_first_of(m_separators) == 0;
  }

 private:
  std::string_view m_path;
  std::string_view m_separators;
  std::size_t m_position = 0;
};

bool is_same_name(std::string_view left, std::string_view right, const PathRules& rules) {
  return rules.ignore_case ? same_name(left, right) : left == right;
}

// A path that climbs may lead out of the folder again.
bool climbs(std::string_view path, const PathRules& rules) {
  Names names(path, rules);
  for (std::string_view name = names.next(); !name.empty(); name = names.next())
    if (name == "..") return true;
  return false;
}

std::string joined(std::string_view folder, std::string_view rest, const PathRules& rules) {
  std::string path(folder);
  const bool ends_open = path.ends_with('/') || path.ends_with(rules.separator);
  if (!rest.empty() && !ends_open) path += rules.separator;
  return path.append(rest);
}

// Without the separators that a person may have typed behind it.
bool is_same_place(std::string_view left, std::string_view right) {
  const PathRules rules;
  const auto there = moved_path(left, right, "", rules);
  const auto back = moved_path(right, left, "", rules);
  return (there && back) || same_file(std::string(left), std::string(right));
}

std::string moved_value(const Field& field, const std::string& stored, std::string_view from,
                        std::string_view to) {
  if (field.type == FieldType::path) return moved_path(stored, from, to).value_or(stored);
  if (field.type != FieldType::lines) return stored;
  std::vector<std::string> lines = split(stored, line_joint);
  for (std::string& line : lines)
    line = moved_line(line, from, to);
  return join_texts(lines, line_joint);
}

}  // namespace

std::optional<std::string> moved_path(std::string_view path, std::string_view from, std::string_view to,
                                      const PathRules& rules) {
  Names names(path, rules);
  Names folder(from, rules);
  if (names.starts_at_root() != folder.starts_at_root()) return std::nullopt;
  for (std::string_view name = folder.next(); !name.empty(); name = folder.next())
    if (!is_same_name(names.next(), name, rules)) return std::nullopt;
  if (climbs(names.rest(), rules)) return std::nullopt;
  return joined(to, names.rest(), rules);
}

std::string moved_line(std::string_view line, std::string_view from, std::string_view to,
                       const PathRules& rules) {
  if (auto moved = moved_path(line, from, to, rules)) return *moved;
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return std::string(line);
  std::vector<std::string> paths = split(line.substr(equals + 1), ",");
  for (std::string& path : paths) {
    const std::string quote = path.starts_with('"') ? "\"" : "";
    const std::string_view bare = std::string_view(path).substr(quote.size());
    if (auto moved = moved_path(bare, from, to, rules)) path = quote + *moved;
  }
  return std::string(line.substr(0, equals + 1)) + join_texts(paths, ",");
}

void follow_program_folder(Settings& settings, std::string_view home) {
  const std::string old = settings.program_folder;
  if (!platform::is_absolute(old)) {
    settings.program_folder = home;
    return;
  }
  // Another name for the same folder changes nothing: the paths go on telling the name that they were given.
  if (is_same_place(old, home)) return;
  for (const Field& field : settings_fields()) {
    const std::string stored = stored_text(settings, field);
    const std::string moved = moved_value(field, stored, old, home);
    if (moved != stored) assign_stored(settings, field, moved, home);
  }
  settings.program_folder = home;
}

}  // namespace ferrowen
