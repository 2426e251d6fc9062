#include "app/run_settings.hpp"

#include <type_traits>
#include <variant>

#include "app/settings_file.hpp"

namespace ferrowen {

namespace {

void copy_field(const Field& field, const Settings& from, Settings& to) {
  std::visit(
      [&](auto member) {
        using Value = std::remove_cvref_t<decltype(to.*member)>;
        if constexpr (std::is_same_v<Value, std::array<std::string, hgt_folder_slots>> ||
                      std::is_same_v<Value, std::array<std::string, clip_folder_slots>>) {
          const auto slot = static_cast<std::size_t>(field.slot);
          (to.*member).at(slot) = (from.*member).at(slot);
        } else {
          to.*member = from.*member;
        }
      },
      field.member);
}

}  // namespace

Status RunSettings::set(std::string_view name, std::string_view text) {
  const Field* field = find_field(name);
  if (field == nullptr) return {"There is no setting '" + std::string(name) + "'."};
  Status assigned = assign_checked(m_workspace.settings, *field, text);
  if (assigned.ok()) m_overridden.emplace(field->name);
  return assigned;
}

void RunSettings::put_back() {
  for (const std::string& name : m_overridden)
    copy_field(*find_field(name), m_stored, m_workspace.settings);
  m_overridden.clear();
}

Status RunSettings::save(bool run_was_good) {
  put_back();
  return run_was_good ? save_on_exit(m_workspace) : savedata(m_workspace);
}

}  // namespace ferrowen
