#include "base/fold_name.hpp"

#include <doctest/doctest.h>

#include "base/registry_tree.hpp"

using namespace ferrowen;

TEST_CASE("names are alike whatever the case of their letters, in every script that folds") {
  struct Case {
    const char *one, *other;
    bool same;
  };
  const Case cases[] = {
      {"Łódź", "łÓDŹ", true},    {"ÎLE ÿ", "île Ÿ", true},     {"ΣΊΣΥΦΟΣ", "σίσυφος", true},
      {"ЁЖ Ґ", "ёж ґ", true},    {"Đà NẴNG", "đÀ nẵng", true}, {"×", "÷", false},
      {"Łodz", "Łódz", false},   {"\xC5", "\xC5\x81", false},  {"\xE1\x80", "\xE1\x80", true},
      {"İzmir", "izmir", false}, {"日本", "日本", true}};
  for (const Case& one : cases) {
    CAPTURE(one.one);
    CHECK(same_name(one.one, one.other) == one.same);
    CHECK(fold_name(one.one).size() == std::string_view(one.one).size());
  }
  RegistryTree tree;
  tree.apply({{"HKEY_CURRENT_USER\\Łódź\\1", false, {}, {}}});
  CHECK(tree.has("hkey_current_user\\łódź"));
  CHECK(tree.subkeys("HKEY_CURRENT_USER\\ŁÓDŹ") == std::vector<std::string>{"1"});
}
