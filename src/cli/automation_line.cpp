#include "cli/automation_line.hpp"

#include "cli/line_parts.hpp"

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
  CLI::App* run = add_command(app, "run", "Build maps by automation scripts, without a question",
                              with_hint(run_footer, global_hint));
  run->add_option("SCRIPT.auto", arguments.run.scripts, "Scripts, in the order in which they are run")
      ->type_name("")
      ->required();

  CLI::App* script = add_command(app, "script", "Begin or check an automation script",
                                 with_hint(script_footer, global_hint));
  script->require_subcommand(1);
  const auto add = [&](const char* name, ScriptArguments::Action action, const char* help, const char* file) {
    CLI::App* command = add_command(*script, name, help, global_hint);
    command->add_option("FILE", arguments.script.file, file)->type_name("")->required();
    command->callback([&arguments, action] { arguments.script.action = action; });
  };
  add("new", ScriptArguments::Action::make, "Write a script of the current settings",
      "Script to write (*.auto)");
  add("check", ScriptArguments::Action::check, "Tell what is wrong in a script, line by line",
      "Script to read");
}

}  // namespace ferrowen
