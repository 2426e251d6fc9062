// The changes that actions make to tags, by their position among the rules, and whether one of them can have
// made a test true.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "styletools/tag_actions.hpp"
#include "styletools/tag_tests.hpp"

namespace ferrowen {

class TagChanges {
 public:
  // Positions never fall.
  void add(const TagAction& action, std::size_t position);
  // By an action at a position from `from` on and below `to`.
  [[nodiscard]] bool may_have_made_true(const TagTest& test, std::size_t from, std::size_t to) const;

 private:
  using Positions = std::vector<std::size_t>;
  struct Changes {
    Positions set, set_to_something, deleted;  // all settings; those to a value that is not known
    std::unordered_map<std::string, Positions> set_to;
  };
  std::unordered_map<std::string, Changes> m_changes;  // by key
};

}  // namespace ferrowen
