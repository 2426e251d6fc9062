// Time of every check of the Style Doctor on a style: reading its rule files from the disk, cutting them into
// rules, all checks against the TYP file. Then the same on 10 and 100 copies of its rules in one file each.
// Arguments: STYLE_FOLDER TYP_FILE. Prints one line per size: copies, bytes, milliseconds, rows.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <vector>

#include "base/files.hpp"
#include "platform/paths.hpp"
#include "styletools/style_doctor.hpp"
#include "styletools/typ_reader.hpp"

using namespace ferrowen;

namespace {

std::size_t examine(const StyleLocation& style, const std::string& typ_path) {
  const Result<TypFile> typ = loadbinary(typ_path);
  if (!typ.ok()) return 0;
  std::size_t rows = 0;
  for (const RuleKind kind : rule_kinds) {
    const LoadedStyle loaded = load_style(style, kind);
    for (const DoctorCheck check : doctor_checks)
      rows += run_check(check, loaded, &typ.value).rows.size();
  }
  return rows;
}

// The rule files and their includes, each rule so many times; include lines once.
std::size_t write_copies(const StyleLocation& style, const std::string& folder, int copies) {
  std::size_t bytes = 0;
  for (const RuleKind kind : rule_kinds) {
    const StyleText text = chknodata(style, kind);
    std::string all;
    for (int copy = 0; copy < copies; ++copy) {
      for (const StyleLine& line : text.lines)
        if (chk_include(line.text).empty() && line.text != "<finalize>") all += line.text + "\n";
    }
    bytes += all.size();
    if (!safe_write(platform::join(folder, rule_file_name(kind)), all).ok()) return 0;
  }
  return bytes;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: bench-doctor STYLE_FOLDER TYP_FILE\n";
    return 2;
  }
  const StyleLocation style = style_in_folder(arguments[1]);
  const std::string folder =
      platform::path_text(std::filesystem::temp_directory_path() / "ferrowen-bench-doctor");
  if (!make_folder(folder).ok()) return 1;
  for (const int copies : {0, 1, 10, 100}) {
    const std::size_t bytes = copies == 0 ? 0 : write_copies(style, folder, copies);
    const StyleLocation place = copies == 0 ? style : StyleLocation{folder, folder};
    std::vector<double> times;
    std::size_t rows = 0;
    for (int run = 0; run < (copies < 100 ? 11 : 3); ++run) {
      const auto start = std::chrono::steady_clock::now();
      rows = examine(place, arguments[2]);
      const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
      times.push_back(time.count());
    }
    if (rows == 0) return 1;
    std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                     times.end());
    std::cout << copies << " " << bytes << " " << times[times.size() / 2] << " " << rows << "\n";
  }
  std::filesystem::remove_all(platform::file_system_path(folder));
  return 0;
}
