// The system's own registry. Reading is direct; changes that need an administrator's rights go through the
// registry editor, which asks for them.
#include "app/registry.hpp"
#include "base/text.hpp"
#include "platform/other_programs.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

struct Place {
  platform::RegistryRoot root = platform::RegistryRoot::local_machine;
  std::string key;
  bool known = false;
};

Place place_of(const std::string& path) {
  using platform::RegistryRoot;
  const std::size_t cut = path.find('\\');
  if (cut == std::string::npos) return {};
  const std::string root = path.substr(0, cut);
  const std::string key = path.substr(cut + 1);
  if (root == "HKEY_LOCAL_MACHINE") return {RegistryRoot::local_machine, key, true};
  if (root == "HKEY_CURRENT_USER") return {RegistryRoot::current_user, key, true};
  return {RegistryRoot::users, key, root == "HKEY_USERS"};
}

class SystemRegistry : public Registry {
 public:
  explicit SystemRegistry(std::string work_folder) : m_work_folder(std::move(work_folder)) {}

  Key key(const std::string& path) override {
    const Place place = place_of(path);
    if (!place.known) return {};
    platform::RegistryKeyContent content = platform::read_registry_key(place.root, place.key);
    return {content.exists, std::move(content.subkeys), std::move(content.values), content.fault};
  }

  Status import_file(const std::string& path, const std::function<void()>& tick) override {
    // The silent switch stands on both sides: editors of different systems look for it at different places.
    return {platform::run_elevated("regedit.exe", "/s \"" + path + "\" /s", platform::folder_of(path), tick)};
  }

  // What an ordinary user may not delete is left to the registry editor, which asks for the rights.
  Status remove_key(const std::string& path, const std::function<void()>& tick) override {
    const Place place = place_of(path);
    if (!place.known) return {path + ": not a key to delete"};
    const platform::RegistryDeletion deletion = platform::delete_registry_key(place.root, place.key);
    if (deletion.fault == platform::RegistryFault::none) return {};
    const Status imported = import_removal(*this, path, m_work_folder, tick);
    return imported.ok() ? imported : Status{path + ": " + deletion.reason + "\r\n" + imported.error};
  }

  void refresh() override {}
  [[nodiscard]] std::string registered_path(const std::string& path) const override { return path; }
  [[nodiscard]] std::string system_path(const std::string& registered) const override { return registered; }
  [[nodiscard]] bool is_64bit() override { return platform::is_64bit_system(); }
  [[nodiscard]] std::string user_identifier() override { return platform::user_security_identifier(); }
  [[nodiscard]] std::vector<std::string> package_folders() const override {
    return {R"(c:\programdata\garmin\maps)",
            platform::join(platform::roaming_data_folder(), R"(garmin\maps)")};
  }

 private:
  std::string m_work_folder;
};

}  // namespace

std::unique_ptr<Registry> system_registry(const std::string& work_folder) {
  return std::make_unique<SystemRegistry>(work_folder);
}

}  // namespace ferrowen
