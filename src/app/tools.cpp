#include "app/tools.hpp"

#include "base/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

#ifdef _WIN32
constexpr std::string_view path_list_separator = ";";
#else
constexpr std::string_view path_list_separator = ":";
#endif

std::string search_path() { return platform::environment("PATH").value_or(""); }

// The contour tool comes with the program.
std::string own_contour_tool() {
#ifdef _WIN32
  const std::string name = "ferrowen-contours.exe";
#else
  const std::string name = "ferrowen-contours";
#endif
  std::string beside = platform::join(platform::folder_of(platform::executable_path()), name);
  return file_exists(beside) ? beside : platform::find_program("ferrowen-contours");
}

}  // namespace

void find_tools(Settings& settings) { find_tools(settings, places_of_this_machine(settings.program_folder)); }

void find_tools(Settings& settings, const ToolPlaces& places) {
  const auto is_gone = [&](const std::string& path, std::string_view name) {
    return !file_exists(path) && is_usual_place(name, path, places);
  };
  const auto fill = [&](std::string& setting, std::string_view name) {
    if (!setting.empty() && !is_gone(setting, name)) return;
    if (std::string found = find_tool(name, places); !found.empty()) setting = std::move(found);
  };
  // Blank stands for the one in PATH.
  if (places.program_in_path("java").empty())
    fill(settings.java, "java");
  else if (is_gone(settings.java, "java"))
    settings.java.clear();
  fill(settings.mkgmap_jar, "mkgmap");
  fill(settings.splitter_jar, "splitter");
  fill(settings.osmconvert, "osmconvert");
  fill(settings.seven_zip, "7z");
  fill(settings.makensis, "makensis");
  if (settings.contour_tool.empty()) settings.contour_tool = own_contour_tool();
}

std::vector<std::pair<std::string, std::string>> tool_environment(const Settings& settings) {
  if (settings.java.empty()) return {};
  const std::string folder = platform::folder_of(settings.java);
  if (folder.empty()) return {};
  return {{"PATH", folder + std::string(path_list_separator) + search_path()}};
}

}  // namespace ferrowen
