// Files of styles: on the disk, or inside mkgmap.jar, whose own styles are named as if the archive were a
// folder
// ("/usr/share/mkgmap/mkgmap.jar/styles/default/lines"). The archive is opened when something in it is asked
// for.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "base/status.hpp"
#include "base/zip_archive.hpp"

namespace ferrowen {

class StyleSource {
 public:
  // The path of the archive may be "": nothing is known of mkgmap's own styles then.
  explicit StyleSource(std::string mkgmap_jar) : m_jar(std::move(mkgmap_jar)) {}

  // Anything there that is no folder: what cannot be read is told by `read`.
  bool has_file(const std::string& path);
  bool has_folder(const std::string& path);
  Result<std::string> read(const std::string& path);
  // The folder of one of mkgmap's own styles; "" when it has none of that name.
  std::string built_in(const std::string& style);
  // The archive cannot be looked into, and mkgmap has a style of that name.
  bool is_closed_book(const std::string& style);
  // Why an archive that is there could not be looked into, with its path; known once that was tried.
  [[nodiscard]] const std::string& problem() const { return m_problem; }

 private:
  // The name inside the archive; "" for paths on the disk.
  [[nodiscard]] std::string entry_name(const std::string& path) const;
  // The archive's files by their names.
  const std::map<std::string, ZipEntry>& entries();

  std::string m_jar, m_bytes, m_problem;
  std::optional<std::map<std::string, ZipEntry>> m_entries;
};

}  // namespace ferrowen
