// The input map file: its kind, and a look at its bytes that finds what the tools would pass over in silence.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/message_table.hpp"
#include "base/status.hpp"

namespace ferrowen {

enum class InputKind : std::uint8_t { osm, osm_gz, pbf, o5m, mp, unknown };

// By the ending of the name, without case.
InputKind input_kind(std::string_view path);
bool is_mp(std::string_view path);

// Looks at a map file's frame: PBF blocks up to the exact end of the file, O5M start and end marks, the root
// element of OSM XML opened and closed, the header section of MP. A missing, empty, truncated or foreign file
// is an error that says so; nothing is decoded. Reads only the block heads, so it is fast on large files.
Status check_input(const std::string& path, const MessageTable& messages = MessageTable());

// The same on bytes in memory, for one kind. The error is the end of a sentence: "is no O5M file. ...".
Status check_input_bytes(std::string_view bytes, InputKind kind);

// A PBF file that a tool was to write. The tools themselves do not notice a disk that fills up while they
// write; only the blocks tell it, which then do not reach to the exact end of the file.
enum class PbfState : std::uint8_t { damaged, without_data, with_data };
PbfState pbf_state(const std::string& path);

// Size of the input above which it is taken to need a split (12 Mb).
inline constexpr std::uint64_t split_size_bytes = 12ULL * 1000 * 1000;

}  // namespace ferrowen
