#include "styletools/typ_reader.hpp"

#include <algorithm>
#include <unordered_map>

#include "base/files.hpp"
#include "styletools/typ_definitions.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t smallest_header = 0x5B;
constexpr std::string_view signature = "GARMIN TYP";
constexpr std::size_t signature_at = 0x02;
constexpr std::size_t code_page_at = 0x15;
constexpr std::size_t family_id_at = 0x2F;
constexpr std::size_t product_code_at = 0x31;
constexpr std::uint64_t largest_typ_file = 64ULL << 20;

// Where the parts of one kind are named in the header.
struct KindHeader {
  std::size_t definitions;  // start, then length
  std::size_t index;        // start (4), entry size (read as 1), at +6 length (4)
};
constexpr std::array<KindHeader, 3> kind_headers{{{0x27, 0x47}, {0x1F, 0x3D}, {0x17, 0x33}}};
constexpr std::size_t draw_order_at = 0x51;  // as an index

// An entry begins with the type word: the subtype in the low bits.
constexpr std::uint32_t subtypes_per_type = 32;
constexpr std::size_t word_size = 2;
constexpr std::size_t smallest_entry = 3;
constexpr std::uint32_t scheme_values = 16;
constexpr std::uint8_t bitmap_bit = 8;
constexpr std::uint16_t extended_types = 0x100;
constexpr std::size_t draw_order_mask_bytes = 4;

struct Table {
  std::size_t start = 0;
  std::size_t entry_size = 0;
  std::size_t count = 0;
};

struct IndexEntry {
  std::uint32_t word = 0;
  std::size_t start = 0;
};

unsigned offset_width(std::size_t entry_size) {
  if (entry_size < 4) return 1;
  return entry_size == 4 ? 2 : 3;
}

class Reader {
 public:
  explicit Reader(std::string_view bytes)
      : m_bytes(bytes),
        m_decoder(static_cast<int>(m_bytes.bit2(code_page_at))),
        m_budget(4 * bytes.size() + 4096) {}

  TypFile read() {
    m_typ.code_page = static_cast<int>(m_bytes.bit2(code_page_at));
    m_typ.family_id = static_cast<int>(m_bytes.bit2(family_id_at));
    m_typ.product_code = static_cast<int>(m_bytes.bit2(product_code_at));
    if (!m_decoder.is_known())
      note(code_page_at, "the code page " + std::to_string(m_typ.code_page) +
                             " is not known on this system: only ASCII labels can be read");
    get_draworder();
    for (const RuleKind kind : rule_kinds)
      read_kind(kind);
    return std::move(m_typ);
  }

 private:
  void note(std::size_t offset, std::string text) { m_typ.findings.push_back({offset, std::move(text)}); }

  // The whole entries that lie inside the file.
  Table table_at(std::size_t header, std::size_t least_entry, const std::string& what) {
    const std::size_t length = m_bytes.bit4(header + 6);
    Table table{m_bytes.bit4(header), m_bytes.dt(header + 4), 0};
    if (length == 0) return table;
    if (table.entry_size < least_entry) {
      note(header + 4, what + ": an entry size of " + std::to_string(table.entry_size) + " holds no entries");
      return table;
    }
    const std::size_t there = table.start < m_bytes.size() ? m_bytes.size() - table.start : 0;
    if (length > there) note(header, what + " goes beyond the end of the file");
    table.count = std::min(length, there) / table.entry_size;
    return table;
  }

  void get_draworder() {
    const Table table = table_at(draw_order_at, 1, "the draw-order table");
    if (table.count == 0) return;
    m_typ.draw_order.emplace_back();
    for (std::size_t entry = 0; entry < table.count; ++entry) {
      const std::size_t at = table.start + entry * table.entry_size;
      const auto type = static_cast<std::uint16_t>(m_bytes.dt(at));
      if (type == 0) {
        m_typ.draw_order.emplace_back();
        continue;
      }
      const auto mask_bytes = static_cast<unsigned>(std::min(table.entry_size - 1, draw_order_mask_bytes));
      add_to_level(type, m_bytes.number(at + 1, mask_bytes));
    }
    // A closing entry behind the last type opens no level.
    if (m_typ.draw_order.back().empty()) m_typ.draw_order.pop_back();
  }

  // No mask: the plain type; else one extended type for each bit.
  void add_to_level(std::uint16_t type, std::uint32_t mask) {
    const auto extended = static_cast<std::uint16_t>(extended_types + type);
    if (mask == 0) add_order_entry({type, 0});
    for (std::uint8_t subtype = 0; subtype < subtypes_per_type; ++subtype)
      if (mask >> subtype & 1) add_order_entry({extended, subtype});
  }

  void add_order_entry(TypOrderEntry entry) {
    m_typ.draw_order.back().push_back(entry);
    m_levels.try_emplace(entry.type * subtypes_per_type + entry.subtype, m_typ.draw_order.size());
  }

  void read_kind(RuleKind kind) {
    const KindHeader header = kind_headers.at(static_cast<std::size_t>(kind));
    const std::string name(rule_file_name(kind));
    const Table table = table_at(header.index, smallest_entry, "the index of the " + name);
    const std::size_t definitions = m_bytes.bit4(header.definitions);
    const std::size_t length = m_bytes.bit4(header.definitions + 4);
    m_end = length > 0 ? std::min(definitions + length, m_bytes.size()) : m_bytes.size();
    std::vector<IndexEntry> entries = index_entries(table, definitions, name);
    set_starts(entries);
    auto& all = m_typ.definitions.at(static_cast<std::size_t>(kind));
    all.reserve(entries.size());
    for (const IndexEntry& entry : entries)
      all.push_back(read_definition(kind, entry));
  }

  std::vector<IndexEntry> index_entries(const Table& table, std::size_t definitions,
                                        const std::string& name) {
    std::vector<IndexEntry> entries;
    for (std::size_t entry = 0; entry < table.count; ++entry) {
      const std::size_t at = table.start + entry * table.entry_size;
      const std::size_t start = definitions + m_bytes.number(at + word_size, offset_width(table.entry_size));
      if (start >= m_bytes.size())
        note(at, "the index of the " + name + " names a definition beyond the end of the file");
      else
        entries.push_back({m_bytes.bit2(at), start});
    }
    return entries;
  }

  void set_starts(const std::vector<IndexEntry>& entries) {
    m_starts.clear();
    for (const IndexEntry& entry : entries)
      m_starts.push_back(entry.start);
    std::sort(m_starts.begin(), m_starts.end());
  }

  std::size_t next_start(std::size_t start) const {
    const auto next = std::upper_bound(m_starts.begin(), m_starts.end(), start);
    return next == m_starts.end() ? m_end : *next;
  }

  TypDefinition named_definition(const IndexEntry& entry) const {
    TypDefinition definition;
    definition.type = static_cast<std::uint16_t>(entry.word / subtypes_per_type);
    definition.subtype = static_cast<std::uint8_t>(entry.word % subtypes_per_type);
    definition.key = type_key(definition.type, definition.subtype);
    definition.offset = entry.start;
    return definition;
  }

  TypDefinition read_definition(RuleKind kind, const IndexEntry& entry) {
    TypDefinition definition = named_definition(entry);
    if (m_budget == 0) {
      definition.damage = "too many definitions share the same bytes";
    } else if (kind == RuleKind::polygons) {
      read_polygon(definition);
      if (const auto level = m_levels.find(entry.word); level != m_levels.end())
        definition.draw_order = level->second;
    } else {
      DefinitionReader reader{TypCursor(m_bytes, entry.start, m_end), m_decoder, m_typ.findings, definition};
      kind == RuleKind::lines ? line_bmp(reader) : poi_bmp(reader);
      spend(reader.cursor.at() - entry.start);
    }
    if (!definition.damage.empty())
      note(entry.start,
           std::string(rule_file_name(kind)) + ", type " + definition.key + ": " + definition.damage);
    return definition;
  }

  // Definitions may overlap; what they would fill in memory stays in proportion to the file.
  void spend(std::size_t bytes) { m_budget -= std::min(m_budget, bytes + 1); }

  void read_polygon(TypDefinition& definition) {
    const std::uint32_t flags = m_bytes.dt(definition.offset);
    const auto scheme = static_cast<std::uint8_t>(flags % scheme_values);
    const std::size_t findings = m_typ.findings.size();
    const TypDefinition empty = definition;
    const std::size_t next = next_start(definition.offset);
    const bool fits = read_polygon_as(definition, flags, scheme) <= next && definition.damage.empty();
    if (fits || !(scheme & bitmap_bit)) return;
    // Some files claim a bitmap that is not there: without it the definition fits its place.
    TypDefinition plain = empty;
    std::vector<TypFinding> found(m_typ.findings.begin() + static_cast<std::ptrdiff_t>(findings),
                                  m_typ.findings.end());
    m_typ.findings.resize(findings);
    const bool plain_fits =
        read_polygon_as(plain, flags, scheme & ~bitmap_bit & 0xF) <= next && plain.damage.empty();
    if (!plain_fits) {
      m_typ.findings.resize(findings);
      m_typ.findings.insert(m_typ.findings.end(), found.begin(), found.end());
      return;
    }
    note(plain.offset, "polygons, type " + plain.key + ": claims a bitmap that is not there");
    definition = std::move(plain);
  }

  // Where the definition ends, read with this scheme; beyond all others when the file ends first.
  std::size_t read_polygon_as(TypDefinition& definition, std::uint32_t flags, std::uint8_t scheme) {
    DefinitionReader reader{TypCursor(m_bytes, definition.offset, m_end), m_decoder, m_typ.findings,
                            definition};
    polygon_bmp(reader, flags, scheme);
    spend(reader.cursor.at() - definition.offset);
    return reader.cursor.ran_out() ? m_bytes.size() + 1 : reader.cursor.at();
  }

  TypBytes m_bytes;
  TypLabelDecoder m_decoder;
  TypFile m_typ;
  std::unordered_map<std::uint32_t, std::size_t> m_levels;  // by type word
  std::vector<std::size_t> m_starts;                        // of the definitions of one kind, sorted
  std::size_t m_end = 0;                                    // of the definitions of one kind
  std::size_t m_budget;
};

}  // namespace

Result<TypFile> read_typ(std::string_view bytes) {
  if (bytes.size() < signature_at + signature.size() ||
      bytes.substr(signature_at, signature.size()) != signature)
    return failed<TypFile>("This is no compiled TYP file: it does not begin as one.");
  if (bytes.size() < smallest_header)
    return failed<TypFile>("This TYP file is cut off: its header alone has " +
                           std::to_string(smallest_header) + " bytes, and only " +
                           std::to_string(bytes.size()) + " are there.");
  return {Reader(bytes).read(), ""};
}

Result<TypFile> loadbinary(const std::string& path) {
  const Result<std::string> bytes = read_file(path, largest_typ_file);
  if (!bytes.ok()) return failed<TypFile>(bytes.error);
  Result<TypFile> typ = read_typ(bytes.value);
  if (!typ.ok()) typ.error = path + ": " + typ.error;
  return typ;
}

std::vector<std::string> finding_lines(const TypFile& typ) {
  constexpr std::size_t most_lines = 20;
  std::vector<std::string> lines;
  for (const TypFinding& finding : typ.findings) {
    if (lines.size() == most_lines) {
      lines.push_back(std::to_string(typ.findings.size() - most_lines) + " more findings");
      break;
    }
    lines.push_back("byte " + std::to_string(finding.offset) + ": " + finding.text);
  }
  return lines;
}

const TypDefinition* find_definition(const TypFile& typ, RuleKind kind, std::string_view key) {
  const auto& all = typ.of(kind);
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const TypDefinition& one) { return one.key == key; });
  return found == all.end() ? nullptr : &*found;
}

std::vector<std::uint8_t> subtypes(const TypFile& typ, RuleKind kind, unsigned type) {
  std::vector<std::uint8_t> found;
  for (const TypDefinition& definition : typ.of(kind))
    if (definition.type == type) found.push_back(definition.subtype);
  return found;
}

std::string label_text(const TypDefinition& definition) {
  constexpr std::uint8_t english = 4;
  for (const TypLabel& label : definition.labels)
    if (label.language == english) return label.text;
  return definition.labels.empty() ? "" : definition.labels.front().text;
}

}  // namespace ferrowen
