// Captions, menu texts, tooltips and labels of the windows: one ordered list per section of a language file,
// English built in, each text replaceable.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

// In the order in which a language file is read.
enum class Section : std::uint8_t { commands, settings, menus, tooltips, labels };
inline constexpr std::size_t section_count = 5;

struct InterfaceItem {
  std::string_view key;  // what the program and the translator know it by
  std::string_view english;
};

// The items of a section in their fixed order; new ones are only ever appended.
const std::vector<InterfaceItem>& interface_items(Section section);

class InterfaceTexts {
 public:
  InterfaceTexts();
  // Current text of an item. A key that the section does not hold gives the key itself.
  [[nodiscard]] std::string operator()(Section section, std::string_view key) const;
  // False (and nothing changed) for a position that the section does not have; the first is 0.
  bool set(Section section, std::size_t position, std::string_view text);
  void reset();

 private:
  std::array<std::vector<std::string>, section_count> m_texts;
};

}  // namespace ferrowen
