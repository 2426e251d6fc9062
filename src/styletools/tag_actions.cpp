#include "styletools/tag_actions.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace ferrowen {

namespace {

// The single actions: split at ";" outside quotes.
std::vector<std::string_view> single_actions(std::string_view actions) {
  std::vector<std::string_view> found;
  char quote = 0;
  std::size_t begin = 0;
  for (std::size_t at = 0; at <= actions.size(); ++at) {
    const char c = at < actions.size() ? actions[at] : ';';
    const bool ends = (quote == 0 && c == ';') || at == actions.size();
    if (quote != 0 && c == quote)
      quote = 0;
    else if (quote == 0 && (c == '\'' || c == '"'))
      quote = c;
    if (!ends) continue;
    if (const std::string_view one = trim(actions.substr(begin, at - begin)); !one.empty())
      found.push_back(one);
    begin = at + 1;
  }
  return found;
}

std::string_view unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && (text.front() == '\'' || text.front() == '"') &&
                      text.find(text.front(), 1) == text.size() - 1;
  return quoted ? text.substr(1, text.size() - 2) : text;
}

std::string tag_name(std::string_view text) {
  text = trim(text);
  if (text.starts_with('\'') || text.starts_with('"')) {
    const std::size_t end = text.find(text.front(), 1);
    return std::string(text.substr(1, end == std::string_view::npos ? end : end - 1));
  }
  return std::string(text.substr(0, text.find_first_of("=! ;}")));
}

void add_setting(std::vector<TagAction>& found, std::string_view rest) {
  TagAction action{TagAction::Form::sets, tag_name(rest), "", false};
  const std::size_t sign = rest.find('=');
  if (sign != std::string_view::npos) {
    const std::string_view value = trim(rest.substr(sign + 1));
    action.value = unquoted(value);
    action.is_constant = !contains(value, "$") && !contains(value, "|");
  }
  if (!action.key.empty()) found.push_back(std::move(action));
}

}  // namespace

std::vector<TagAction> tag_actions(std::string_view actions) {
  std::vector<TagAction> found;
  for (std::string_view action : single_actions(actions)) {
    action.remove_prefix(std::min(action.find_first_not_of("} "), action.size()));
    while (action.starts_with("apply")) {  // "apply role=outer {set a=b": what members are given
      const std::size_t inside = action.find('{');
      action = inside == std::string_view::npos ? std::string_view{} : trim(action.substr(inside + 1));
    }
    const std::string_view word = action.substr(0, action.find_first_of(" \"'"));
    const std::string_view rest = trim(action.substr(word.size()));
    if (word == "set" || word == "add") add_setting(found, rest);
    if (word == "delete") {
      for (const std::string& tag : split(rest, "|"))
        found.push_back({TagAction::Form::deletes, tag_name(tag), "", false});
    }
    if (word == "rename") {
      const std::size_t end = rest.find(' ');
      found.push_back({TagAction::Form::deletes, tag_name(rest.substr(0, end)), "", false});
      if (end != std::string_view::npos)
        found.push_back({TagAction::Form::sets, tag_name(rest.substr(end)), "", false});
    }
  }
  return found;
}

std::vector<std::string> referred_tags(std::string_view text) {
  std::vector<std::string> found;
  for (std::size_t at = text.find('$'); at != std::string_view::npos; at = text.find('$', at + 1)) {
    std::string_view rest = text.substr(at + 1);
    const bool braced = rest.starts_with('{');
    if (!braced && (at == 0 || text[at - 1] != '\'')) continue;
    if (braced) rest.remove_prefix(1);
    // A name ends at the latest where the next one begins, so that no stretch of the text is walked twice.
    const std::string_view tag = trim(rest.substr(0, rest.find_first_of(braced ? "${}|'\"" : "${} '\"|;(")));
    if (!tag.empty()) found.emplace_back(tag);
  }
  return found;
}

}  // namespace ferrowen
