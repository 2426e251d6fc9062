#include <cstdint>

#include "app/option_sets.hpp"
#include "expect.hpp"

using namespace ferrowen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MessageTable messages;
  const OptionSets read = parse_option_sets(fuzz::text_of(data, size), messages);
  const std::string written = option_sets_text(read);
  const OptionSets again = parse_option_sets(written, messages);
  fuzz::expect(again.sets.size() == read.sets.size(), "a written file has the same sets");
  for (std::size_t i = 0; i < read.sets.size(); ++i) {
    fuzz::expect(again.sets[i].name == read.sets[i].name, "a name stays");
    fuzz::expect(again.sets[i].text == read.sets[i].text, "the text of a set stays");
  }
  return 0;
}
