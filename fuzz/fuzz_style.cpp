// Input: the rule file, then included files, each behind a byte of value 1; they are called "a", "b", ...
#include <cstdint>

#include "base/text.hpp"
#include "expect.hpp"
#include "styletools/rule_order.hpp"
#include "styletools/style_rules.hpp"

using namespace ferrowen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> files = split(fuzz::text_of(data, size), "\x01");
  const IncludeSource source = [&](const StyleInclude& include,
                                   const std::string& folder) -> std::optional<StyleFileBytes> {
    if (include.name.size() != 1 || include.name[0] < 'a') return std::nullopt;
    const std::size_t index = std::size_t(include.name[0]) - 'a' + 1;
    if (index >= files.size()) return std::nullopt;
    return StyleFileBytes{include.name, folder, files[index]};
  };
  const StyleText style = read_style_text(RuleKind::lines, {"lines", "", files.front()}, source);
  fuzz::expect(style.files.size() <= files.size(), "every file is read once at most");
  const StyleRules rules = get_styletypes(style);
  fuzz::expect(rules.in_place.size() == rules.statements.size(), "every statement has its place");
  for (const StyleStatement& statement : rules.statements) {
    fuzz::expect(statement.place.file < style.files.size(), "every statement knows its file");
    fuzz::expect(statement.place.line > 0, "every statement knows its line");
  }
  for (const RuleFate& fate : fates_of_rules(rules))
    fuzz::expect(fate.earlier < rules.statements.size(), "what keeps a rule from matching is a rule");
  fuzz::expect(rules.types.size() == rules.first_rules.size(), "every type knows its first rule");
  return 0;
}
