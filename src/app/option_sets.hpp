// Named option sets of mkgmap and the splitter, several in one file of the program folder (mkopts, splopts).
//
// The file begins with the set that has no name: the options of a fresh installation, one per line. Behind a
// line "##", which ends the options for every reader, follow the named sets, each under its "[name]" line.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

enum class OptionKeeper : std::uint8_t { mkgmap, splitter };

struct OptionSet {
  std::string name;  // "" for the first set of the file
  std::string text;  // lines with CR LF
};

struct OptionSets {
  std::vector<OptionSet> sets;        // at least the one without a name, which is the first
  std::vector<std::string> problems;  // with line numbers; nothing of such a line is lost
  [[nodiscard]] const OptionSet* find(std::string_view name) const;
};

// Reads any text; a line with a broken "[name]" stays a line of the set that it stands in (messages 168,
// 169). Of two sets with one name the second gets a number behind it.
OptionSets parse_option_sets(std::string_view text, const MessageTable& messages);
std::string option_sets_text(const OptionSets& sets);
// What cannot be the name or a line of a set, with message 168 or 169 for brackets.
Status check_option_set(std::string_view name, std::string_view text, const MessageTable& messages);

// The sets of the file; a missing file holds the set without a name, empty. Fails when it cannot be read.
Result<OptionSets> load_option_sets(const Workspace& workspace, OptionKeeper keeper);
// Options that the settings hold now.
const std::string& current_options(const Settings& settings, OptionKeeper keeper);

// Puts a text into the file under this name, over the set that had it; nothing is asked or told.
Status store_option_set(const Workspace& workspace, OptionKeeper keeper, const std::string& name,
                        const std::string& text);

// Each tells what came of it, and false means that nothing was changed. Saving asks before it replaces a set
// of that name (message 202 at the end); recalling and clearing ask message 191 when there are options to
// lose.
bool save_option_set(Workspace& workspace, Prompts& prompts, OptionKeeper keeper, const std::string& name);
bool recall_option_set(Workspace& workspace, Prompts& prompts, OptionKeeper keeper, const std::string& name);
bool delete_option_set(Workspace& workspace, Prompts& prompts, OptionKeeper keeper, const std::string& name);
bool clear_options(Workspace& workspace, Prompts& prompts, OptionKeeper keeper);
// A copy of the file, and of the options in use, beside the backups (message 192 with the folder).
bool back_up_option_sets(const Workspace& workspace, Prompts& prompts, std::time_t now);

}  // namespace ferrowen
