#include <cstdint>

#include "expect.hpp"
#include "pipeline/option_catalogue.hpp"

using namespace ferrowen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::text_of(data, size);
  for (const auto& options : {read_mkgmap_options(text), read_splitter_options(text)}) {
    for (const CatalogueOption& option : options) {
      fuzz::expect(option.name.starts_with("--") && option.name.size() > 2,
                   "an option has its dashes and a name");
      fuzz::expect(option.name.find_first_of(" =[\n") == std::string::npos, "a name is one word");
      fuzz::expect(option.kind != OptionKind::flag || option.hint.empty(), "a flag has no value");
    }
  }
  return 0;
}
