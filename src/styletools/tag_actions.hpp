// What the action blocks of a rule do to the tags of an object.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

struct TagAction {
  enum class Form : std::uint8_t { sets, deletes };  // "add" sets too
  Form form = Form::sets;
  std::string key;
  std::string value;
  bool is_constant = false;  // else the value depends on other tags or is one of several
};

// In order; actions that change no tag are left out.
std::vector<TagAction> tag_actions(std::string_view actions);
// The tags that values refer to as ${tag} or '$tag, in order, filters left out.
std::vector<std::string> referred_tags(std::string_view text);

}  // namespace ferrowen
