#include <cstdint>

#include "app/language_file.hpp"
#include "expect.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::text_of(data, size);
  const LanguageFile file = parse_language(text);
  Workspace workspace;
  for (const auto& [number, message] : file.messages) {
    expect(workspace.messages.set(number, message.text), "a message has a place in the table");
    expect(file.marked && message.text.find_first_of("#\r\n") == std::string::npos,
           "a text is a line's part");
  }
  for (std::size_t section = 0; section < section_count; ++section) {
    for (const auto& [position, item] : file.texts.at(section))
      expect(workspace.texts.set(static_cast<Section>(section), position, item.text), "an item has a place");
  }
  expect(check_language(text).size() >= file.problems.size(), "the check tells every problem of the reader");
  return 0;
}
