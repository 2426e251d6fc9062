#include "platform/registry.hpp"

namespace ferrowen::platform {

std::optional<std::string> registry_text(RegistryRoot /*root*/, const std::string& /*key*/,
                                         const std::string& /*value*/) {
  return std::nullopt;
}

std::optional<std::uint32_t> registry_number(RegistryRoot /*root*/, const std::string& /*key*/,
                                             const std::string& /*value*/) {
  return std::nullopt;
}

}  // namespace ferrowen::platform
