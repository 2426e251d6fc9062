#include "platform/paths.hpp"

#include <system_error>

namespace ferrowen::platform {
namespace {

constexpr std::string_view separators = separator == '\\' ? "\\/" : "/";

bool is_separator(char character) { return separators.find(character) != std::string_view::npos; }

// Length of the part that no cutting may shorten: "/", "C:\", "C:".
std::size_t root_length(std::string_view path) {
  const bool has_drive = separator == '\\' && path.size() >= 2 && path[1] == ':';
  const std::size_t drive = has_drive ? 2 : 0;
  return drive < path.size() && is_separator(path[drive]) ? drive + 1 : drive;
}

}  // namespace

std::string join(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && !is_separator(path.back())) path += separator;
  return path.append(name);
}

std::string folder_of(std::string_view path) {
  const std::size_t root = root_length(path);
  const std::size_t last = path.find_last_of(separators);
  if (last == std::string_view::npos || last < root) return std::string(path.substr(0, root));
  return std::string(path.substr(0, last));
}

std::string name_of(std::string_view path) {
  const std::size_t last = path.find_last_of(separators);
  if (last != std::string_view::npos) return std::string(path.substr(last + 1));
  return std::string(path.substr(root_length(path)));
}

std::string shared_data_file(const std::string& name) {
  const std::string program_folder = folder_of(executable_path());
  const std::string share = join("share", "ferrowen");
  // The own share folder comes first: where the program keeps its files beside itself, those of the same
  // name beside the executable are the person's.
  for (const std::string& folder :
       {join(program_folder, share), program_folder, join(folder_of(program_folder), share)}) {
    std::string path = join(folder, name);
    std::error_code error;
    if (std::filesystem::exists(file_system_path(path), error)) return path;
  }
  return "";
}

}  // namespace ferrowen::platform
