#include "app/recent_files.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

bool same_path(std::string_view left, std::string_view right) {
  return platform::names_ignore_case ? equal_ignoring_case(left, right) : left == right;
}

// A name that the settings cannot keep on one line of the list.
bool cannot_be_kept(std::string_view path) {
  return path.find_first_of(std::string_view("\r\n\x1f\0", 4)) != std::string_view::npos;
}

void keep(Settings& settings, const std::vector<std::string>& files) {
  settings.recent_files = join_texts(files, crlf);
}

}  // namespace

std::vector<std::string> kept_recent_files(const Settings& settings) {
  std::vector<std::string> files = split_lines(settings.recent_files);
  std::erase_if(files, [](const std::string& path) { return trim(path).empty(); });
  if (files.size() > most_recent_files) files.resize(most_recent_files);
  return files;
}

void add_recent_file(Settings& settings, const std::string& path) {
  if (trim(path).empty() || cannot_be_kept(path)) return;
  const std::string whole = platform::absolute(path);
  remove_recent_file(settings, whole);
  std::vector<std::string> files = kept_recent_files(settings);
  files.insert(files.begin(), whole);
  if (files.size() > most_recent_files) files.resize(most_recent_files);
  keep(settings, files);
}

void remove_recent_file(Settings& settings, std::string_view path) {
  std::vector<std::string> files = kept_recent_files(settings);
  std::erase_if(files, [&](const std::string& file) { return same_path(file, path); });
  keep(settings, files);
}

void clear_recent_files(Settings& settings) { settings.recent_files.clear(); }

std::vector<std::string> recent_files(const Settings& settings) {
  std::vector<std::string> files = kept_recent_files(settings);
  std::erase_if(files, [](const std::string& path) { return !file_exists(path); });
  return files;
}

}  // namespace ferrowen
