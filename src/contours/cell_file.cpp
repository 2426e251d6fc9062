#include "contours/cell_file.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/files.hpp"
#include "base/text.hpp"
#include "base/zip_archive.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view endings[] = {".hgt", ".zip", ".hgt.zip"};
constexpr std::uint64_t largest_archive = 256ULL << 20U;  // a cell packs to a tenth of this at worst

std::string_view name_in_archive(std::string_view path) {
  const std::size_t folder_end = path.find_last_of("/\\");
  return folder_end == std::string_view::npos ? path : path.substr(folder_end + 1);
}

}  // namespace

std::string find_cell_file(const std::string& folder, Cell cell) {
  for (const std::string_view ending : endings) {
    std::string path = platform::join(folder, cell_name(cell) + std::string(ending));
    if (file_exists(path)) return path;
  }
  const std::vector<std::string> names = list_files(folder, {""});
  for (const std::string_view ending : endings) {
    const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
      return equal_ignoring_case(name, cell_name(cell) + std::string(ending));
    });
    if (found != names.end()) return platform::join(folder, *found);
  }
  return "";
}

Result<std::string> cell_in_archive(std::string_view archive, Cell cell) {
  const Result<std::vector<ZipEntry>> entries = list_zip(archive);
  if (!entries.ok()) return failed<std::string>(entries.error);
  std::string other;
  for (const ZipEntry& entry : entries.value) {
    const std::string_view name = name_in_archive(entry.name);
    if (!ends_with_ignoring_case(name, ".hgt")) continue;
    if (equal_ignoring_case(name, cell_name(cell) + ".hgt"))
      return unpack_zip_entry(archive, entry, largest_hgt);
    other = name;
  }
  return failed<std::string>("holds no " + cell_name(cell) + ".hgt" +
                             (other.empty() ? "" : ", but " + other));
}

Result<HeightGrid> load_cell(const std::string& path, Cell cell) {
  const auto fail = [&](const std::string& reason) { return failed<HeightGrid>(path + ": " + reason); };
  const bool packed = ends_with_ignoring_case(path, ".zip");
  Result<std::string> bytes = read_file(path, packed ? largest_archive : largest_hgt);
  if (!bytes.ok()) return failed<HeightGrid>(bytes.error);
  if (packed) bytes = cell_in_archive(bytes.value, cell);
  if (!bytes.ok()) return fail(bytes.error);
  Result<HeightGrid> grid = parse_hgt(bytes.value);
  return grid.ok() ? grid : fail(grid.error);
}

}  // namespace ferrowen
