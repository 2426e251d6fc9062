// What mkgmap refuses in single rules: conditions, actions and types that it cannot read. Tells only what is
// certain; what a later mkgmap may know (functions) is left alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "styletools/style_rules.hpp"

namespace ferrowen {

// In the order in which mkgmap meets the rules; at most one entry per rule.
std::vector<StyleProblem> rule_mistakes(const StyleRules& rules);

// What a condition is.
struct ConditionState {
  std::string mistake;       // why it cannot be read; "" when it can
  bool is_indexable = true;  // mkgmap needs a tag that must be there in each of its alternatives
  bool is_opposite_indexable = true;
};
ConditionState examine_condition(std::string_view tests);
// Why the text between "{" and "}" or "[" and "]" cannot be read; "" when it can.
std::string action_mistake(std::string_view actions);
std::string type_mistake(std::string_view definition);

}  // namespace ferrowen
