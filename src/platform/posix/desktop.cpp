#include "platform/desktop.hpp"

#include <fcntl.h>

#include "platform/error_text.hpp"
#include "platform/paths.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/spawn.hpp"

namespace ferrowen::platform {
namespace {

bool has_display() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY"})
    if (!environment(name).value_or("").empty()) return true;
  return false;
}

// An address keeps its form; a file name gets its folder, so that one with a leading "-" is no option.
std::string full_form(const std::string& path_or_address) {
  const bool is_address =
      path_or_address.find("://") != std::string::npos || path_or_address.starts_with("mailto:");
  return is_address ? path_or_address : absolute(path_or_address);
}

}  // namespace

std::string open_with_desktop(const std::string& path_or_address) {
  if (!has_display()) return "There is no display (neither DISPLAY nor WAYLAND_DISPLAY is set)";
  const std::string opener = find_program("xdg-open");
  if (opener.empty()) return "xdg-open is not installed";
  const Descriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
  if (!nowhere.is_open()) return last_error_text();
  SpawnPlan plan;
  plan.words = {opener, full_form(path_or_address)};
  plan.environment = changed_environment({});
  plan.output = nowhere.get();
  plan.detached = true;
  return spawn(plan).error;
}

void let_others_come_forward() {}

}  // namespace ferrowen::platform
