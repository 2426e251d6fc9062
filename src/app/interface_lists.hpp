// The lists that the sections of a language file are made of. Labels are three: what stands on the windows,
// what the stages say in English, and single words that they hand to the windows.
#pragma once

#include <vector>

#include "app/interface_texts.hpp"

namespace ferrowen {

const std::vector<InterfaceItem>& commands_items();
const std::vector<InterfaceItem>& settings_items();
const std::vector<InterfaceItem>& menus_items();
const std::vector<InterfaceItem>& tooltips_items();
const std::vector<InterfaceItem>& labels_items();
// Single lines of messages; %1 to %9 stand for what changes.
const std::vector<InterfaceItem>& said_items();
// What the readers of files find and the tools say of them; they belong to the lines above.
const std::vector<InterfaceItem>& finding_items();
const std::vector<InterfaceItem>& word_items();

}  // namespace ferrowen
