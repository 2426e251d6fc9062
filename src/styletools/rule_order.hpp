// Which rules of a style can never match, because an earlier one ends the search or deletes what they test.
// Says so only when it is certain; conditions that are not understood are left alone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "styletools/style_rules.hpp"

namespace ferrowen {

struct RuleFate {
  std::size_t statement = 0;
  // tag_deleted_for_some: only of the objects that the earlier rule has matched too.
  enum class Kind : std::uint8_t { never_reached, partly_reached, tag_deleted, tag_deleted_for_some };
  Kind kind = Kind::never_reached;
  std::size_t earlier = 0;  // the statement that keeps it from matching
  std::string what;         // the alternative that never matches, or the deleted tag
  std::string never_for;    // of a deleted tag: the alternative, when others of the rule do match
};

// In the order in which mkgmap meets the rules; one entry per rule.
std::vector<RuleFate> fates_of_rules(const StyleRules& rules);

// True when mkgmap goes on with further rules behind this one.
bool lets_later_rules_match(const StyleStatement& statement);

}  // namespace ferrowen
