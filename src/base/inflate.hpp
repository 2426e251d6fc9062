// Unpacking of "deflate" data (RFC 1951), as in zip archives.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/status.hpp"

namespace ferrowen {

// Data that gives more than `limit` bytes is refused as soon as it does; nothing larger is ever held. What
// follows the last block is ignored.
Result<std::string> inflate(std::string_view packed, std::size_t limit);

// Checksum of zip archives (CRC-32 of ISO 3309). `before` is that of the bytes in front of these.
std::uint32_t crc32(std::string_view bytes, std::uint32_t before = 0);

}  // namespace ferrowen
