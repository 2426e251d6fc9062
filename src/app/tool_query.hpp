// Short questions to the external tools, whose answer the program reads: versions and help texts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "base/status.hpp"

namespace ferrowen {

// A captured run of a program and its arguments without the abort words, which stand in help texts. With
// `shown` its output goes to the output box as it comes. The error tells that it was stopped, or that it
// could not be started or said nothing.
Result<std::string> ask_tool(Workspace& workspace, Prompts& prompts, Progress& progress,
                             const std::vector<std::string>& words, bool shown = false);
// The same for a Java program: `jar` and what follows it. The error is message 46, 90 or 109 when a part of
// it is missing.
Result<std::string> ask_jar(Workspace& workspace, Prompts& prompts, Progress& progress,
                            const std::string& jar, const std::vector<std::string>& arguments,
                            bool shown = false);

// "Mkgmap version 4905" and "splitter 653 compiled ...", shown in the output box as they come.
Result<std::string> mkgmap_version(Workspace& workspace, Prompts& prompts, Progress& progress);
Result<std::string> splitter_version(Workspace& workspace, Prompts& prompts, Progress& progress);

// The first line of an output that begins with this word and goes on with a number or a bracket, up to " : ";
// "" when there is none.
std::string version_line(std::string_view output, std::string_view word);

// True when the Java program of the settings, or one in PATH, is there.
bool has_java(const Settings& settings);
// One word of a command line that a captured run takes apart again.
Result<std::string> command_line_word(const std::string& word);

}  // namespace ferrowen
