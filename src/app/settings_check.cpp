#include "app/settings_check.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

using Kind = SettingsRemark::Kind;

constexpr std::string_view max_jobs_text = "max-jobs must be > 0 ";

std::string missing_folder_text(const std::string& folder) {
  return folder + " does not exist.\r\n\r\nPlease create this folder \r\n\r\nTry again?";
}

std::string no_styles_text(const std::string& folder) {
  return folder + " not a styles folder.\r\nDouble Click on styles folder.\r\nDouble Click on Styles Folder";
}

class SettingsCheck {
 public:
  SettingsCheck(const Settings& record, std::string_view home, const FolderFacts& facts)
      : m_record(record), m_home(home), m_facts(facts), m_checked{record, {}} {}

  void take(const Field& field, const std::string& text) {
    if (must_exist(field))
      assign_stored(m_checked.settings, field, text, m_home);  // a blank one takes its default
    else if (is_unset(field, trim(text)))
      assign_stored(m_checked.settings, field, "", m_home);
    else if (const Status taken = assign_checked(m_checked.settings, field, text); !taken.ok())
      refuse(field.name, taken.error);
  }

  // A number is only needed when it is passed to mkgmap; without the switch a fresh record has none.
  void check_jobs() {
    if (m_checked.settings.use_max_jobs && m_checked.settings.max_jobs <= 0 && !refused("max-jobs"))
      refuse("max-jobs", std::string(max_jobs_text));
  }

  void check_folders() {
    for (const Field& field : settings_fields()) {
      if (!must_exist(field)) continue;
      const std::string folder = stored_text(m_checked.settings, field);
      if (!folder.empty() && !m_facts.exists(folder))
        m_checked.remarks.push_back({Kind::question, field.name, missing_folder_text(folder)});
      else if (field.name == "styles-folder")
        check_styles(field, folder);
    }
  }

  CheckedSettings result() { return std::move(m_checked); }

 private:
  // No number of jobs at all, or a colour that is none.
  static bool is_unset(const Field& field, std::string_view text) {
    if (field.name == "max-jobs") return text.empty();
    return field.name == "colour" && !is_colour_text(text);
  }

  void check_styles(const Field& field, const std::string& folder) {
    const std::string initial = stored_text(default_settings(m_home), field);
    if (folder == m_record.styles_folder || folder == initial || !m_facts.subfolders(folder).empty()) return;
    refuse(field.name, no_styles_text(folder));
  }

  void refuse(std::string_view field, std::string text) {
    m_checked.remarks.push_back({Kind::refused, field, std::move(text)});
  }

  [[nodiscard]] bool refused(std::string_view field) const {
    return std::any_of(m_checked.remarks.begin(), m_checked.remarks.end(),
                       [&](const SettingsRemark& remark) { return remark.field == field; });
  }

  const Settings& m_record;
  std::string m_home;
  const FolderFacts& m_facts;
  CheckedSettings m_checked;
};

}  // namespace

FolderFacts facts_of_disk() { return {folder_exists, list_folders}; }

CheckedSettings check_settings(const Settings& record, const EnteredValues& entered, std::string_view home,
                               const FolderFacts& facts) {
  SettingsCheck check(record, home, facts);
  for (const auto& [field, text] : entered)
    check.take(*field, text);
  check.check_jobs();
  check.check_folders();
  return check.result();
}

std::string jar_name_remark(const Field& field, std::string_view path) {
  const bool is_jar = field.name == "mkgmap" || field.name == "splitter";
  const std::string name = platform::name_of(trim(path));
  if (!is_jar || name.empty() || equal_ignoring_case(name, std::string(field.name) + ".jar")) return "";
  return "You have selected:\r\n" + name;
}

bool is_colour_text(std::string_view text) {
  Settings trial;
  return !text.empty() && assign_checked(trial, *find_field("colour"), text).ok();
}

}  // namespace ferrowen
