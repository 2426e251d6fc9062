#include <cstdint>

#include "base/text.hpp"
#include "expect.hpp"
#include "pipeline/nsis_script.hpp"

using namespace ferrowen;
using fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const NsisScript script = parse_nsis_script(fuzz::text_of(data, size));
  for (const std::string& name : script.typs) {
    expect(ends_with_ignoring_case(name, ".typ"), "a TYP is named with its ending");
    expect(name.find_first_of("/\\~\"") == std::string::npos, "a TYP is a name, never a path");
  }
  expect(!is_installer_name(script.installer_name) ||
             script.installer_name.find_first_of("/\\\n") == std::string::npos,
         "an installer never gets outside its folder");
  return 0;
}
