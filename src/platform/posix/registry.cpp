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

RegistryKeyContent read_registry_key(RegistryRoot /*root*/, const std::string& /*key*/) { return {}; }

RegistryDeletion delete_registry_key(RegistryRoot /*root*/, const std::string& /*key*/) {
  return {RegistryFault::opening_parent, "this system has no registry"};
}

std::string user_security_identifier() { return ""; }

}  // namespace ferrowen::platform
