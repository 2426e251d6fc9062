// The registry that the Garmin programs read, behind one interface with three backs: the system's own
// (Windows), a Wine prefix, and a store of this program's own where there is neither.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/registry_text.hpp"
#include "base/status.hpp"

namespace ferrowen {

class Registry {
 public:
  Registry() = default;
  virtual ~Registry() = default;
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  struct Key {
    bool exists = false;
    std::vector<std::string> subkeys;
    std::vector<platform::RegistryValue> values;
    platform::RegistryFault fault = platform::RegistryFault::none;
  };
  // Keys by their full path, "HKEY_LOCAL_MACHINE\SOFTWARE\..."; nothing is redirected.
  [[nodiscard]] virtual Key key(const std::string& path) = 0;
  // Has a ".reg" file taken in, and waits for its end; `tick` is called meanwhile. What came of it is told by
  // reading back, never by this: the error is that it could not even be tried.
  virtual Status import_file(const std::string& path, const std::function<void()>& tick) = 0;
  // Deletes a key with its subkeys.
  virtual Status remove_key(const std::string& path, const std::function<void()>& tick) = 0;
  // Forgets what was read before.
  virtual void refresh() = 0;

  // A path of this system as the Garmin programs see it ("Z:\home\..."), and back; "" when there is none.
  [[nodiscard]] virtual std::string registered_path(const std::string& path) const = 0;
  [[nodiscard]] virtual std::string system_path(const std::string& registered) const = 0;
  // Of the programs that read it: their keys then stand below "Wow6432Node".
  [[nodiscard]] virtual bool is_64bit() = 0;
  [[nodiscard]] virtual std::string user_identifier() = 0;  // "S-1-5-21-..."; "" for none
  // Folders of installed ".gmap" packages.
  [[nodiscard]] virtual std::vector<std::string> package_folders() const = 0;
  // The prefix that Windows programs run in; "" when they need none (or there is none).
  [[nodiscard]] virtual std::string wine_prefix() const { return ""; }
  // Where it is kept, for a person to read; "" for the system's own.
  [[nodiscard]] virtual std::string place() const { return ""; }
  // Why it can be neither read nor changed as a whole; "" when all is well.
  [[nodiscard]] virtual std::string problem() { return ""; }
};

// The value of a key by its name, compared without case; nullptr when it has none.
const platform::RegistryValue* find_value(const Registry::Key& key, std::string_view name);
std::string text_value(const Registry::Key& key, std::string_view name);

// `work_folder` takes the files that are handed to the registry editor.
std::unique_ptr<Registry> system_registry(const std::string& work_folder);
// `work_folder` takes the files that are handed to and taken from Wine's registry editor.
std::unique_ptr<Registry> wine_registry(const std::string& prefix, const std::string& work_folder);
std::unique_ptr<Registry> embedded_registry(const std::string& file);

// The Wine prefix of the settings, else that of $WINEPREFIX when it is there, else ~/.wine when Garmin
// programs or maps are in its registry; "" for none, and on Windows.
std::string wine_prefix_in_use(const Settings& settings);
// Windows: the system's. Elsewhere that of the Wine prefix in use, else the program's own store.
std::unique_ptr<Registry> open_registry(const Workspace& workspace);

// The program's own store, when another registry is open and maps may still be registered in it: one that was
// used before there was a Wine prefix. Nothing for none.
std::unique_ptr<Registry> store_beside(const Workspace& workspace, const Registry& open);

// Has the key deleted by way of `import_file`, with a file of `work_folder` that is gone afterwards, and
// looks whether it is gone: the import itself does not tell.
Status import_removal(Registry& registry, const std::string& key, const std::string& work_folder,
                      const std::function<void()>& tick);
// A name that no other run of the program uses.
std::string registry_work_file(const std::string& work_folder);

// Linux paths as a Wine program sees them where "Z:" is the whole file system, and back.
std::string path_on_z(const std::string& path);
std::string path_from_z(const std::string& registered);
// The path as it is written on the disk, for one whose case may differ; "" when there is no such file.
std::string find_ignoring_case(const std::string& folder, std::string_view relative);

}  // namespace ferrowen
