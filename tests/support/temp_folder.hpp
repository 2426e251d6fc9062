// A folder of its own for one test, removed with everything in it at the end.
#pragma once

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/paths.hpp"

namespace ferrowen::test {

class TempFolder {
 public:
  // `name` becomes a part of the folder's name, to test with blanks or letters beyond ASCII in every path.
  explicit TempFolder(std::string_view name = "test") {
    std::random_device random;
    const std::string unique = std::to_string(random()) + std::to_string(random());
    m_path = platform::join(platform::path_text(std::filesystem::temp_directory_path()),
                            "ferrowen-" + unique + "-" + std::string(name));
    REQUIRE(std::filesystem::create_directories(platform::file_system_path(m_path)));
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(platform::file_system_path(m_path), ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return m_path; }
  // Path of a file or folder in it, with this system's separator.
  [[nodiscard]] std::string operator/(std::string_view name) const {
    std::string path = platform::join(m_path, name);
    std::replace(path.begin() + static_cast<std::ptrdiff_t>(m_path.size()), path.end(), '/',
                 platform::separator);
    return path;
  }
  // Writes a file (with the folders above it) and returns its path.
  // NOLINTNEXTLINE(modernize-use-nodiscard): most tests want the file alone and know its path
  std::string write(std::string_view name, std::string_view bytes) const {
    std::string path = *this / name;
    const std::filesystem::path native = platform::file_system_path(path);
    std::filesystem::create_directories(native.parent_path());
    std::ofstream file(native, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    REQUIRE(file.good());
    return path;
  }

 private:
  std::string m_path;
};

}  // namespace ferrowen::test
