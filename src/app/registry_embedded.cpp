// The program's own store: a text of version 5.00 that the registry editor itself could import.
#include "app/registry.hpp"
#include "base/files.hpp"
#include "base/registry_tree.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

class EmbeddedRegistry : public Registry {
 public:
  explicit EmbeddedRegistry(std::string file) : m_file(std::move(file)) {}

  Key key(const std::string& path) override {
    load();
    return {m_tree.has(path), m_tree.subkeys(path), m_tree.values(path), {}};
  }

  Status import_file(const std::string& path, const std::function<void()>& /*tick*/) override {
    const Result<std::string> bytes = read_file(path);
    if (!bytes.ok()) return {bytes.error};
    return change(parse_registry_file(bytes.value).changes);
  }

  Status remove_key(const std::string& path, const std::function<void()>& /*tick*/) override {
    return change({{path, true, {}, {}}});
  }

  void refresh() override { m_loaded = false; }
  [[nodiscard]] std::string registered_path(const std::string& path) const override {
    return platform::separator == '\\' ? path : path_on_z(path);
  }
  [[nodiscard]] std::string system_path(const std::string& registered) const override {
    return platform::separator == '\\' ? registered : path_from_z(registered);
  }
  [[nodiscard]] bool is_64bit() override { return platform::is_64bit_system(); }
  [[nodiscard]] std::string user_identifier() override { return ""; }
  [[nodiscard]] std::vector<std::string> package_folders() const override { return {}; }
  [[nodiscard]] std::string place() const override { return m_file; }
  [[nodiscard]] std::string problem() override {
    load();
    return m_problem;
  }

 private:
  void load() {
    if (m_loaded) return;
    m_loaded = true;
    m_tree = {};
    m_problem.clear();
    if (!file_exists(m_file)) return;
    const Result<std::string> bytes = read_file(m_file);
    const RegistryText text = parse_registry_file(bytes.value);
    m_tree.apply(text.changes);
    if (!bytes.ok())
      m_problem = bytes.error;
    else if (!text.problems.empty())
      m_problem = m_file + ": " + text.problems.front();
  }

  // Always on top of what lies on the disk now. A store that cannot be read whole is never written over.
  Status change(const std::vector<RegistryChange>& changes) {
    refresh();
    load();
    if (!m_problem.empty()) return {m_problem};
    m_tree.apply(changes);
    Status saved = safe_write(m_file, encode_registry_text(registry_text_of(m_tree.content())));
    if (!saved.ok()) refresh();
    return saved;
  }

  std::string m_file;
  RegistryTree m_tree;
  bool m_loaded = false;
  std::string m_problem;
};

}  // namespace

std::unique_ptr<Registry> embedded_registry(const std::string& file) {
  return std::make_unique<EmbeddedRegistry>(file);
}

}  // namespace ferrowen
