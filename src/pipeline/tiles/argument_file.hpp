// mkgmap's argument files: options above, then blocks of mapname, description and input-file lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

struct ArgumentBlock {
  std::string map_name;
  std::string description;
  std::string input_file;
  std::string commented_description = {};  // what stands behind "# description:", kept as a comment
};

struct ArgumentFile {
  std::vector<std::string> head;  // the lines above the first block, as they stand (comments, options)
  std::vector<ArgumentBlock> blocks;
};

// Takes ":" and "=" between name and value, CR LF and LF. Lines inside a block that are none of the three
// are left out.
ArgumentFile parse_argument_file(std::string_view text);
// Head lines, then each block as three lines and a blank line; CR LF.
std::string argument_file_text(const ArgumentFile& file);
std::string argument_block_text(const ArgumentBlock& block);

}  // namespace ferrowen
