// Options of a command line or a script change the settings record for one run only: the stored values come
// back before the record is saved, while everything else that the run changed in it is kept.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "app/workspace.hpp"
#include "base/status.hpp"

namespace ferrowen {

class RunSettings {
 public:
  // Remembers the record as it is now.
  explicit RunSettings(Workspace& workspace) : m_workspace(workspace), m_stored(workspace.settings) {}

  // Sets a field of the settings table, by its name, for this run. The error says what is wrong with the
  // text; nothing is changed then.
  Status set(std::string_view name, std::string_view text);
  [[nodiscard]] bool is_overridden(std::string_view name) const { return m_overridden.contains(name); }
  // The record from before the run's options.
  [[nodiscard]] const Settings& stored() const { return m_stored; }

  // Puts the stored values of the overridden fields back.
  void put_back();
  // The same, and saves the record. A run that went well saves the automatic backup too.
  Status save(bool run_was_good);

 private:
  Workspace& m_workspace;
  Settings m_stored;
  std::set<std::string, std::less<>> m_overridden;
};

}  // namespace ferrowen
