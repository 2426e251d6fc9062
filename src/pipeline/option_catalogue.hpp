// The options that the installed mkgmap and splitter know, read from their own help texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

enum class OptionKind : std::uint8_t { flag, value, optional_value };

struct CatalogueOption {
  std::string name;  // with its dashes: "--output-dir"
  std::string hint;  // what may stand behind "=": "directory"; "" for a flag, or when the help tells none
  std::string help;  // paragraphs separated by a blank line, their lines joined; lists keep their lines; LF
  std::string section;  // heading that it stands under: "File"; "" in the splitter's help
  OptionKind kind = OptionKind::flag;
};

// Text of "mkgmap.jar --help=options": headings "=== Sea Processing options ===", options at the beginning of
// a line, their help indented. Several options in a row share the help below them. Java's own options are
// left out. Any text is read; one that is no such help gives an empty list.
std::vector<CatalogueOption> read_mkgmap_options(std::string_view text);
// Text of "splitter.jar --help": " --name   help", which goes on in the same column. It does not mark which
// options take a value: that is told from the words of the help.
std::vector<CatalogueOption> read_splitter_options(std::string_view text);

enum class OptionTool : std::uint8_t { mkgmap, splitter };

// Asks the installed tool. The error says what is missing, or that what came is no such help.
Result<std::vector<CatalogueOption>> query_option_catalogue(Workspace& workspace, Prompts& prompts,
                                                            Progress& progress, OptionTool tool);

}  // namespace ferrowen
