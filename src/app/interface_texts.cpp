#include "app/interface_texts.hpp"

#include <algorithm>
#include <map>

namespace ferrowen {

namespace {

using Positions = std::map<std::string_view, std::size_t>;

Positions positions_of(Section section) {
  Positions positions;
  for (const InterfaceItem& item : interface_items(section))
    positions.emplace(item.key, positions.size());
  return positions;
}

const Positions& positions(Section section) {
  static const std::array<Positions, section_count> all = {
      positions_of(Section::commands), positions_of(Section::settings), positions_of(Section::menus),
      positions_of(Section::tooltips), positions_of(Section::labels)};
  return all.at(static_cast<std::size_t>(section));
}

}  // namespace

InterfaceTexts::InterfaceTexts() { reset(); }

std::string InterfaceTexts::operator()(Section section, std::string_view key) const {
  const Positions& known = positions(section);
  const auto found = known.find(key);
  // The programmer sees at once which key is missing; a person sees a word that still says something.
  if (found == known.end()) return std::string(key);
  return m_texts.at(static_cast<std::size_t>(section)).at(found->second);
}

bool InterfaceTexts::set(Section section, std::size_t position, std::string_view text) {
  std::vector<std::string>& texts = m_texts.at(static_cast<std::size_t>(section));
  if (position >= texts.size()) return false;
  texts[position] = text;
  return true;
}

void InterfaceTexts::reset() {
  for (std::size_t section = 0; section < section_count; ++section) {
    m_texts.at(section).clear();
    for (const InterfaceItem& item : interface_items(static_cast<Section>(section)))
      m_texts.at(section).emplace_back(item.english);
  }
}

}  // namespace ferrowen
