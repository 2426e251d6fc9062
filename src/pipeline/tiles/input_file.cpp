#include "pipeline/tiles/input_file.hpp"

#include <filesystem>
#include <system_error>

#include "base/text.hpp"
#include "pipeline/tiles/byte_source.hpp"
#include "pipeline/tiles/map_frame.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

struct Ending {
  std::string_view text;
  InputKind kind;
};
constexpr Ending endings[] = {{".osm", InputKind::osm},
                              {".osm.gz", InputKind::osm_gz},
                              {".pbf", InputKind::pbf},
                              {".o5m", InputKind::o5m},
                              {".mp", InputKind::mp}};

constexpr int message_cannot_find = 35, message_please_add = 59, message_zero_length = 77;

std::string check_frame(ByteSource& source, InputKind kind) {
  if (source.size() == 0) return "is empty.";
  switch (kind) {
    case InputKind::osm:
      return check_osm_xml(source);
    case InputKind::osm_gz:
      return check_gzip(source);
    case InputKind::pbf:
      return check_pbf(source);
    case InputKind::o5m:
      return check_o5m(source);
    case InputKind::mp:
      return check_mp(source);
    case InputKind::unknown:
      break;
  }
  return "is of no kind that can be built. Please choose a file whose name ends in .osm, .osm.gz, .pbf, .o5m "
         "or .mp.";
}

// What can be said without opening the file.
std::string check_place(const std::string& path, const MessageTable& messages) {
  if (trim(path).empty()) return messages(message_please_add);
  std::error_code error;
  const std::filesystem::file_status status =
      std::filesystem::status(platform::file_system_path(path), error);
  if (!std::filesystem::exists(status)) return messages(message_cannot_find) + path;
  if (std::filesystem::is_directory(status)) return "'" + path + "' is a folder. Please choose a map file.";
  if (!std::filesystem::is_regular_file(status))
    return "'" + path + "' is no ordinary file. Please choose a map file.";
  const std::uintmax_t size = std::filesystem::file_size(platform::file_system_path(path), error);
  return !error && size == 0 ? messages(message_zero_length) + path : "";
}

}  // namespace

InputKind input_kind(std::string_view path) {
  for (const auto& [ending, kind] : endings)
    if (ends_with_ignoring_case(path, ending)) return kind;
  return InputKind::unknown;
}

bool is_mp(std::string_view path) { return input_kind(path) == InputKind::mp; }

Status check_input(const std::string& path, const MessageTable& messages) {
  if (std::string problem = check_place(path, messages); !problem.empty()) return {problem};
  FileSource source(path);
  if (!source.is_open()) return {"'" + path + "' cannot be opened. Please check who may read it."};
  const std::string problem = check_frame(source, input_kind(path));
  if (source.read_failed()) return {"'" + path + "' cannot be read. Please check the disk that it is on."};
  return {problem.empty() ? "" : "'" + path + "' " + problem};
}

PbfState pbf_state(const std::string& path) {
  FileSource source(path);
  if (!source.is_open()) return PbfState::damaged;
  const PbfFrame frame = read_pbf_frame(source);
  if (!frame.problem.empty() || source.read_failed()) return PbfState::damaged;
  return frame.holds_data ? PbfState::with_data : PbfState::without_data;
}

Status check_input_bytes(std::string_view bytes, InputKind kind) {
  MemorySource source(bytes);
  return {check_frame(source, kind)};
}

}  // namespace ferrowen
