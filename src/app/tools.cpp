#include "app/tools.hpp"

#include <initializer_list>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

#ifdef _WIN32
constexpr std::string_view path_list_separator = ";";
#else
constexpr std::string_view path_list_separator = ":";
#endif

std::string search_path() { return platform::environment("PATH").value_or(""); }

// A Java archive: where the system's packages put it, else in a folder of PATH.
std::string find_jar(const std::string& package, const std::string& name) {
  std::vector<std::string> folders = {"/usr/share/" + package, "/usr/share/java",
                                      "/usr/local/share/" + package, "/opt/" + package};
  for (std::string& folder : split(search_path(), path_list_separator))
    folders.push_back(std::move(folder));
  for (const std::string& folder : folders) {
    std::string path = platform::join(folder, name);
    if (!folder.empty() && file_exists(path)) return platform::absolute(path);
  }
  return "";
}

std::string first_program(std::initializer_list<const char*> names) {
  for (const char* name : names) {
    if (std::string path = platform::find_program(name); !path.empty()) return path;
  }
  return "";
}

// The contour tool comes with the program.
std::string own_contour_tool() {
#ifdef _WIN32
  const std::string name = "ferrowen-contours.exe";
#else
  const std::string name = "ferrowen-contours";
#endif
  std::string beside = platform::join(platform::folder_of(platform::executable_path()), name);
  return file_exists(beside) ? beside : first_program({"ferrowen-contours"});
}

void fill(std::string& setting, const std::string& found) {
  if (setting.empty()) setting = found;
}

}  // namespace

void find_tools(Settings& settings) {
  if (settings.mkgmap_jar.empty()) fill(settings.mkgmap_jar, find_jar("mkgmap", "mkgmap.jar"));
  if (settings.splitter_jar.empty()) fill(settings.splitter_jar, find_jar("mkgmap-splitter", "splitter.jar"));
  if (settings.osmconvert.empty()) fill(settings.osmconvert, first_program({"osmconvert", "osmconvert64"}));
  if (settings.seven_zip.empty()) fill(settings.seven_zip, first_program({"7z", "7zz", "7za"}));
  if (settings.makensis.empty()) fill(settings.makensis, first_program({"makensis"}));
  if (settings.contour_tool.empty()) fill(settings.contour_tool, own_contour_tool());
}

std::vector<std::pair<std::string, std::string>> tool_environment(const Settings& settings) {
  if (settings.java.empty()) return {};
  const std::string folder = platform::folder_of(settings.java);
  if (folder.empty()) return {};
  return {{"PATH", folder + std::string(path_list_separator) + search_path()}};
}

}  // namespace ferrowen
