#include "app/tool_places.hpp"

#include <algorithm>
#include <charconv>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

#ifdef _WIN32
constexpr bool is_windows = true;
constexpr std::string_view path_list_separator = ";";
#else
constexpr bool is_windows = false;
constexpr std::string_view path_list_separator = ":";
#endif
constexpr std::string_view any = "*";

struct SoughtTool {
  std::string_view setting;
  std::vector<std::string> names;     // best first; without the ".exe" of Windows
  std::vector<std::string> setups;    // where Windows setups put it, below the programs' folder
  std::vector<std::string> packages;  // folders of Linux packages
  bool in_plugs = false;              // comes without a setup: unpacked into "plugs" or beside the program
};

const SoughtTool* find_sought(std::string_view setting) {
  static const std::vector<SoughtTool> tools = {
      {"java",
       {"java"},
       {"Java/*/bin", "Eclipse Adoptium/*/bin", "Microsoft/jdk*/bin", "Zulu/*/bin", "Amazon Corretto/*/bin"},
       {}},
      {"mkgmap",
       {"mkgmap.jar"},
       {},
       {"/usr/share/mkgmap", "/usr/share/java", "/usr/local/share/mkgmap", "/opt/mkgmap"},
       true},
      {"splitter",
       {"splitter.jar"},
       {},
       {"/usr/share/mkgmap-splitter", "/usr/share/java", "/usr/local/share/mkgmap-splitter",
        "/opt/mkgmap-splitter"},
       true},
      {"osmconvert", {"osmconvert", "osmconvert64"}, {}, {}, true},
      {"7z", {"7z", "7zz", "7za"}, {"7-Zip"}, {}},
      {"makensis", {"makensis"}, {"NSIS"}, {}},
  };
  const auto found = std::find_if(tools.begin(), tools.end(),
                                  [&](const SoughtTool& tool) { return tool.setting == setting; });
  return found == tools.end() ? nullptr : &*found;
}

bool is_archive(std::string_view name) { return name.ends_with(".jar"); }

std::string file_name_of(const std::string& name, const ToolPlaces& places) {
  return places.windows && !is_archive(name) ? name + ".exe" : name;
}

// `below` is written with "/".
std::string joined(const std::string& folder, std::string_view below) {
  std::string path = folder;
  for (const std::string& name : split(below, "/"))
    path = platform::join(path, name);
  return path;
}

std::vector<std::string> candidate_folders(const SoughtTool& tool, const ToolPlaces& places) {
  std::vector<std::string> folders;
  if (is_archive(tool.names.front())) {
    // On Windows such a path is on the current drive, where anybody may have put a file.
    if (!places.windows) folders = tool.packages;
    for (const std::string& folder : places.path_folders)
      if (platform::is_absolute(folder)) folders.push_back(folder);
  }
  if (tool.setting == "java" && platform::is_absolute(places.java_home))
    folders.push_back(platform::join(places.java_home, "bin"));
  for (const std::string& programs : places.program_files)
    for (const std::string& setup : tool.setups)
      folders.push_back(joined(programs, setup));
  if (!tool.in_plugs) return folders;
  if (!places.program_folder.empty()) {
    folders.push_back(joined(places.program_folder, "plugs"));
    folders.push_back(joined(places.program_folder, "plugs/*"));
  }
  if (!places.own_folder.empty()) folders.push_back(places.own_folder);
  return folders;
}

// The folders that a path with a "*" in one of its names stands for, newest first; a path without one itself.
std::vector<std::string> matching(const std::string& path) {
  const std::size_t star = path.find(any);
  if (star == std::string::npos) return {path};
  const std::string before = path.substr(0, star);
  const std::string folder = platform::folder_of(before);
  const std::string start = lower_ascii(platform::name_of(before));
  std::vector<std::string> names = list_folders(folder);
  std::erase_if(names, [&](const std::string& name) { return !lower_ascii(name).starts_with(start); });
  std::stable_sort(names.begin(), names.end(), is_newer_version);
  for (std::string& name : names)
    name = platform::join(folder, name) + path.substr(star + any.size());
  return names;
}

// True when `pattern` stands for this path: a "*" for the rest of one folder's name.
bool stands_for(std::string_view pattern, std::string_view path) {
  const std::size_t star = pattern.find(any);
  if (star == std::string_view::npos) return pattern == path;
  const std::string_view before = pattern.substr(0, star);
  const std::string_view behind = pattern.substr(star + any.size());
  if (!path.starts_with(before) || !path.ends_with(behind) || path.size() < before.size() + behind.size())
    return false;
  return path.substr(star, path.size() - before.size() - behind.size()).find(platform::separator) ==
         std::string_view::npos;
}

std::vector<unsigned long> numbers_of(std::string_view name) {
  std::vector<unsigned long> numbers;
  const char* const end = name.data() + name.size();
  for (const char* at = name.data(); at != end;) {
    unsigned long number = 0;
    const auto [behind, error] = std::from_chars(at, end, number);
    if (error == std::errc{}) numbers.push_back(number);
    at = behind == at ? at + 1 : behind;
  }
  return numbers;
}

}  // namespace

ToolPlaces places_of_this_machine(const std::string& program_folder) {
  ToolPlaces places;
  places.windows = is_windows;
  places.program_in_path = platform::find_program;
  places.path_folders = split(platform::environment("PATH").value_or(""), path_list_separator);
  places.java_home = platform::environment("JAVA_HOME").value_or("");
  places.program_folder = program_folder;
  places.own_folder = platform::folder_of(platform::executable_path());
  if (!is_windows) return places;
  for (const char* variable : {"ProgramFiles", "ProgramW6432", "ProgramFiles(x86)"}) {
    std::string folder = platform::environment(variable).value_or("");
    auto& known = places.program_files;
    if (platform::is_absolute(folder) && std::find(known.begin(), known.end(), folder) == known.end())
      known.push_back(std::move(folder));
  }
  return places;
}

std::vector<std::string> tool_candidates(std::string_view setting, const ToolPlaces& places) {
  const SoughtTool* tool = find_sought(setting);
  if (tool == nullptr) return {};
  std::vector<std::string> candidates;
  for (const std::string& folder : candidate_folders(*tool, places))
    for (const std::string& name : tool->names)
      candidates.push_back(platform::join(folder, file_name_of(name, places)));
  return candidates;
}

std::string find_tool(std::string_view setting, const ToolPlaces& places) {
  const SoughtTool* tool = find_sought(setting);
  if (tool == nullptr) return "";
  for (const std::string& name : tool->names) {
    if (is_archive(name)) continue;
    if (std::string path = places.program_in_path(name); !path.empty()) return path;
  }
  for (const std::string& candidate : tool_candidates(setting, places))
    for (const std::string& path : matching(candidate))
      if (file_exists(path) && !folder_exists(path)) return path;
  return "";
}

bool is_usual_place(std::string_view setting, const std::string& path, const ToolPlaces& places) {
  const auto folded = [&](const std::string& one) { return places.windows ? lower_ascii(one) : one; };
  const std::vector<std::string> candidates = tool_candidates(setting, places);
  return std::any_of(candidates.begin(), candidates.end(), [&](const std::string& candidate) {
    return stands_for(folded(candidate), folded(path));
  });
}

bool is_newer_version(std::string_view left, std::string_view right) {
  return numbers_of(left) > numbers_of(right);
}

}  // namespace ferrowen
