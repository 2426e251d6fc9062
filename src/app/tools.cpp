#include "app/tools.hpp"

#include "app/tool_places.hpp"
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

void find_tools(Settings& settings) {
  const ToolPlaces places = places_of_this_machine(settings.program_folder);
  const auto fill = [&](std::string& setting, std::string_view name) {
    if (setting.empty()) setting = find_tool(name, places);
  };
  // Blank stands for the one in PATH.
  if (platform::find_program("java").empty()) fill(settings.java, "java");
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
