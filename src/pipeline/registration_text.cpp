#include "pipeline/registration_text.hpp"

#include <array>

#include "base/registry_lines.hpp"
#include "base/registry_text.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t fid_offset = 5;  // the sixth byte
constexpr std::size_t shortest_fid_text = 4;
constexpr long lowest_detail = 1, highest_detail = 14;

std::string two_digits(unsigned char byte) {
  constexpr std::string_view digits = "0123456789abcdef";
  return {digits[byte >> 4], digits[byte & 0xF]};
}

std::string key_line(std::string_view key) { return "[" + std::string(key) + "]\r\n"; }

std::string text_line(std::string_view name, std::string_view text) {
  return quoted_registry_text(name) + "=" + quoted_registry_text(text) + "\r\n";
}

std::string hex_line(std::string_view name, std::string_view bytes) {
  return std::string(name) + "=hex:" + std::string(bytes) + "\r\n";
}

}  // namespace

std::string garmin_machine_key(bool wow64) {
  return std::string(R"(HKEY_LOCAL_MACHINE\SOFTWARE\)") + (wow64 ? R"(Wow6432Node\)" : "") + R"(Garmin\)";
}

std::string family_key(std::string_view family, bool wow64) {
  return garmin_machine_key(wow64) + R"(MapSource\Families\)" + std::string(family);
}

std::string fid_bytes_of_tdb(std::string_view tdb) {
  std::string text;
  if (tdb.starts_with('P') && tdb.size() > fid_offset + 1)
    text = two_digits(static_cast<unsigned char>(tdb[fid_offset])) + "," +
           two_digits(static_cast<unsigned char>(tdb[fid_offset + 1]));
  if (text.size() < shortest_fid_text) text.insert(0, shortest_fid_text - text.size(), '0');
  return text;
}

std::optional<int> fid_of_bytes(std::string_view fid_bytes) {
  const std::optional<std::string> bytes = registry_lines::bytes_of_list(fid_bytes);
  if (!bytes || bytes->size() != 2) return std::nullopt;
  return static_cast<unsigned char>((*bytes)[0]) | (static_cast<unsigned char>((*bytes)[1]) << 8);
}

std::string fid_bytes_text(int fid) {
  return two_digits(static_cast<unsigned char>(fid & 0xFF)) + "," +
         two_digits(static_cast<unsigned char>((fid >> 8) & 0xFF));
}

std::string registration_text(const RegistrationFacts& facts) {
  const std::string key = family_key(facts.family, facts.wow64);
  std::string text = std::string(regedit4_header) + "\r\n\r\n" + key_line(key);
  text += hex_line("\"ID\"", facts.fid_bytes);
  if (!facts.index.empty()) text += text_line("IDX", facts.index) + text_line("MDR", facts.index_map);
  if (!facts.typ.empty()) text += text_line("TYP", facts.typ);
  text += key_line(key + R"(\1)");
  text +=
      text_line("LOC", facts.folder) + text_line("BMAP", facts.overview_map) + text_line("TDB", facts.tdb);
  return text;
}

std::string last_used_text(const LastUsedFacts& facts) {
  const std::string detail(trim(facts.detail));
  const std::string product = hex_line("\"MRUProduct\"", "01,00," + facts.fid_bytes);
  // The bytes stay in the order of the file: the programs expect them so.
  const std::string number = "\"MRUProduct\"=dword:" + replace_all(facts.fid_bytes, ",", "") + "0001\r\n";
  const std::string detail_line = detail.empty() ? "" : hex_line("\"Detail\"", detail);

  std::string text = std::string(regedit4_header) + "\r\n\r\n";
  text += key_line(R"(HKEY_CURRENT_USER\SOFTWARE\Garmin\Basecamp\Settings)") + product + detail_line;
  const long level = lenient_whole_number(detail);
  if (level >= lowest_detail && level <= highest_detail)
    text += key_line(R"(HKEY_CURRENT_USER\Software\Garmin\BaseCamp\Settings\Profiles\CurrentProfile)") +
            hex_line("@", two_digits(static_cast<unsigned char>(level)) + ",00,00,00");
  text += key_line(R"(HKEY_CURRENT_USER\Software\Garmin\MapSource\Settings)") + number + detail_line;
  text += key_line(R"(HKEY_CURRENT_USER\Software\Garmin\HomePort\Settings)") + number;
  if (!facts.user_identifier.empty())
    text += key_line(R"(HKEY_USERS\)" + facts.user_identifier + R"(\Software\Garmin\BaseCamp\Settings)") +
            product;
  return text;
}

}  // namespace ferrowen
