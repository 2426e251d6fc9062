// What the parts of the command line are put together from.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ferrowen {

// An option with a value behind it; given twice, the last one counts.
template <typename Value>
void text_option(CLI::App& command, const std::string& name, Value& value, const std::string& type,
                 const std::string& help) {
  command.add_option(name, value, help)->type_name(type)->take_last();
}

// A command, or one below a command; `footer` ends its help.
inline CLI::App* add_command(CLI::App& app, const std::string& name, const std::string& help,
                             const std::string& footer) {
  CLI::App* command = app.add_subcommand(name, help);
  command->group("Commands");
  command->footer(footer);
  return command;
}

inline std::string with_hint(const std::string& footer, const std::string& hint) {
  return footer.empty() ? hint : footer + "\n\n" + hint;
}

}  // namespace ferrowen
