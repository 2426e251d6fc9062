#include "styletools/tag_changes.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace ferrowen {

namespace {

bool any_between(const std::vector<std::size_t>& positions, std::size_t from, std::size_t to) {
  const auto first = std::lower_bound(positions.begin(), positions.end(), from);
  return first != positions.end() && *first < to;
}

// The tag whose value a function reads; "" for those that look at the object's shape alone.
std::string key_behind(const std::string& key) {
  if (!key.ends_with(')')) return key;
  return key.starts_with("maxspeed") ? "maxspeed" : "";
}

}  // namespace

void TagChanges::add(const TagAction& action, std::size_t position) {
  Changes& changes = m_changes[action.key];
  if (action.form == TagAction::Form::deletes) {
    changes.deleted.push_back(position);
    return;
  }
  changes.set.push_back(position);
  (action.is_constant ? changes.set_to[action.value] : changes.set_to_something).push_back(position);
}

bool TagChanges::may_have_made_true(const TagTest& test, std::size_t from, std::size_t to) const {
  using enum TagTest::Form;
  // A comparison with another tag, which may have changed as well.
  if ((test.form == needs || test.form == other) && contains(test.value, "$")) return true;
  const auto found = m_changes.find(key_behind(test.key));
  if (found == m_changes.end()) return false;
  const Changes& changes = found->second;
  switch (test.form) {
    case equals: {
      const auto same = changes.set_to.find(test.value);
      return any_between(changes.set_to_something, from, to) ||
             (same != changes.set_to.end() && any_between(same->second, from, to));
    }
    case exists:
    case needs:
      return any_between(changes.set, from, to);
    case missing:
      return any_between(changes.deleted, from, to);
    case differs:
    case other:
      break;
  }
  return any_between(changes.set, from, to) || any_between(changes.deleted, from, to);
}

}  // namespace ferrowen
