#include "cli/completion.hpp"

#include <CLI/CLI.hpp>

#include "base/text.hpp"

namespace ferrowen {

namespace {

using Commands = std::vector<const CLI::App*>;
using Options = std::vector<const CLI::Option*>;

Commands commands_of(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* one) { return !one->get_name().empty(); });
}

// The options of a command and those that every command takes; its positional words are left out.
Options options_of(const CLI::App& command) {
  Options options;
  for (const CLI::App* level = &command; level != nullptr; level = level->get_parent()) {
    for (const CLI::Option* option :
         level->get_options([](const CLI::Option* one) { return !one->get_positional(); })) {
      if (level == &command || !option->check_lname("help")) options.push_back(option);
    }
  }
  return options;
}

std::vector<std::string> names_of(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames())
    names.push_back("-" + name);
  for (const std::string& name : option.get_lnames())
    names.push_back("--" + name);
  return names;
}

const CLI::Option* positional_of(const CLI::App& command) {
  const Options found = command.get_options([](const CLI::Option* one) { return one->get_positional(); });
  return found.empty() ? nullptr : found.front();
}

// Words that a command reads before its options: "settings show"; "" for the program itself.
std::string path_of(const CLI::App& command) {
  const CLI::App* parent = command.get_parent();
  if (parent == nullptr) return "";
  const std::string before = path_of(*parent);
  return before.empty() ? command.get_name() : before + " " + command.get_name();
}

void collect(const CLI::App& app, Commands& all) {
  all.push_back(&app);
  for (const CLI::App* command : commands_of(app))
    collect(*command, all);
}

Commands all_commands(const CLI::App& app) {
  Commands all;
  collect(app, all);
  return all;
}

bool takes_value(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

// "yes|clip|no" of a type name are the words to choose from; a single one only says what is expected.
std::string words_of(const CLI::Option& option) {
  const std::string& type = option.get_type_name();
  return contains(type, "|") && !contains(type, "N|") ? replace_all(type, "|", " ") : "";
}

bool is_folder(const std::string& what) { return what == "DIR" || what == "FOLDER"; }
bool is_file(const std::string& what) {
  return what == "FILE" || what == "F" || what == "INPUT" || what == "STYLE" || what == "SCRIPT.auto";
}

std::string bash_values(const std::string& what, const std::string& words) {
  if (!words.empty()) return "COMPREPLY=($(compgen -W '" + words + "' -- \"$cur\"))";
  if (is_folder(what)) return "_filedir -d";
  return is_file(what) ? "_filedir" : "";
}

std::string bash_patterns(const CLI::App& command, const CLI::Option& option) {
  std::string patterns;
  for (const std::string& name : names_of(option))
    patterns += (patterns.empty() ? "'" : "|'") + path_of(command) + ":" + name + "'";
  return patterns;
}

// What stands behind an option that takes a value, for each option of each command.
std::string bash_option_values(const Commands& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    for (const CLI::Option* option : options_of(*command)) {
      if (!takes_value(*option)) continue;
      const std::string values = bash_values(option->get_type_name(), words_of(*option));
      text += "    " + bash_patterns(*command, *option) + ") " + (values.empty() ? "" : values + "; ") +
              "return ;;\n";
    }
  }
  return text;
}

std::string bash_words(const Commands& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    std::string options;
    for (const CLI::Option* option : options_of(*command))
      options.append(options.empty() ? "" : " ").append(join_texts(names_of(*option), " "));
    std::string names;
    for (const CLI::App* one : commands_of(*command))
      names.append(names.empty() ? "" : " ").append(one->get_name());
    const CLI::Option* positional = positional_of(*command);
    const std::string files = positional == nullptr ? "" : bash_values(positional->get_name(), "");
    text.append("    '").append(path_of(*command)).append("') options='").append(options);
    text.append("' commands='").append(names).append("' files='").append(files).append("' ;;\n");
  }
  return text;
}

std::string bash_paths(const Commands& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    if (const std::string path = path_of(*command); !path.empty())
      text += (text.empty() ? "'" : "|'") + path + "'";
  }
  return text;
}

std::string bash_skipped(const CLI::App& app) {
  std::string text;
  for (const CLI::App* command : all_commands(app)) {
    for (const CLI::Option* option : options_of(*command)) {
      for (const std::string& name : names_of(*option)) {
        if (takes_value(*option) && !contains("|" + text + "|", "|" + name + "|"))
          text += (text.empty() ? "" : "|") + name;
      }
    }
  }
  return text;
}

// Quoted for a description within single quotes that _arguments and _describe read.
std::string zsh_text(std::string_view text) {
  std::string quoted;
  for (const char c : text) {
    if (c == '[' || c == ']' || c == ':' || c == '\\') quoted += '\\';
    quoted += c == '\'' ? "'\\''" : std::string(1, c);
  }
  return quoted;
}

std::string zsh_values(const std::string& what, const std::string& words) {
  if (!words.empty()) return "(" + words + ")";
  if (is_folder(what)) return "_files -/";
  return is_file(what) ? "_files" : "";
}

std::string zsh_option(const CLI::Option& option, const std::string& name) {
  std::string text = "'" + name + "[" + zsh_text(option.get_description()) + "]";
  if (takes_value(option))
    text +=
        ":" + zsh_text(option.get_type_name()) + ":" + zsh_values(option.get_type_name(), words_of(option));
  return text + "'";
}

std::string zsh_arguments(const CLI::App& command) {
  std::string text;
  for (const CLI::Option* option : options_of(command)) {
    for (const std::string& name : names_of(*option))
      text += " \\\n        " + zsh_option(*option, name);
  }
  return text;
}

std::string zsh_function_name(const CLI::App& command) {
  const std::string path = path_of(command);
  return path.empty() ? "_ferrowen" : "_ferrowen_" + replace_all(path, " ", "_");
}

// A command with commands of its own: offers them, and hands over to the function of the one that stands
// there.
std::string zsh_parent(const CLI::App& command) {
  std::string list;
  std::string calls;
  for (const CLI::App* one : commands_of(command)) {
    list += "\n    '" + one->get_name() + ":" + zsh_text(one->get_description()) + "'";
    calls += "\n    " + one->get_name() + ") " + zsh_function_name(*one) + " ;;";
  }
  return "  local context state state_descr line\n  typeset -A opt_args\n  local -a commands=(" + list +
         "\n  )\n  _arguments -C" + zsh_arguments(command) +
         " \\\n        '1:command:->command' \\\n        '*::argument:->argument'\n"
         "  case $state in\n  command) _describe command commands ;;\n  argument)\n    case $line[1] in" +
         calls + "\n    esac ;;\n  esac\n";
}

std::string zsh_leaf(const CLI::App& command) {
  std::string text = "  _arguments" + zsh_arguments(command);
  if (const CLI::Option* positional = positional_of(command))
    text += " \\\n        '*:" + positional->get_name() + ":" + zsh_values(positional->get_name(), "") + "'";
  return text + "\n";
}

}  // namespace

std::string bash_completion(const CLI::App& app) {
  const Commands commands = all_commands(app);
  return R"(# Completion of ferrowen for bash.
_ferrowen() {
  local cur prev words cword
  _init_completion -n = || return
  local command= commands= options= files= i
  for ((i = 1; i < cword; i++)); do
    case ${words[i]} in
    )" + bash_skipped(app) +
         R"() ((i++)) ;;
    -*) ;;
    *)
      case "${command:+$command }${words[i]}" in
      )" +
         bash_paths(commands) +
         R"() command="${command:+$command }${words[i]}" ;;
      esac ;;
    esac
  done
  case "$command:$prev" in
)" + bash_option_values(commands) +
         R"(  esac
  case $command in
)" + bash_words(commands) +
         R"(  esac
  if [[ $cur == -* ]]; then
    COMPREPLY=($(compgen -W "$options" -- "$cur"))
  elif [[ -n $commands ]]; then
    COMPREPLY=($(compgen -W "$commands" -- "$cur"))
  elif [[ -n $files ]]; then
    $files
  fi
}
complete -F _ferrowen ferrowen
)";
}

std::string zsh_completion(const CLI::App& app) {
  std::string text = "#compdef ferrowen\n# Completion of ferrowen for zsh.\n";
  for (const CLI::App* command : all_commands(app)) {
    text += "\n" + zsh_function_name(*command) + "() {\n" +
            (commands_of(*command).empty() ? zsh_leaf(*command) : zsh_parent(*command)) + "}\n";
  }
  return text + "\n_ferrowen \"$@\"\n";
}

}  // namespace ferrowen
