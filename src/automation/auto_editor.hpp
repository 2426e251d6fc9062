// What the script editor does to texts and files; the window shows it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "automation/auto_script.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

inline constexpr std::string_view untitled_script = "untitled.auto";

// newscrpt, pure: the template with the settings in place of its tags. Lines of unknown tags are copied as
// they are.
std::string newscrpt(std::string_view template_text, const Settings& settings);
// The same with the template of the program folder; "" when it is missing.
std::string new_script(const Workspace& workspace);
// The lines of the file "commands"; none when it is missing.
std::vector<std::string> script_tag_templates(const Workspace& workspace);

// Megabytes of Java's heap that the options name, digits alone; "" for none.
std::string heap_megabytes(std::string_view java_options);
// The options with this heap; their other words stay.
std::string with_heap(std::string_view java_options, const std::string& megabytes);

struct EditedText {
  std::string text;
  std::size_t caret = 0;  // behind what was put in
};
// Puts a tag on a line of its own at the caret; what stood behind the caret stays behind it.
EditedText insert_tag(std::string_view text, std::size_t caret, std::string_view tag);

// capa: "Auto Script " and the file's name; an "X" behind it marks unsaved changes.
std::string script_caption(const std::string& path, bool changed);

// A script whose text proposes a name, and what the file of that name has to do with it.
struct ScriptPlace {
  std::string path;
  bool is_own = false;  // the file was read into the editor, or written from it
};
// Asks for a name and writes the script there: the path, or "" when nothing was written (the reason has been
// told). Any file that is there, but for the script's own one, is asked about.
std::string save_script(const Workspace& workspace, Prompts& prompts, const ScriptPlace& place,
                        std::string_view text);
// The file is the script's own one and holds this text.
bool is_saved(const ScriptPlace& place, std::string_view text);
// True for a file whose bytes can be read to an end: no folder, no device, no pipe.
bool is_plain_file(const std::string& path);
// Asks, then deletes the script; true when it is gone.
bool delete_script(Prompts& prompts, const std::string& path);

// The facts of this system for a check.
AutoFacts auto_facts(const Workspace& workspace);

}  // namespace ferrowen
