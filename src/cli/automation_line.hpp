// The commands of automation on the command line.
#pragma once

#include <string>

#include "cli/command_line.hpp"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library gave itself
class App;
}

namespace ferrowen {

struct AutomationArguments {
  RunArguments run;
  ScriptArguments script;
};

void add_automation(CLI::App& app, AutomationArguments& arguments, const std::string& global_hint);

}  // namespace ferrowen
