// Reading single registry values. Where there is no registry, nothing is ever found.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ferrowen::platform {

enum class RegistryRoot : std::uint8_t { local_machine, current_user };

std::optional<std::string> registry_text(RegistryRoot root, const std::string& key, const std::string& value);
std::optional<std::uint32_t> registry_number(RegistryRoot root, const std::string& key,
                                             const std::string& value);

}  // namespace ferrowen::platform
