// The Windows installer: makensis packs a built map after the .nsi script that mkgmap left beside it.
#pragma once

#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "pipeline/nsis_script.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "runner/console_script.hpp"

namespace ferrowen {

struct InstallerPlan {
  std::string makensis;
  std::string script;     // full path of the .nsi
  std::string installer;  // full path of the .exe that comes out of it
  std::string charset;    // of the script, where the installer builder would not see it itself; else ""
  bool pause = true;
};

// runnsis.bat / runnsis.sh.
ConsoleScript installer_run(const InstallerPlan& plan, Dialect dialect);
// The value for the builder's -INPUTCHARSET; "" when it reads these bytes rightly by itself.
std::string nsis_charset(std::string_view bytes, Dialect dialect);
// What to tell about the TYP that the installer carries, `map_typ` being the map's own ("" for none); ends
// with " TYP.". "" when all is well.
std::string typ_note(const NsisScript& script, const std::string& map_typ, const MessageTable& messages);

struct InstallerResult {
  StageResult result = StageResult::done;
  std::string path;  // of the .exe; "" when there is none
};

// What can be told before the time of a build is spent: whether an installer can follow it. Tells what is
// missing.
bool check_installer(const Workspace& workspace, Prompts& prompts);

// creatensis, "Create Window Installer": the checks, the run, and the judgement by the .exe. An older
// installer of the same name comes back when no new one is made.
InstallerResult creatensis(const Workspace& workspace, Prompts& prompts, Progress& progress);

}  // namespace ferrowen
