#include "pipeline/tiles/map_frame.hpp"

#include <array>
#include <optional>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr const char* get_again = " Please download or copy the file again.";
constexpr const char* no_data = "holds no map data.";

std::string truncated(const std::string& where) { return "is not complete: " + where + "." + get_again; }

std::string foreign(const std::string& kind) {
  return "is no " + kind + ". Please choose a map file, or give the file the ending of what it is.";
}

// A number in seven-bit pieces, the lowest first; taken off the front of `bytes`.
std::optional<std::uint64_t> take_varint(std::string_view& bytes) {
  constexpr unsigned most_pieces = 10;
  std::uint64_t number = 0;
  for (unsigned piece = 0; piece < most_pieces && piece < bytes.size(); ++piece) {
    const auto byte = static_cast<unsigned char>(bytes[piece]);
    number |= static_cast<std::uint64_t>(byte & 0x7FU) << (7 * piece);
    if ((byte & 0x80U) != 0) continue;
    bytes.remove_prefix(piece + 1);
    return number;
  }
  return std::nullopt;
}

std::optional<std::string_view> take_bytes(std::string_view& bytes, std::uint64_t count) {
  if (count > bytes.size()) return std::nullopt;
  const std::string_view taken = bytes.substr(0, static_cast<std::size_t>(count));
  bytes.remove_prefix(static_cast<std::size_t>(count));
  return taken;
}

namespace pbf {
constexpr std::size_t length_bytes = 4;
constexpr std::uint64_t most_head_bytes = 64ULL * 1024;
constexpr std::uint64_t most_data_bytes = 32ULL * 1024 * 1024;
constexpr std::size_t usual_head_bytes = 32;  // read together with the length
constexpr std::uint64_t type_field = 1, data_size_field = 3;
constexpr std::string_view header_type = "OSMHeader", data_type = "OSMData";
constexpr unsigned varint = 0, eight_bytes = 1, counted_bytes = 2, four_bytes = 5;  // wire types
}  // namespace pbf

struct BlockHead {
  std::string_view type;
  std::optional<std::uint64_t> data_size;
};

// One field of the message; false when it is damaged.
bool take_field(std::string_view& bytes, BlockHead& head) {
  const std::optional<std::uint64_t> key = take_varint(bytes);
  if (!key) return false;
  const std::uint64_t field = *key >> 3U;
  switch (*key & 7U) {
    case pbf::varint: {
      const std::optional<std::uint64_t> number = take_varint(bytes);
      if (number && field == pbf::data_size_field) head.data_size = number;
      return number.has_value();
    }
    case pbf::counted_bytes: {
      const std::optional<std::uint64_t> count = take_varint(bytes);
      const std::optional<std::string_view> value = count ? take_bytes(bytes, *count) : std::nullopt;
      if (value && field == pbf::type_field) head.type = *value;
      return value.has_value();
    }
    case pbf::eight_bytes:
      return take_bytes(bytes, 8).has_value();
    case pbf::four_bytes:
      return take_bytes(bytes, 4).has_value();
    default:
      return false;
  }
}

std::optional<BlockHead> parse_block_head(std::string_view bytes) {
  BlockHead head;
  while (!bytes.empty()) {
    if (!take_field(bytes, head)) return std::nullopt;
  }
  if (head.type.empty() || !head.data_size || *head.data_size > pbf::most_data_bytes) return std::nullopt;
  return head;
}

std::uint64_t big_endian(std::string_view bytes) {
  std::uint64_t number = 0;
  for (const char byte : bytes.substr(0, pbf::length_bytes))
    number = number << 8U | static_cast<unsigned char>(byte);
  return number;
}

enum class BlockFault : std::uint8_t { none, damaged, cut_off };

struct Block {
  BlockFault fault = BlockFault::none;
  std::string type;
  std::uint64_t end = 0;
};

Block read_block(ByteSource& source, std::uint64_t offset) {
  std::string bytes = source.read(offset, pbf::length_bytes + pbf::usual_head_bytes);
  if (bytes.size() < pbf::length_bytes) return {BlockFault::cut_off, "", 0};
  const std::uint64_t length = big_endian(bytes);
  if (length == 0 || length > pbf::most_head_bytes) return {BlockFault::damaged, "", 0};
  const std::uint64_t data_start = offset + pbf::length_bytes + length;
  if (data_start > source.size()) return {BlockFault::cut_off, "", 0};
  if (length > pbf::usual_head_bytes)
    bytes = source.read(offset, static_cast<std::size_t>(pbf::length_bytes + length));
  const std::string_view head_bytes = std::string_view(bytes).substr(pbf::length_bytes);
  const std::optional<BlockHead> head =
      parse_block_head(head_bytes.substr(0, static_cast<std::size_t>(length)));
  if (!head) return {BlockFault::damaged, "", 0};
  const std::uint64_t end = data_start + *head->data_size;
  return {end > source.size() ? BlockFault::cut_off : BlockFault::none, std::string(head->type), end};
}

// What stands near the start of a file; enough for any prolog, header section or comment.
constexpr std::size_t head_size = 64ULL * 1024;
constexpr std::size_t tail_size = 4096;

std::string tail_of(ByteSource& source) {
  const std::uint64_t size = source.size();
  return source.read(size > tail_size ? size - tail_size : 0, tail_size);
}

// Moves `text` behind a prolog, comment or declaration at its front; false when there is none.
bool skip_xml_prolog(std::string_view& text) {
  constexpr std::array<std::array<std::string_view, 2>, 3> marks = {
      {{"<?", "?>"}, {"<!--", "-->"}, {"<!", ">"}}};
  text = trim(text);
  for (const auto& [open, close] : marks) {
    if (!text.starts_with(open)) continue;
    const std::size_t end = text.find(close, open.size());
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + close.size());
    return true;
  }
  return false;
}

// Name of the first element; "" when the text does not begin with one.
std::string_view xml_root(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  while (skip_xml_prolog(text)) {
  }
  if (!text.starts_with('<')) return "";
  text.remove_prefix(1);
  return text.substr(0, text.find_first_of(" \t\r\n/>"));
}

// True when the text ends with the closing tag, blanks inside and behind it allowed.
bool ends_with_closing_tag(std::string_view text, std::string_view root) {
  text = trim(text);
  if (!text.ends_with('>')) return false;
  text.remove_suffix(1);
  const std::size_t start = text.rfind("</");
  return start != std::string_view::npos && trim(text.substr(start + 2)) == root;
}

bool is_empty_element(std::string_view text, std::string_view root) {
  text = trim(text);
  const std::size_t start = text.rfind('<');
  return text.ends_with("/>") && start != std::string_view::npos && text.substr(start + 1).starts_with(root);
}

bool holds_osm_object(std::string_view text) {
  return contains(text, "<node") || contains(text, "<way") || contains(text, "<relation");
}

bool holds_mp_object(std::string_view text) {
  const std::string lower = lower_ascii(text);
  constexpr std::array<std::string_view, 7> sections = {"[poi]",   "[polyline]", "[polygon]", "[rgn10]",
                                                        "[rgn20]", "[rgn40]",    "[rgn80]"};
  for (const std::string_view section : sections)
    if (contains(lower, section)) return true;
  return false;
}

namespace o5m {
constexpr std::string_view start_mark = "\xFF\xE0\x04o5m2", change_start_mark = "\xFF\xE0\x04o5c2";
constexpr char end_mark = '\xFE';
constexpr unsigned first_single_byte = 0xF0, first_object = 0x10, last_object = 0x12;
constexpr std::size_t data_set_head_bytes = 11;  // type and a length of at most ten bytes
constexpr int most_data_sets_before_objects = 1000;
}  // namespace o5m

enum class O5mFind : std::uint8_t { object, none, damaged };

// Goes over the data sets behind the start mark (time, bounding box, resets) up to the first object.
O5mFind find_o5m_object(ByteSource& source) {
  std::uint64_t offset = o5m::start_mark.size();
  for (int count = 0; count < o5m::most_data_sets_before_objects; ++count) {
    const std::string bytes = source.read(offset, o5m::data_set_head_bytes);
    if (bytes.empty()) return O5mFind::damaged;
    const auto type = static_cast<unsigned char>(bytes[0]);
    if (bytes[0] == o5m::end_mark) return O5mFind::none;
    if (type >= o5m::first_single_byte) {
      ++offset;
      continue;
    }
    std::string_view rest = std::string_view(bytes).substr(1);
    const std::optional<std::uint64_t> length = take_varint(rest);
    if (!length || *length > source.size() - offset) return O5mFind::damaged;
    if (type >= o5m::first_object && type <= o5m::last_object) return O5mFind::object;
    offset += bytes.size() - rest.size() + *length;
  }
  return O5mFind::object;
}

}  // namespace

PbfFrame read_pbf_frame(ByteSource& source) {
  PbfFrame frame;
  if (source.size() == 0) return {"is empty.", false};
  for (std::uint64_t offset = 0; offset < source.size();) {
    const Block block = read_block(source, offset);
    if (offset == 0 && (block.fault == BlockFault::damaged ||
                        (block.fault == BlockFault::none && block.type != pbf::header_type)))
      return {foreign("OpenStreetMap PBF file"), false};
    const std::string place = "the block at byte " + std::to_string(offset);
    if (block.fault == BlockFault::damaged)
      return {"is damaged: " + place + " cannot be read." + get_again, false};
    if (block.fault == BlockFault::cut_off) return {truncated("it ends inside " + place), false};
    frame.holds_data = frame.holds_data || block.type == pbf::data_type;
    offset = block.end;
  }
  return frame;
}

std::string check_pbf(ByteSource& source) {
  const PbfFrame frame = read_pbf_frame(source);
  return frame.problem.empty() && !frame.holds_data ? no_data : frame.problem;
}

std::string check_o5m(ByteSource& source) {
  const std::string head = source.read(0, o5m::start_mark.size());
  if (head != o5m::start_mark && head != o5m::change_start_mark) return foreign("O5M file");
  if (source.read(source.size() - 1, 1) != std::string(1, o5m::end_mark))
    return truncated("the mark at its end is missing");
  switch (find_o5m_object(source)) {
    case O5mFind::none:
      return no_data;
    case O5mFind::damaged:
      return std::string("is damaged: its first data cannot be read.") + get_again;
    case O5mFind::object:
      break;
  }
  return "";
}

std::string check_osm_xml(ByteSource& source) {
  const std::string head = source.read(0, head_size);
  const std::string_view root = xml_root(head);
  if (root != "osm" && root != "osmChange") {
    const bool shown = !root.empty() && root.size() < 40 && is_valid_utf8(root);
    return foreign("OpenStreetMap XML file" +
                   (shown ? " (it begins with <" + std::string(root) + ">)" : std::string()));
  }
  const std::string tail = tail_of(source);
  if (is_empty_element(tail, root)) return no_data;
  if (!ends_with_closing_tag(tail, root))
    return truncated("</" + std::string(root) + "> at its end is missing");
  return source.size() <= head_size && !holds_osm_object(head) ? no_data : "";
}

std::string check_gzip(ByteSource& source) {
  constexpr std::uint64_t smallest = 20;  // header, trailer and an empty content
  if (!source.read(0, 3).starts_with("\x1F\x8B\x08")) return foreign("file packed with gzip");
  return source.size() <= smallest ? truncated("it is too short") : "";
}

std::string check_mp(ByteSource& source) {
  constexpr std::size_t piece = 1024ULL * 1024;
  constexpr std::size_t overlap = 16;  // a section name may lie across two pieces
  if (!contains_ignoring_case(source.read(0, head_size), "[IMG ID]")) return foreign("Polish (MP) map file");
  for (std::uint64_t offset = 0; offset < source.size(); offset += piece - overlap) {
    if (holds_mp_object(source.read(offset, piece))) return "";
  }
  return no_data;
}

}  // namespace ferrowen
