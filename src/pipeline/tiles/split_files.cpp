#include "pipeline/tiles/split_files.hpp"

#include <algorithm>
#include <array>

#include "base/files.hpp"
#include "base/text.hpp"
#include "pipeline/tiles/argument_file.hpp"
#include "pipeline/tiles/tile_list.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t tile_number_digits = 8;
constexpr std::size_t lines_shown = 4;
constexpr std::string_view temporary_ending = ".tmp";
// What one split leaves beside its tiles, and the selections that were made from it.
constexpr std::array<std::string_view, 7> list_names = {
    areas_list_name,    areas_poly_name,    template_name,    "densities-out.txt",
    "templatesel.args", "templatetmp.args", "templatenw.args"};
constexpr std::array<std::string_view, 3> temporary_names = {"node", "way", "rel"};

// Keeps the first error of several steps that are all to be done.
void note(Status& first, const Status& next) {
  if (first.ok()) first = next;
}

// "node1320130554289616341.tmp". Others may keep files with this ending too.
bool is_splitters_temporary(std::string_view name) {
  name.remove_suffix(temporary_ending.size());
  return std::any_of(temporary_names.begin(), temporary_names.end(), [&](std::string_view start) {
    return name.starts_with(start) && is_digits(name.substr(start.size()));
  });
}

std::vector<std::string> temporary_files(const std::string& folder) {
  std::vector<std::string> names = list_files(folder, {std::string(temporary_ending)});
  std::erase_if(names, [](const std::string& name) { return !is_splitters_temporary(name); });
  return names;
}

bool says_nothing(std::string_view line) {
  return line.empty() || line.starts_with("at ") || line.starts_with("Elapsed time") ||
         line.starts_with("... ") || line.starts_with("Picked up ");
}

bool tells_a_failure(std::string_view line) {
  constexpr std::array<std::string_view, 7> words = {"error",  "exception", "unable",   "invalid",
                                                     "cannot", "must be",   "not found"};
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view one) { return contains_ignoring_case(line, one); });
}

std::vector<std::string> meaningful_lines(std::string_view text) {
  std::vector<std::string> lines;
  for (const std::string& raw_line : split_lines(text)) {
    const std::string line(trim(raw_line));
    if (!says_nothing(line) && (lines.empty() || lines.back() != line)) lines.push_back(line);
  }
  return lines;
}

// The first lines that tell a failure: what follows is mostly a consequence.
std::vector<std::string> telling_lines(std::vector<std::string> lines) {
  std::erase_if(lines, [](const std::string& line) { return !tells_a_failure(line); });
  lines.resize(std::min(lines.size(), lines_shown));
  return lines;
}

std::vector<std::string> last_lines(std::vector<std::string> lines) {
  if (lines.size() > lines_shown) lines.erase(lines.begin(), lines.end() - lines_shown);
  return lines;
}

}  // namespace

bool is_tile_name(std::string_view name) {
  constexpr std::array<std::string_view, 4> endings = {".pbf", ".osm.pbf", ".o5m", ".osm.gz"};
  const std::string_view ending = name.substr(std::min(name.size(), tile_number_digits));
  return is_digits(name.substr(0, tile_number_digits)) &&
         std::find(endings.begin(), endings.end(), ending) != endings.end();
}

std::vector<std::string> split_file_names(const std::string& folder) {
  std::vector<std::string> names;
  const std::string text = read_whole_file(platform::join(folder, template_name));
  for (const ArgumentBlock& block : parse_argument_file(text).blocks) {
    if (is_tile_name(block.input_file)) names.push_back(block.input_file);
  }
  names.insert(names.end(), list_names.begin(), list_names.end());
  return names;
}

bool has_temporary_files(const std::string& folder) { return !temporary_files(folder).empty(); }

Status SplitFiles::remove_temporary_files() const {
  Status first;
  for (const std::string& name : temporary_files(m_folder))
    note(first, remove_file(platform::join(m_folder, name)));
  return first;
}

Status SplitFiles::move_old_aside() {
  if (Status made = make_folder(m_folder); !made.ok()) return made;
  for (const std::string& name : split_file_names(m_folder)) {
    if (Status taken = m_old.take(platform::join(m_folder, name)); !taken.ok()) return taken;
  }
  return remove_temporary_files();
}

Status SplitFiles::accept() { return m_old.drop(); }

Status SplitFiles::bring_back() {
  Status first = remove_temporary_files();
  for (const std::string& name : split_file_names(m_folder))
    note(first, remove_file(platform::join(m_folder, name)));
  note(first, m_old.restore());
  return first;
}

std::string explanation(std::string_view error_text, std::string_view output) {
  const std::vector<std::string> errors = meaningful_lines(error_text);
  const std::vector<std::string> printed = meaningful_lines(output);
  std::vector<std::string> lines = telling_lines(errors);
  if (lines.empty()) lines = telling_lines(printed);
  if (lines.empty()) lines = last_lines(errors.empty() ? printed : errors);
  return join_texts(lines, crlf);
}

}  // namespace ferrowen
