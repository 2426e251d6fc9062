// The registry of a Wine prefix. Read from the prefix's own files; while a server of Wine runs, which keeps
// changes to itself for up to half a minute, from what its registry editor exports. Changed through that
// editor.
#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>

#include "app/registry.hpp"
#include "base/files.hpp"
#include "base/registry_tree.hpp"
#include "base/text.hpp"
#include "platform/other_programs.hpp"
#include "platform/paths.hpp"
#include "platform/process.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view machine = "HKEY_LOCAL_MACHINE";
constexpr std::string_view user = "HKEY_CURRENT_USER";
constexpr std::array<std::string_view, 2> garmin_keys = {"software\\garmin", "software\\wow6432node\\garmin"};
constexpr std::array<std::string_view, 3> exported = {R"(HKEY_LOCAL_MACHINE\Software\Garmin)",
                                                      R"(HKEY_LOCAL_MACHINE\Software\Wow6432Node\Garmin)",
                                                      R"(HKEY_CURRENT_USER\Software\Garmin)"};
constexpr std::string_view user_root = R"(REGISTRY\User\)";
constexpr int tick_milliseconds = 50;
constexpr auto longest_run = std::chrono::seconds(120);

bool is_garmin_key(std::string_view lower_case_key) {
  return std::any_of(garmin_keys.begin(), garmin_keys.end(),
                     [&](std::string_view key) { return lower_case_key.starts_with(key); });
}

std::string real_path(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real =
      std::filesystem::weakly_canonical(platform::file_system_path(path), error);
  return error ? path : platform::path_text(real);
}

class WineRegistry : public Registry {
 public:
  WineRegistry(const std::string& prefix, std::string work_folder)
      : m_prefix(platform::absolute(prefix)), m_work_folder(std::move(work_folder)) {}

  Key key(const std::string& path) override {
    load();
    const std::string known = on_current_user(path);
    return {m_tree.has(known), m_tree.subkeys(known), m_tree.values(known), {}};
  }

  Status import_file(const std::string& path, const std::function<void()>& tick) override {
    if (const std::string missing = missing_prefix(); !missing.empty()) return {missing};
    const Result<std::string> bytes = read_file(path);
    if (!bytes.ok()) return {bytes.error};
    m_loaded = false;
    return regedit({"/s", platform::absolute(path)}, tick);
  }

  Status remove_key(const std::string& path, const std::function<void()>& tick) override {
    return import_removal(*this, path, m_work_folder, tick);
  }

  void refresh() override {
    m_loaded = false;
    m_drive_roots.clear();
  }
  [[nodiscard]] std::string registered_path(const std::string& path) const override;
  [[nodiscard]] std::string system_path(const std::string& registered) const override;
  [[nodiscard]] bool is_64bit() override {
    load();
    return m_is_64bit;
  }
  [[nodiscard]] std::string user_identifier() override {
    load();
    return m_user;
  }
  [[nodiscard]] std::vector<std::string> package_folders() const override;
  [[nodiscard]] std::string wine_prefix() const override { return m_prefix; }
  [[nodiscard]] std::string place() const override { return m_prefix; }
  [[nodiscard]] std::string problem() override {
    load();
    return m_problem;
  }

 private:
  // Any call of Wine would make a prefix that is not there: it is only ever used when it exists.
  [[nodiscard]] std::string missing_prefix() const {
    if (file_has_content(platform::join(m_prefix, "system.reg"))) return "";
    return m_prefix + ": there is no Wine prefix here (system.reg is missing)";
  }

  void load();
  void load_files();
  Status load_from_server();
  Status regedit(const std::vector<std::string>& words, const std::function<void()>& tick) const;
  // The user's own keys under the name that they are read by.
  [[nodiscard]] std::string on_current_user(const std::string& path) const {
    const std::string named = "HKEY_USERS\\" + m_user;
    if (m_user.empty() || !path.starts_with(named + "\\")) return path;
    return std::string(user) + path.substr(named.size());
  }
  [[nodiscard]] std::string drive_folder(char letter) const {
    return platform::join(m_prefix, std::string("dosdevices/") + letter + ":");
  }

  [[nodiscard]] std::optional<std::string> root_of_drive(char letter) const;

  std::string m_prefix, m_work_folder;
  mutable std::map<char, std::optional<std::string>> m_drive_roots;
  RegistryTree m_tree;
  bool m_loaded = false, m_is_64bit = false;
  std::string m_user, m_problem;
};

void WineRegistry::load() {
  if (m_loaded) return;
  m_loaded = true;
  m_problem = missing_prefix();
  m_tree = {};
  if (!m_problem.empty()) return;
  // Asked first: a server that ends while the files are being read has written them too late for this.
  const bool server_runs = platform::wine_server_runs(m_prefix);
  load_files();
  if (!server_runs) return;
  // What the files say may be half a minute old: nothing is to be registered after that.
  if (const Status loaded = load_from_server(); !loaded.ok()) m_problem = loaded.error;
}

void WineRegistry::load_files() {
  const auto read = [&](const char* name, std::string_view root) {
    const std::string path = platform::join(m_prefix, name);
    const Result<std::string> bytes = read_file(path);
    WineRegistryText text = parse_wine_registry(bytes.value, std::string(root), is_garmin_key);
    m_tree.apply(text.changes);
    if (!bytes.ok())
      m_problem = bytes.error;
    else if (!text.problems.empty())
      m_problem = path + ": " + text.problems.front();
    return text;
  };
  m_is_64bit = read("system.reg", machine).is_64bit;
  const std::string root = read("user.reg", user).root;
  m_user = root.starts_with(user_root) ? root.substr(user_root.size()) : "";
}

Status WineRegistry::load_from_server() {
  RegistryTree tree;
  const std::string file = registry_work_file(m_work_folder);
  for (const std::string_view key : exported) {
    // An export that cannot be written must not look like a registry without maps.
    if (Status writable = safe_write(file, ""); !writable.ok()) return writable;
    if (Status removed = remove_file(file); !removed.ok()) return removed;
    Status told = regedit({"/e", file, std::string(key)}, {});
    const std::string text = read_whole_file(file);  // no file: no such key
    if (Status cleared = remove_file(file); !cleared.ok()) return cleared;
    if (!told.ok()) return told;
    tree.apply(parse_registry_file(text).changes);
  }
  m_tree = std::move(tree);
  return {};
}

Status WineRegistry::regedit(const std::vector<std::string>& words, const std::function<void()>& tick) const {
  platform::ProcessRequest request;
  request.program = platform::find_program("wine");
  if (request.program.empty()) return {"wine is not installed"};
  request.arguments = {"regedit"};
  request.arguments.insert(request.arguments.end(), words.begin(), words.end());
  request.folder = m_prefix;
  request.environment = {{"WINEPREFIX", m_prefix}, {"WINEDEBUG", "-all"}};
  platform::ChildProcess child;
  if (child.start(request) != platform::StartResult::started) return {"wine: " + child.error()};
  // What it prints is not for people. The server that it leaves behind may keep the pipe open: the end is
  // that of the process.
  std::array<char, 512> ignored = {};
  const auto start = std::chrono::steady_clock::now();
  while (!child.poll_exit()) {
    if (tick) tick();
    if (std::chrono::steady_clock::now() - start > longest_run) {
      child.end_group();
      return {"wine regedit does not end"};
    }
    if (child.wait_readable(tick_milliseconds) && child.read(ignored.data(), ignored.size()) == 0)
      child.wait();
  }
  // Its exit status says nothing about the import; beyond that it says that Wine itself did not run.
  const int status = child.poll_exit().value_or(0);
  return status == 0 ? Status{} : Status{"wine regedit ended with status " + std::to_string(status)};
}

std::string WineRegistry::registered_path(const std::string& path) const {
  if (real_path(drive_folder('z')) == "/") return path_on_z(path);
  const std::string real = real_path(path);
  for (char letter = 'c'; letter <= 'z'; ++letter) {
    if (!folder_exists(drive_folder(letter))) continue;
    const std::string root = real_path(drive_folder(letter));
    if (real != root && !real.starts_with(root + "/")) continue;
    const std::string below = path_on_z(real.substr(root.size()));
    if (!below.empty()) return std::string(1, static_cast<char>(letter - 'a' + 'A')) + below.substr(1);
  }
  return "";
}

// Looked at once: many maps lie on the same drive.
std::optional<std::string> WineRegistry::root_of_drive(char letter) const {
  const auto known = m_drive_roots.find(letter);
  if (known != m_drive_roots.end()) return known->second;
  std::error_code error;
  const std::filesystem::path link = platform::file_system_path(drive_folder(letter));
  std::string root = platform::path_text(std::filesystem::canonical(link, error));
  const std::optional<std::string> found = error ? std::nullopt : std::optional(std::move(root));
  return m_drive_roots.emplace(letter, found).first->second;
}

std::string WineRegistry::system_path(const std::string& registered) const {
  if (registered.starts_with('/')) return registered;
  const std::string drive = lower_ascii(registered.substr(0, 1));
  if (registered.size() < 3 || registered[1] != ':' || drive < "a" || drive > "z") return "";
  std::string rest = replace_all(registered.substr(2), "\\", "/");
  if (!rest.starts_with('/')) return "";
  const std::optional<std::string> drive_root = root_of_drive(drive[0]);
  if (!drive_root) return "";
  const std::string root = *drive_root == "/" ? "" : *drive_root;
  if (file_exists(root + rest)) return root + rest;
  const std::string found = find_ignoring_case(root.empty() ? "/" : root, rest.substr(1));
  return found.empty() ? root + rest : found;
}

std::vector<std::string> WineRegistry::package_folders() const {
  std::vector<std::string> folders;
  const auto add = [&](const std::string& below) {
    const std::string found = find_ignoring_case(platform::join(m_prefix, "drive_c"), below);
    if (!found.empty()) folders.push_back(found);
  };
  add("programdata/garmin/maps");
  for (const std::string& name : list_folders(platform::join(m_prefix, "drive_c/users")))
    add("users/" + name + "/appdata/roaming/garmin/maps");
  return folders;
}

}  // namespace

std::unique_ptr<Registry> wine_registry(const std::string& prefix, const std::string& work_folder) {
  return std::make_unique<WineRegistry>(prefix, work_folder);
}

}  // namespace ferrowen
