#include <cstdint>

#include "expect.hpp"
#include "pipeline/options_text.hpp"

using namespace ferrowen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const OptionsText parsed = parse_options_text(fuzz::text_of(data, size), "mkopts");
  for (const Argument& argument : parsed.options)
    fuzz::expect(option_name(argument).empty() || has_option_named(parsed.options, option_name(argument)),
                 "an option is found by its name");
  for (const std::string& line : parsed.dem_options)
    fuzz::expect(line.find('\n') == std::string::npos, "a DEM option is one line");
  return 0;
}
