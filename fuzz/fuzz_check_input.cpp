#include <cstdint>

#include "expect.hpp"
#include "pipeline/tiles/input_file.hpp"

using namespace ferrowen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text_of(data, size);
  for (const InputKind kind : {InputKind::osm, InputKind::osm_gz, InputKind::pbf, InputKind::o5m,
                               InputKind::mp, InputKind::unknown}) {
    const bool good = check_input_bytes(bytes, kind).ok();
    fuzz::expect(!good || (size > 0 && kind != InputKind::unknown), "nothing and the unknown are never good");
    if (good && kind == InputKind::pbf)
      fuzz::expect(!check_input_bytes(bytes.substr(0, size - 1), kind).ok(),
                   "a PBF without its last byte is found");
  }
  return 0;
}
