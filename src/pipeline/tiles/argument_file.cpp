#include "pipeline/tiles/argument_file.hpp"

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view commented_description = "# description:";

struct NameAndValue {
  std::string name;
  std::string value;
};

// A comment, a blank line or a line without separator has no name.
NameAndValue name_and_value(std::string_view raw_line) {
  const std::string_view line = trim(raw_line);
  const std::size_t separator = line.find_first_of(":=");
  if (line.starts_with('#') || separator == std::string_view::npos) return {};
  return {lower_ascii(trim(line.substr(0, separator))), std::string(trim(line.substr(separator + 1)))};
}

}  // namespace

ArgumentFile parse_argument_file(std::string_view text) {
  ArgumentFile file;
  while (text.starts_with("\xEF\xBB\xBF"))
    text.remove_prefix(3);
  for (const std::string& line : split_lines(text)) {
    NameAndValue option = name_and_value(line);
    if (option.name == "mapname") {
      file.blocks.push_back({std::move(option.value), "", "", ""});
    } else if (file.blocks.empty()) {
      file.head.push_back(line);
    } else if (trim(line).starts_with(commented_description)) {
      file.blocks.back().commented_description = trim(line).substr(commented_description.size());
    } else if (option.name == "description") {
      file.blocks.back().description = std::move(option.value);
    } else if (option.name == "input-file") {
      file.blocks.back().input_file = std::move(option.value);
    }
  }
  return file;
}

std::string argument_block_text(const ArgumentBlock& block) {
  // An empty description would blank out the one of the command, so that it stays a comment.
  const std::string description = block.description.empty()
                                      ? std::string(commented_description) + block.commented_description
                                      : "description: " + block.description;
  return join_texts({"mapname: " + block.map_name, description, "input-file: " + block.input_file, "", ""},
                    crlf);
}

std::string argument_file_text(const ArgumentFile& file) {
  std::string text;
  for (const std::string& line : file.head)
    text.append(line).append(crlf);
  for (const ArgumentBlock& block : file.blocks)
    text += argument_block_text(block);
  return text;
}

}  // namespace ferrowen
