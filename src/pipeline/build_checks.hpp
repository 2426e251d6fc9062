// The checks before a build, in their order. Each tells its message through Prompts.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "pipeline/tiles/splitter.hpp"

namespace ferrowen {

struct BuildReport;

// What the checks need to know from stages beside the build.
struct BuildServices {
  // Fills the lists of registered families and names of the workspace.
  std::function<void(Workspace&)> collect_registered = [](Workspace&) {};
  // Why the map of a good build could not be registered, as far as that can be told before it; "" otherwise.
  std::function<std::string(const Workspace&)> registration_obstacle;
  // Sees to it that no other program holds these files; false when the person gave up.
  std::function<bool(Workspace&, const std::vector<std::string>&)> release_files;
  // Registers the map of a good build; without it no build registers anything.
  std::function<StageResult(Workspace&, BuildReport&)> register_built;
};

// A build that splits first makes the checks that need no tiles before the split, so that nobody waits for
// tiles that cannot be built, and the others behind it.
enum class CheckScope : std::uint8_t { all, before_split, after_split };

enum class CheckResult : std::uint8_t { go_on, stop };

// "Use default folder?" is answered for one build: the clip folders of the settings are at the end of this
// object's life what they were at its beginning.
class KeptClipFolders {
 public:
  explicit KeptClipFolders(Settings& settings)
      : m_settings(settings), m_folders(settings.clip_folders), m_slot(settings.clip_slot) {}
  ~KeptClipFolders() {
    m_settings.clip_folders = m_folders;
    m_settings.clip_slot = m_slot;
  }
  KeptClipFolders(const KeptClipFolders&) = delete;
  KeptClipFolders& operator=(const KeptClipFolders&) = delete;

 private:
  Settings& m_settings;
  std::array<std::string, clip_folder_slots> m_folders;
  int m_slot;
};

// All checks; stops at the first that forbids the build.
CheckResult check_build(Workspace& workspace, Prompts& prompts, Progress& progress,
                        const BuildServices& services, CheckScope scope = CheckScope::all);

// The single checks, in the order in which check_build makes them.
CheckResult check_outputs_chosen(const Workspace& workspace, Prompts& prompts);
CheckResult check_clip_folder(Workspace& workspace, Prompts& prompts);
CheckResult check_names(const Workspace& workspace, Prompts& prompts);
CheckResult check_mp_elevation(const Workspace& workspace, Prompts& prompts);
CheckResult check_tiles(const Workspace& workspace, Prompts& prompts);
CheckResult check_style(Workspace& workspace, Prompts& prompts, Progress& progress,
                        const BuildServices& services, CheckScope scope);
CheckResult check_typ_and_tools(const Workspace& workspace, Prompts& prompts);
CheckResult check_input_map(const Workspace& workspace, Prompts& prompts);
CheckResult check_identity(Workspace& workspace, Prompts& prompts, Progress& progress,
                           const BuildServices& services);
CheckResult check_elevation(const Workspace& workspace, Prompts& prompts);
CheckResult check_transparency(const Workspace& workspace, Prompts& prompts);
CheckResult check_input_size(const Workspace& workspace, Prompts& prompts);

}  // namespace ferrowen
