#include "cli/automation_line.hpp"

#include <CLI/CLI.hpp>

namespace ferrowen {

namespace {

constexpr const char* run_footer =
    R"(Runs automation scripts one after another, without a question. Each writes its log
into the folder "logs" of the program folder, and all of them together summary.txt. A script that fails does
not keep the others from being run. Scripts are named by their path, or by their name in the folder of scripts.
Exit status: 0 when every map was made, 1 when a run failed, 2 when a script could not be read, 3 when a check
stopped one.
Examples:
  ferrowen run alps.auto
  ferrowen --json run /maps/nightly/*.auto)";

constexpr const char* script_footer = R"(Examples:
  ferrowen script new alps.auto
  ferrowen script check alps.auto)";

}  // namespace

void add_automation(CLI::App& app, AutomationArguments& arguments, const std::string& global_hint) {
  CLI::App* run = app.add_subcommand("run", "Build maps by automation scripts, without a question");
  run->group("Commands");
  run->footer(std::string(run_footer) + "\n\n" + global_hint);
  run->add_option("SCRIPT.auto", arguments.run.scripts, "Scripts, in the order in which they are run")
      ->type_name("")
      ->required();

  CLI::App* script = app.add_subcommand("script", "Begin or check an automation script");
  script->group("Commands");
  script->footer(std::string(script_footer) + "\n\n" + global_hint);
  script->require_subcommand(1);
  const auto add = [&](const char* name, ScriptArguments::Action action, const char* help, const char* file) {
    CLI::App* command = script->add_subcommand(name, help);
    command->group("Commands");
    command->footer(global_hint);
    command->add_option("FILE", arguments.script.file, file)->type_name("")->required();
    command->callback([&arguments, action] { arguments.script.action = action; });
  };
  add("new", ScriptArguments::Action::make, "Write a script of the current settings",
      "Script to write (*.auto)");
  add("check", ScriptArguments::Action::check, "Tell what is wrong in a script, line by line",
      "Script to read");
}

}  // namespace ferrowen
