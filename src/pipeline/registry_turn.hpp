// Changes to the registry, one program at a time: several program folders may share one registry.
#pragma once

#include <chrono>

#include "base/prompts.hpp"
#include "base/status.hpp"
#include "platform/system.hpp"

namespace ferrowen {

// Held while the object lives, for the programs of one user.
class RegistryTurn {
 public:
  // Waits until it is this program's turn. The error tells that another one does not end, or that the person
  // wants to stop.
  Status take(Progress& progress, std::chrono::milliseconds longest = std::chrono::minutes(3));

 private:
  platform::InstanceLock m_lock;
};

}  // namespace ferrowen
