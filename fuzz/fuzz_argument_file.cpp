#include <cstdint>

#include "expect.hpp"
#include "pipeline/tiles/argument_file.hpp"

using namespace ferrowen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ArgumentFile file = parse_argument_file(fuzz::text_of(data, size));
  const std::string written = argument_file_text(file);
  const ArgumentFile again = parse_argument_file(written);
  fuzz::expect(again.blocks.size() == file.blocks.size(), "a written file has the same blocks");
  fuzz::expect(argument_file_text(again) == written,
               "writing what was read from a written file changes nothing");
  return 0;
}
