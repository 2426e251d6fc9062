#include <cstdint>
#include <string>

#include "base/registry_text.hpp"
#include "base/registry_tree.hpp"
#include "expect.hpp"

using namespace ferrowen;
using fuzz::expect;

namespace {

// What a store keeps must come back as it was.
void check_store(const std::vector<RegistryChange>& changes) {
  RegistryTree tree;
  tree.apply(changes);
  const std::string text = registry_text_of(tree.content());
  RegistryText again = parse_registry_file(encode_registry_text(text));
  RegistryTree second;
  second.apply(again.changes);
  expect(again.problems.empty(), "a written store has no line that cannot be read");
  expect(registry_text_of(second.content()) == text, "a written store reads back as the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text_of(data, size);
  const RegistryText text = parse_registry_file(bytes);
  check_store(text.changes);
  const WineRegistryText wine =
      parse_wine_registry(bytes, "HKEY_CURRENT_USER", [](std::string_view key) { return !key.empty(); });
  for (const RegistryChange& change : wine.changes)
    expect(change.key.starts_with("HKEY_CURRENT_USER\\") && !change.remove, "keys stand below their root");
  return 0;
}
