// What the option editor shows of a text of options: its parts for colours, where each option stands, and
// what a person should look at before the tool refuses it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "pipeline/option_catalogue.hpp"

namespace ferrowen {

// Lines are counted from 0, places inside them in bytes.
struct TextRange {
  std::size_t line = 0, begin = 0, length = 0;
  [[nodiscard]] bool holds(std::size_t other_line, std::size_t place) const {
    return line == other_line && place >= begin && place <= begin + length;
  }
};

enum class OptionPart : std::uint8_t { comment, block_mark, name, value, word, ignored };

struct OptionSpan {
  TextRange range;
  OptionPart part = OptionPart::word;
};

struct OptionPlace {
  std::string name;  // as the tool knows it, "--route"; an option "--no-route" is an option of that name too
  TextRange range;
  bool active = true;  // not switched off by a "#"
};

enum class OptionFault : std::uint8_t {
  unknown,      // the installed tool does not know it and would stop
  repeated,     // stands in `other_line` too, and only one of them counts
  placeholder,  // its value is still the word of the help
  no_dashes,    // the tool takes it for the name of an input file
};

struct OptionFinding {
  TextRange range;
  OptionFault fault = OptionFault::unknown;
  std::string subject;
  std::size_t other_line = 0;
};

struct OptionsLint {
  std::vector<OptionSpan> spans;  // these three in the order of the text
  std::vector<OptionFinding> findings;
  std::vector<OptionPlace> places;
  // The first active place of an option, else one that is switched off; nullptr when it stands nowhere.
  [[nodiscard]] const OptionPlace* find(std::string_view name) const;
};

// Reads the text as parse_options_text (mkgmap) and the splitter's command do. Without `known` options,
// because the tool could not be asked, none is called unknown.
OptionsLint lint_options(std::string_view text, OptionTool tool, const std::vector<CatalogueOption>& known);

}  // namespace ferrowen
