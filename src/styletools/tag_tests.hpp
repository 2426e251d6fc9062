// The tests of a rule as alternatives of simple tests: what must hold so that the rule matches.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

struct TagTest {
  enum class Form : std::uint8_t {
    equals,   // key=value
    differs,  // key!=value, true without the key too
    exists,   // key=*
    missing,  // key!=*
    needs,    // another test that fails without the key: key~'..', key<3
    other,    // anything else: functions, negations of `needs`
  };
  Form form = Form::other;
  std::string key;
  std::string value;  // of equals and differs; else the test's own text
  bool operator==(const TagTest&) const = default;
  // True when the test cannot hold for an object without the key.
  [[nodiscard]] bool is_positive() const {
    return form == Form::equals || form == Form::exists || form == Form::needs;
  }
};

using Alternative = std::vector<TagTest>;  // all of them must hold; sorted, each once

// Nothing when the tests cannot be understood or have too many alternatives.
std::optional<std::vector<Alternative>> parse_tests(std::string_view tests);
// Both at once; nothing when that are too many.
std::optional<std::vector<Alternative>> both_hold(const std::vector<Alternative>& left,
                                                  const std::vector<Alternative>& right);
// Neither of them; nothing when that are too many.
std::optional<std::vector<Alternative>> none_holds(const std::vector<Alternative>& alternatives);
// Whenever `now` holds, `then` holds.
bool implies(const TagTest& now, const TagTest& then);
// The test as text; the same for tests that mean the same.
std::string test_text(const TagTest& test);

}  // namespace ferrowen
