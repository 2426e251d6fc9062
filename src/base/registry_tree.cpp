#include "base/registry_tree.hpp"

#include <algorithm>

#include "base/fold_name.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr char part_end = '\x01';

std::string sort_key(std::string_view key) {
  std::string sorted = fold_name(key);
  std::replace(sorted.begin(), sorted.end(), '\\', part_end);
  return sorted += part_end;
}

}  // namespace

void RegistryTree::apply(const std::vector<RegistryChange>& changes) {
  for (const RegistryChange& change : changes) {
    if (change.remove) {
      remove(change.key);
      continue;
    }
    Key& key = make(change.key);
    for (const platform::RegistryValue& value : change.values)
      set(key, value);
    for (const std::string& name : change.removed_values)
      std::erase_if(key.values, [&](const auto& value) { return equal_ignoring_case(value.name, name); });
  }
}

// The keys above come into being with it; above one that is there already they are all there.
RegistryTree::Key& RegistryTree::make(std::string_view key) {
  std::string sorted = sort_key(key);
  const auto [made, is_new] = m_keys.try_emplace(sorted, Key{std::string(key), {}});
  std::size_t cut = is_new ? key.rfind('\\') : std::string_view::npos;
  while (cut != std::string_view::npos) {
    sorted.resize(cut + 1);
    if (!m_keys.try_emplace(sorted, Key{std::string(key.substr(0, cut)), {}}).second) break;
    cut = cut == 0 ? std::string_view::npos : key.rfind('\\', cut - 1);
  }
  return made->second;
}

void RegistryTree::remove(std::string_view key) {
  const std::string prefix = sort_key(key);
  auto last = m_keys.lower_bound(prefix);
  while (last != m_keys.end() && last->first.starts_with(prefix))
    last = m_keys.erase(last);
}

void RegistryTree::set(Key& key, const platform::RegistryValue& value) {
  const auto found = std::find_if(key.values.begin(), key.values.end(),
                                  [&](const auto& one) { return equal_ignoring_case(one.name, value.name); });
  if (found == key.values.end())
    key.values.push_back(value);
  else
    *found = value;
}

bool RegistryTree::has(std::string_view key) const { return m_keys.contains(sort_key(key)); }

std::vector<std::string> RegistryTree::subkeys(std::string_view key) const {
  const std::string prefix = sort_key(key);
  std::vector<std::string> names;
  for (auto at = m_keys.upper_bound(prefix); at != m_keys.end() && at->first.starts_with(prefix); ++at) {
    if (at->first.find(part_end, prefix.size()) + 1 == at->first.size())
      names.push_back(at->second.path.substr(key.size() + 1));
  }
  return names;
}

std::vector<platform::RegistryValue> RegistryTree::values(std::string_view key) const {
  const auto found = m_keys.find(sort_key(key));
  return found == m_keys.end() ? std::vector<platform::RegistryValue>() : found->second.values;
}

std::vector<RegistryChange> RegistryTree::content() const {
  std::vector<RegistryChange> changes;
  changes.reserve(m_keys.size());
  for (const auto& [sorted, key] : m_keys)
    changes.push_back({key.path, false, key.values, {}});
  return changes;
}

}  // namespace ferrowen
