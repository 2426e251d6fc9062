#include "pipeline/installed_maps.hpp"

#include <algorithm>
#include <array>
#include <set>

#include "base/files.hpp"
#include "base/fold_name.hpp"
#include "base/text.hpp"
#include "pipeline/registration_text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

namespace type = platform::registry_type;

constexpr int message_error_opening = 98, message_error_length = 99, message_error_value = 100,
              message_collecting = 178, message_parent = 123, message_opening_named = 124;
// Below the Garmin key of each view of the registry.
constexpr std::array<std::string_view, 4> family_places = {R"(MapSource\Families)", R"(MapSource\FamiliesNT)",
                                                           R"(MapSource\Product)", "Installed"};
constexpr std::string_view package_ending = ".gmap";

std::string fid_text(const Registry::Key& key) {
  const platform::RegistryValue* id = find_value(key, "ID");
  if (id == nullptr || id->type != type::binary || id->data.size() < 2) return "";
  return std::to_string(static_cast<unsigned char>(id->data[0]) |
                        (static_cast<unsigned char>(id->data[1]) << 8));
}

std::string location_text(const Registry::Key& product, const Registry::Key& family) {
  const std::string own = text_value(product, "LOC");
  return own.empty() ? text_value(family, "LOC") : own;
}

// Collects from one registry; a fault is told once, however many keys it hits.
class Collection {
 public:
  Collection(Registry& registry, const MessageTable& messages, Prompts& prompts)
      : m_registry(registry), m_messages(messages), m_prompts(prompts) {}

  std::vector<InstalledMap> collect() {
    if (const std::string problem = m_registry.problem(); !problem.empty())
      m_prompts.tell(problem, Icon::warning);
    for (const bool wow64 : {true, false}) {
      for (const std::string_view place : family_places)
        collect_families(garmin_machine_key(wow64) + std::string(place));
    }
    for (const std::string& folder : m_registry.package_folders())
      collect_packages(folder);
    std::vector<std::pair<std::string, std::size_t>> order;
    for (std::size_t i = 0; i < m_maps.size(); ++i)
      order.emplace_back(fold_name(m_maps[i].product), i);
    std::sort(order.begin(), order.end());
    std::vector<InstalledMap> sorted;
    sorted.reserve(m_maps.size());
    for (const auto& [name, index] : order)
      sorted.push_back(std::move(m_maps[index]));
    return sorted;
  }

 private:
  Registry::Key read(const std::string& path) {
    Registry::Key key = m_registry.key(path);
    const std::string fault = registry_fault_text(key.fault, m_messages, path);
    if (!fault.empty() && m_told.insert(fault).second) m_prompts.tell(fault, Icon::critical);
    return key;
  }

  void collect_families(const std::string& place) {
    for (const std::string& family : read(place).subkeys) {
      const std::string path = place + "\\" + family;
      const Registry::Key key = read(path);
      const std::string fid = fid_text(key);
      const Registry::Key product = read(path + R"(\1)");
      // A family may stand on two lists; the first one is the one that the programs use.
      const std::string location = location_text(product, key);
      if (!m_known.insert(fold_name(family) + "\n" + fid + "\n" + fold_name(location)).second) continue;
      const auto text = [&](std::string_view name) {
        const std::string own = text_value(product, name);
        return own.empty() ? text_value(key, name) : own;
      };
      m_maps.push_back({family, fid, text("TYP"), location, text("TDB"), text("BMAP"), text("IDX"),
                        text("MDR"), path, m_registry.system_path(location)});
    }
  }

  void collect_packages(const std::string& folder) {
    for (const std::string& name : list_folders(folder)) {
      if (!ends_with_ignoring_case(name, package_ending)) continue;
      const std::string path = platform::join(folder, name);
      InstalledMap map = parse_package_info(read_whole_file(platform::join(path, "Info.xml")));
      if (map.product.empty()) map.product = name.substr(0, name.size() - package_ending.size());
      map.location = path;
      map.path = path;
      m_maps.push_back(std::move(map));
    }
  }

  Registry& m_registry;
  const MessageTable& m_messages;
  Prompts& m_prompts;
  std::vector<InstalledMap> m_maps;
  std::set<std::string> m_known, m_told;
};

// Content of the first element of this name; the few entities of XML are put back.
std::string first_element(std::string_view xml, std::string_view name) {
  const std::string open = "<" + std::string(name) + ">";
  const std::size_t start = xml.find(open);
  if (start == std::string_view::npos) return "";
  const std::size_t end = xml.find("</" + std::string(name) + ">", start);
  if (end == std::string_view::npos) return "";
  std::string text(trim(xml.substr(start + open.size(), end - start - open.size())));
  for (const auto& [entity, character] : std::array<std::pair<const char*, const char*>, 5>{
           {{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}}})
    text = replace_all(text, entity, character);
  return text;
}

std::string hexadecimal_bytes(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

std::string number_text_of(std::string_view data) {
  return "0x" + replace_all(hexadecimal_bytes(std::string(data.rbegin(), data.rend())), " ", "");
}

}  // namespace

std::vector<std::string> keys_of_family(Registry& registry, const InstalledMap& map) {
  std::vector<std::string> keys;
  for (const bool wow64 : {true, false}) {
    for (const std::string_view place : family_places) {
      std::string path = garmin_machine_key(wow64) + std::string(place) + "\\" + map.product;
      const Registry::Key key = registry.key(path);
      if (!key.exists || fid_text(key) != map.fid) continue;
      if (same_name(location_text(registry.key(path + R"(\1)"), key), map.location))
        keys.push_back(std::move(path));
    }
  }
  return keys;
}

InstalledMap parse_package_info(std::string_view xml) {
  InstalledMap map;
  map.product = first_element(xml, "Name");
  map.fid = first_element(xml, "ID");
  if (!is_digits(map.fid)) map.fid.clear();
  map.typ = first_element(xml, "TYP");
  map.tdb = first_element(xml, "TDB");
  return map;
}

std::vector<InstalledMap> installed_maps(Registry& registry, const MessageTable& messages, Prompts& prompts) {
  return Collection(registry, messages, prompts).collect();
}

std::vector<InstalledMap> maps_of_own_store(const Workspace& workspace, const Registry& open,
                                            Prompts& prompts) {
  const std::unique_ptr<Registry> store = store_beside(workspace, open);
  if (!store) return {};
  std::vector<InstalledMap> maps = installed_maps(*store, workspace.messages, prompts);
  for (InstalledMap& map : maps)
    map.key.clear();
  return maps;
}

std::vector<InstalledMap> querymapsource(Workspace& workspace, Registry& registry, Prompts& prompts,
                                         Progress& progress) {
  progress.status(workspace.message(message_collecting));
  registry.refresh();
  std::vector<InstalledMap> maps = installed_maps(registry, workspace.messages, prompts);
  workspace.registered_fids = ",";
  workspace.registered_names = ",";
  workspace.registered_products.clear();
  workspace.registered_are_known = true;
  const auto add_fid = [&](const InstalledMap& map) {
    if (!map.fid.empty()) workspace.registered_fids += map.fid + ",";
  };
  for (const InstalledMap& map : maps) {
    add_fid(map);
    workspace.registered_names += map.product + ",";
    workspace.registered_products.push_back(map.product);
  }
  for (const InstalledMap& map : maps_of_own_store(workspace, registry, prompts))
    add_fid(map);
  return maps;
}

bool is_registered_product(const Workspace& workspace, std::string_view name) {
  const auto named = [&](const std::string& product) { return same_name(product, trim(name)); };
  return std::any_of(workspace.registered_products.begin(), workspace.registered_products.end(), named);
}

std::string value_text(const platform::RegistryValue& value) {
  switch (value.type) {
    case type::none:
      return " = [none]";
    case type::text:
      return " = \"" + value.data + "\"";
    case type::expanding_text:
      return " = [expand sz]";
    case type::number:
      return " = " + number_text_of(value.data);
    case type::big_endian_number:
      return " = [dword big endian]";
    case type::link:
      return " = [link]";
    case type::texts:
      return " = [multi sz]";
    case type::resource_list:
      return " = [resource list]";
    case type::resource_descriptor:
      return " = [full resource descriptor]";
    case type::resource_requirements:
      return " = [resource requirements list]";
    default:
      break;
  }
  return " = " + hexadecimal_bytes(value.data);
}

std::vector<std::string> get_regvals(Registry& registry, const std::string& key) {
  std::vector<std::string> lines;
  for (const platform::RegistryValue& value : registry.key(key).values)
    lines.push_back((value.name.empty() ? "(Default)" : value.name) + value_text(value));
  return lines;
}

namespace {

void add_values_below(Registry& registry, const std::string& key, std::vector<std::string>& lines) {
  if (!lines.empty()) lines.emplace_back();
  lines.push_back("[" + key + "]");
  const std::vector<std::string> values = get_regvals(registry, key);
  lines.insert(lines.end(), values.begin(), values.end());
  for (const std::string& subkey : registry.key(key).subkeys)
    add_values_below(registry, key + "\\" + subkey, lines);
}

}  // namespace

std::vector<std::string> family_values(Registry& registry, const InstalledMap& map) {
  std::vector<std::string> lines;
  for (const std::string& key : keys_of_family(registry, map))
    add_values_below(registry, key, lines);
  return lines;
}

std::string registry_fault_text(platform::RegistryFault fault, const MessageTable& messages,
                                const std::string& key) {
  using platform::RegistryFault;
  switch (fault) {
    case RegistryFault::none:
      return "";
    case RegistryFault::opening_key:
      return messages(message_error_opening) + "\r\n" + messages(message_opening_named) + key + "'";
    case RegistryFault::subkey_length:
      return messages(message_error_length);
    case RegistryFault::subkey_value:
      return messages(message_error_value);
    case RegistryFault::closing_key:
      return "Error closing key.";
    case RegistryFault::opening_parent:
      return messages(message_parent);
    case RegistryFault::deleting_key:
      break;
  }
  return "Access to Registry denied.";
}

}  // namespace ferrowen
