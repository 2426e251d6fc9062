// Pure parts of the argument-file family: which blocks, which numbers, which text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/status.hpp"
#include "pipeline/tiles/argument_file.hpp"
#include "runner/command.hpp"

namespace ferrowen {

namespace argument_name {
inline constexpr std::string_view selected = "templatetmp.args";
inline constexpr std::string_view saved_selection = "templatesel.args";
inline constexpr std::string_view renumbered = "templatenw.args";
inline constexpr std::string_view unsplit = "args/template1.args";
inline constexpr std::string_view contours = "nodem.args";
inline constexpr std::string_view dem = "dem.args";
inline constexpr std::string_view current = "sel.args";
}  // namespace argument_name

// The blocks with these map names, in the order of the file; the head is copied as it is.
ArgumentFile small_template(const ArgumentFile& file, const std::vector<std::string>& map_names);
// New map names: the block named `first` gets `map_id`, every other one keeps its distance to it. An error
// when a number would leave the eight digits.
Result<ArgumentFile> renumbered_template(const ArgumentFile& file, std::string_view first,
                                         std::string_view map_id);
// One block for an input that is built as it is.
ArgumentFile unsplit_template(std::string_view map_id, std::string_view description,
                              std::string_view input_file);

struct ContourArguments {
  std::vector<std::string> files;      // full paths
  std::vector<std::string> map_names;  // one per file, outside the range of the tiles
  bool map_is_transparent = false;
  int map_draw_priority = 25;
};
// Text of nodem.args: transparent and above the map, with both undone behind the last block.
std::string contour_arguments_text(const ContourArguments& contours);
// `count` map names that no tile has: behind the last of `taken`, or in front of the first when eight digits
// do not reach that far.
Result<std::vector<std::string>> free_map_names(const std::vector<std::string>& taken, std::size_t count);

// Text of sel.args: the options of a command, one per line, as mkgmap reads them from a file. An error for an
// option that a file cannot hold.
Result<std::string> current_arguments_text(const Command& command);

// A value that an argument file can hold; a line end in it is an error that names it.
Status check_argument_value(std::string_view value);

}  // namespace ferrowen
