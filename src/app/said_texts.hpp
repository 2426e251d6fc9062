// The stages, the checks and the files say what they have to say in English, on the command line and to the
// tests alike. The windows show it in the language that was chosen: this finds the English line in the lists
// and gives the current text for it.
#pragma once

#include <string>
#include <string_view>

#include "app/interface_texts.hpp"

namespace ferrowen {

// Line by line; a line that no list knows (a path, the words of a tool, a message that is translated already)
// stays as it is, and so do the blanks around a line. What stands in the place of %1 to %9 is looked for too,
// and so is what stands behind a place such as "FILE:12: ".
std::string said(const InterfaceTexts& texts, std::string_view english);

}  // namespace ferrowen
