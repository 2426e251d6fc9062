#include <cstdint>

#include "app/settings.hpp"
#include "expect.hpp"

using namespace ferrowen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string home = "/program folder";
  const std::string first = settings_text(parse_settings(fuzz::text_of(data, size), home).settings);
  const std::string second = settings_text(parse_settings(first, home).settings);
  fuzz::expect(first == second, "saving what was loaded from a saved file changes nothing");
  return 0;
}
