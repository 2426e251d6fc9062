#include "styletools/rule_order.hpp"

#include <algorithm>
#include <deque>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "base/text.hpp"
#include "styletools/tag_actions.hpp"
#include "styletools/tag_changes.hpp"
#include "styletools/tag_tests.hpp"

namespace ferrowen {

namespace {

using Alternatives = std::vector<Alternative>;

// So many earlier rules with the same leading test are looked at, those with the fewest tests first, which
// the most follows from, and of them the newest: enough for every style, and no walk over all pairs of rules.
constexpr std::size_t most_candidates = 64;

// Each open block carries the conditions of those around it; of deeper ones nothing is known.
constexpr std::size_t deepest_block = 64;

// Something that ended or changed the objects for which all its tests held.
struct Earlier {
  Alternative tests;
  std::size_t position = 0;
  std::size_t statement = 0;
  std::string deleted;  // the tag that was deleted; "": the search ended
};

// The bucket in which an earlier rule with this leading test is found.
std::string bucket_name(const TagTest& test) {
  return test.form == TagTest::Form::differs ? test.key + "!=" : test_text(test);
}

// The buckets of all tests that this one implies.
std::vector<std::string> implied_buckets(const TagTest& test) {
  std::vector<std::string> names{bucket_name(test)};
  if (test.is_positive() && test.form != TagTest::Form::exists) names.push_back(test.key + "=*");
  if (test.form == TagTest::Form::equals || test.form == TagTest::Form::missing)
    names.push_back(test.key + "!=");
  return names;
}

class EarlierRules {
 public:
  void add(Earlier earlier) {
    std::string identity = earlier.deleted + "\n";
    for (const TagTest& test : earlier.tests)
      identity += test_text(test) + "\n";
    const auto [known, is_new] = m_known.emplace(std::move(identity), m_all.size());
    if (!is_new) {  // the latest of those that are alike is the surest
      m_all[known->second] = std::move(earlier);
      return;
    }
    const std::string name = leading_bucket(earlier);
    ++m_sizes[name];
    std::vector<std::size_t>& bucket = m_buckets[name];
    const auto place = std::find_if(bucket.begin(), bucket.end(), [&](std::size_t other) {
      return m_all[other].tests.size() >= earlier.tests.size();
    });
    bucket.insert(place, m_all.size());
    if (bucket.size() > most_candidates) bucket.pop_back();
    m_all.push_back(std::move(earlier));
  }

  // Calls `each` for those that may be implied by an alternative, until it returns true.
  template <typename Each>
  void search(const Alternative& alternative, Each each) const {
    std::vector<std::string> names{""};
    for (const TagTest& test : alternative) {
      for (std::string& name : implied_buckets(test))
        names.push_back(std::move(name));
    }
    for (const std::string& name : names) {
      const auto bucket = m_buckets.find(name);
      if (bucket == m_buckets.end()) continue;
      for (const std::size_t at : bucket->second) {
        if (each(m_all[at])) return;
      }
    }
  }

 private:
  // The rarest test so far, positive where there is one.
  std::string leading_bucket(const Earlier& earlier) {
    std::string best;
    std::size_t best_size = 0;
    bool best_positive = false;
    for (const TagTest& test : earlier.tests) {
      const std::string name = bucket_name(test);
      const std::size_t size = m_sizes[name];
      const bool better = best.empty() || (test.is_positive() && !best_positive) ||
                          (test.is_positive() == best_positive && size < best_size);
      if (!better) continue;
      best = name;
      best_size = size;
      best_positive = test.is_positive();
    }
    return best;
  }

  std::vector<Earlier> m_all;
  std::unordered_map<std::string, std::size_t> m_known;
  std::unordered_map<std::string, std::vector<std::size_t>> m_buckets;  // of the best most_candidates
  std::unordered_map<std::string, std::size_t> m_sizes;                 // of all that belong into them
};

bool contradicts(const TagTest& one, const TagTest& two) {
  using enum TagTest::Form;
  if (one.key != two.key) return false;
  if (one.form == missing) return two.is_positive();
  if (one.form == equals && two.form == equals) return one.value != two.value;
  return one.form == equals && two.form == differs && one.value == two.value;
}

// False when no object can match both.
bool may_both_hold(const Alternative& left, const Alternative& right) {
  return std::none_of(left.begin(), left.end(), [&](const TagTest& one) {
    return std::any_of(right.begin(), right.end(), [&](const TagTest& other) {
      return contradicts(one, other) || contradicts(other, one);
    });
  });
}

// The condition of a block as the rules inside carry it. One of many tests would cost their number for each
// of these rules: a single test that stands for all of them, and what all alternatives have in common, say as
// much about rules of the same block.
std::optional<Alternatives> condensed(const std::optional<Alternatives>& alternatives,
                                      const std::string& name) {
  constexpr std::size_t most_tests = 16;
  if (!alternatives) return std::nullopt;
  std::size_t count = 0;
  for (const Alternative& one : *alternatives)
    count += one.size() + 1;
  if (count <= most_tests) return alternatives;
  Alternative common{{TagTest::Form::other, "", name}};
  for (const TagTest& test : alternatives->front()) {
    const bool is_common = std::all_of(
        alternatives->begin(), alternatives->end(),
        [&](const Alternative& one) { return std::find(one.begin(), one.end(), test) != one.end(); });
    if (is_common && common.size() < most_tests) common.push_back(test);
  }
  return Alternatives{std::move(common)};
}

class OrderWalk {
 public:
  explicit OrderWalk(const StyleRules& rules) : m_rules(rules) {}

  std::vector<RuleFate> run() {
    for (m_position = 0; m_position < m_rules.in_place.size(); ++m_position) {
      const std::size_t index = m_rules.in_place[m_position];
      const StyleStatement& statement = m_rules.statements[index];
      if (statement.in_finalize || statement.is_of_base) break;  // what follows runs apart, or behind
      step(index, statement);
    }
    return std::move(m_fates);
  }

 private:
  struct Block {  // an "if" whose "end" has not come
    std::optional<Alternatives> outer, own, now;
    std::unordered_set<std::string> keys;
    std::uint32_t line = 0;
  };
  struct Deletion {
    Alternative tests;
    std::size_t position = 0;
    std::size_t statement = 0;
  };

  void step(std::size_t index, const StyleStatement& statement) {
    using enum StyleStatement::Form;
    switch (statement.form) {
      case if_begins:
        return begin_block(statement);
      case otherwise:
        return turn_block();
      case if_ends:
        if (!m_blocks.empty()) m_blocks.pop_back();
        return;
      case rule:
        return take_rule(index, statement);
      case include:
      case finalize:
        return;
    }
  }

  static std::optional<Alternatives> both(const std::optional<Alternatives>& left,
                                          const std::optional<Alternatives>& right) {
    return left && right ? both_hold(*left, *right) : std::nullopt;
  }

  void begin_block(const StyleStatement& statement) {
    Block& block = m_blocks.emplace_back();
    block.line = statement.place.line;
    if (m_blocks.size() > deepest_block) return;
    const Block* const around = m_blocks.size() > 1 ? &m_blocks[m_blocks.size() - 2] : nullptr;
    block.outer = around == nullptr ? std::optional(Alternatives{{}}) : around->now;
    block.own = parse_tests(statement.tests);
    block.now = both(block.outer, condensed(block.own, "the 'if' of line " + std::to_string(block.line)));
    if (around != nullptr) block.keys = around->keys;
    for (const Alternative& alternative : block.own.value_or(Alternatives{})) {
      for (const TagTest& test : alternative)
        block.keys.insert(test.key);
    }
  }

  void turn_block() {
    if (m_blocks.empty()) return;
    Block& block = m_blocks.back();
    if (!block.own) {
      block.now = std::nullopt;
      return;
    }
    const std::string name = "the 'else' of line " + std::to_string(block.line);
    const std::optional<Alternatives> others = none_holds(*block.own);
    const Alternatives unknown{{TagTest{TagTest::Form::other, "", name}}};
    block.now = both(block.outer, others ? condensed(others, name) : unknown);
  }

  void take_rule(std::size_t index, const StyleStatement& statement) {
    const std::optional<Alternatives> own = parse_tests(statement.tests);
    std::optional<Alternatives> alternatives = own;
    if (!m_blocks.empty()) alternatives = both(alternatives, m_blocks.back().now);
    const bool makes_something = contains(statement.types.empty() ? "" : statement.types.front(), "0x");
    if (makes_something && alternatives) judge(index, *own, *alternatives);
    const bool goes_on = lets_later_rules_match(statement);
    if (!goes_on && alternatives) remember_reached(index, *alternatives);
    if (goes_on) record_actions(index, statement, alternatives);
  }

  void remember(std::size_t index, const Alternatives& alternatives, const std::string& deleted) {
    for (const Alternative& alternative : alternatives)
      m_earlier.add({alternative, m_position, index, deleted});
  }

  // What is never reached ends nothing: whatever follows from it follows from what keeps it from being
  // reached.
  void remember_reached(std::size_t index, const Alternatives& alternatives) {
    for (const Alternative& alternative : alternatives) {
      const Earlier* reason = reason_against(alternative);
      if (reason == nullptr || !reason->deleted.empty()) m_earlier.add({alternative, m_position, index, ""});
    }
  }

  // What the actions of a rule change for the rules behind it.
  void record_actions(std::size_t index, const StyleStatement& statement,
                      const std::optional<Alternatives>& alternatives) {
    const bool forgets = !statement.types.empty() && !has_word(statement.types.back(), "with_actions");
    if (forgets) return;
    for (const TagAction& action : tag_actions(statement.actions)) {
      for (Block& block : m_blocks) {  // the test of the block may no longer hold
        if (block.keys.contains(action.key)) block.outer = block.own = block.now = std::nullopt;
      }
      m_changes.add(action, m_position);
      if (action.form != TagAction::Form::deletes || !alternatives) continue;
      remember(index, *alternatives, action.key);
      remember_deletion(index, *alternatives, action.key);
    }
  }

  // A rule that looks at the tag which it deletes tidies up: what is left is meant to be tested.
  void remember_deletion(std::size_t index, const Alternatives& alternatives, const std::string& key) {
    constexpr std::size_t most_deletions = 32;  // of one tag; the newest
    std::deque<Deletion>& deletions = m_deletions[key];
    for (const Alternative& tests : alternatives) {
      if (std::any_of(tests.begin(), tests.end(), [&](const TagTest& test) { return test.key == key; }))
        continue;
      deletions.push_back({tests, m_position, index});
      if (deletions.size() > most_deletions) deletions.pop_front();
    }
  }

  // Objects that an earlier rule has matched have lost a tag that this rule wants.
  [[nodiscard]] std::optional<RuleFate> partial_loss(std::size_t index, const Alternatives& own,
                                                     const Alternatives& alternatives) const {
    for (const std::string& key : positive_keys(own)) {
      const auto deletions = m_deletions.find(key);
      if (deletions == m_deletions.end()) continue;
      for (const Deletion& deletion : deletions->second) {
        for (const Alternative& alternative : alternatives) {
          const bool is_lost = std::any_of(alternative.begin(), alternative.end(), [&](const TagTest& test) {
            return test.key == key && test.is_positive() &&
                   !m_changes.may_have_made_true(test, deletion.position, m_position);
          });
          if (is_lost && may_both_hold(deletion.tests, alternative))
            return RuleFate{index, RuleFate::Kind::tag_deleted_for_some, deletion.statement, key, ""};
        }
      }
    }
    return std::nullopt;
  }

  static std::unordered_set<std::string> positive_keys(const Alternatives& alternatives) {
    std::unordered_set<std::string> keys;
    for (const Alternative& alternative : alternatives) {
      for (const TagTest& test : alternative)
        if (test.is_positive()) keys.insert(test.key);
    }
    return keys;
  }

  void judge(std::size_t index, const Alternatives& own, const Alternatives& alternatives) {
    std::size_t dead = 0;
    std::optional<RuleFate> fate;
    for (const Alternative& alternative : alternatives) {
      const Earlier* reason = reason_against(alternative);
      if (reason == nullptr) continue;
      ++dead;
      const bool ended = reason->deleted.empty();
      if (fate && !(ended && fate->kind == RuleFate::Kind::tag_deleted)) continue;
      fate = RuleFate{index, ended ? RuleFate::Kind::never_reached : RuleFate::Kind::tag_deleted,
                      reason->statement, ended ? alternative_text(alternative) : reason->deleted,
                      ended ? "" : alternative_text(alternative)};
    }
    const bool partly = dead < alternatives.size();
    // Of a rule that does match, a tag that only its block tests is no matter.
    if (fate && partly && fate->kind == RuleFate::Kind::tag_deleted &&
        !positive_keys(own).contains(fate->what))
      fate.reset();
    if (!fate) fate = partial_loss(index, own, alternatives);
    if (!fate) return;
    if (!partly) fate->never_for.clear();
    if (partly && fate->kind == RuleFate::Kind::never_reached) fate->kind = RuleFate::Kind::partly_reached;
    m_fates.push_back(std::move(*fate));
  }

  static std::string alternative_text(const Alternative& alternative) {
    std::string text;
    for (const TagTest& test : alternative)
      text += (text.empty() ? "" : " & ") + test_text(test);
    return text;
  }

  const Earlier* reason_against(const Alternative& alternative) const {
    const Earlier* reason = nullptr;
    m_earlier.search(alternative, [&](const Earlier& earlier) {
      if (holds_against(earlier, alternative)) reason = &earlier;
      return reason != nullptr;
    });
    return reason;
  }

  // An object that matches now matched then too: each test of then follows from a test of now that no action
  // in between can have made true.
  [[nodiscard]] bool holds_against(const Earlier& earlier, const Alternative& alternative) const {
    const auto held_then = [&](const TagTest& now) {
      return !m_changes.may_have_made_true(now, earlier.position, m_position);
    };
    for (const TagTest& then : earlier.tests) {
      const bool follows = std::any_of(alternative.begin(), alternative.end(), [&](const TagTest& now) {
        return implies(now, then) && held_then(now);
      });
      if (!follows) return false;
    }
    return earlier.deleted.empty() ||
           std::any_of(alternative.begin(), alternative.end(), [&](const TagTest& now) {
             return now.key == earlier.deleted && now.is_positive() && held_then(now);
           });
  }

  const StyleRules& m_rules;
  std::size_t m_position = 0;
  std::vector<Block> m_blocks;
  EarlierRules m_earlier;
  std::unordered_map<std::string, std::deque<Deletion>> m_deletions;  // by tag
  TagChanges m_changes;
  std::vector<RuleFate> m_fates;
};

}  // namespace

std::vector<RuleFate> fates_of_rules(const StyleRules& rules) { return OrderWalk(rules).run(); }

bool lets_later_rules_match(const StyleStatement& statement) {
  return statement.types.empty() || has_word(statement.types.back(), "continue");
}

}  // namespace ferrowen
