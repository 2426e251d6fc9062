// The window program from its program folder to the first window: lock, settings, start-up.
#pragma once

#include <optional>
#include <string>

#include "app/workspace.hpp"
#include "platform/system.hpp"
#include "ui/held_prompts.hpp"

namespace ferrowen::ui {

class WindowSession {
 public:
  enum class Opened : unsigned char { ready, read_only, running_already };

  // `home` as from --home. read_only: the folder cannot be written or its settings cannot be read; the
  // program opens all the same and saves nothing.
  Opened open(const std::optional<std::string>& home);

  Workspace workspace;
  HeldPrompts notes;  // what there is to tell once a window is there

 private:
  bool take_lock();
  void read_settings();
  platform::InstanceLock m_lock;
  bool m_taken_by_other = false;
};

}  // namespace ferrowen::ui
