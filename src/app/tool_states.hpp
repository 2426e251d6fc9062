// What is known of each external tool: whether it is there, which version it is, and how to get it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"

namespace ferrowen {

enum class ToolState : std::uint8_t { not_set, missing, wrong_program, found };

// How to get a tool.
struct ToolAdvice {
  std::string_view field;    // name of the setting that holds its path
  std::string_view label;    // what people call it
  bool essential = false;    // no map can be built without it
  std::string_view package;  // Debian's name; "" when there is no package
  std::string_view linux_text;
  std::string_view windows_text;
  std::string_view link;  // the project's own page; "" for none
};

struct ToolReport {
  const ToolAdvice* advice = nullptr;
  std::string path;  // as set; for Java, that of PATH when none is set
  ToolState state = ToolState::not_set;
  std::string
      version;  // "" when the program is not asked: those with a window of their own are never started
  std::string problem;  // what is wrong, "" when nothing is
};

const std::vector<ToolAdvice>& tool_advice();
const ToolAdvice* find_tool_advice(std::string_view field);

// Asks every tool that is set for its version.
std::vector<ToolReport> tool_states(Workspace& workspace, Prompts& prompts, Progress& progress);
// One of them, by the name of its setting; it must be in tool_advice().
ToolReport tool_state(Workspace& workspace, Prompts& prompts, Progress& progress, std::string_view field);

}  // namespace ferrowen
