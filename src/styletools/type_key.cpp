#include "styletools/type_key.hpp"

#include <charconv>

#include "base/text.hpp"

namespace ferrowen {

namespace {
constexpr std::size_t key_length = 5;
constexpr int hexadecimal_base = 16;
}  // namespace

std::string_view rule_file_name(RuleKind kind) {
  constexpr std::array<std::string_view, 3> names{"polygons", "lines", "points"};
  return names.at(static_cast<std::size_t>(kind));
}

std::string_view kind_title(RuleKind kind) {
  constexpr std::array<std::string_view, 3> titles{"Polygons", "Lines", "Points"};
  return titles.at(static_cast<std::size_t>(kind));
}

std::string f_mat(std::string_view hexadecimal) {
  return hexadecimal.size() == 1 ? "0" + std::string(hexadecimal) : std::string(hexadecimal);
}

std::string hexadecimal_text(std::uint32_t number) {
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal_base);
  return upper_ascii(std::string_view(digits.data(), static_cast<std::size_t>(end.ptr - digits.data())));
}

std::string type_key(unsigned type, unsigned subtype) {
  const std::string key = hexadecimal_text(type) + f_mat(hexadecimal_text(subtype));
  return key.size() < key_length ? std::string(key_length - key.size(), '0') + key : key;
}

}  // namespace ferrowen
