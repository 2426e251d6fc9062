#include "elevation/dem_arguments.hpp"

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view line_joint = "\x1f";  // stands for CR LF in stored options

// Without its "--", wherever they stand, and with a line end behind the last line.
std::string as_argument_lines(std::string_view options) {
  const std::string lines = with_crlf(replace_all(options, line_joint, crlf));
  std::string text = replace_all(lines, "--", "");
  if (trim(text).empty()) return "";
  if (!text.ends_with(crlf)) text += crlf;
  return text;
}

}  // namespace

std::string dem_arguments_text(std::string_view dem_options, const std::vector<std::string>& block,
                               std::string_view hgt_folder, std::string_view areas_poly) {
  std::string text = as_argument_lines(dem_options) + as_argument_lines(join_texts(block, crlf));
  text.append("dem=").append(hgt_folder).append(crlf);
  if (!areas_poly.empty()) text.append(crlf).append("dem-poly=").append(areas_poly).append(crlf);
  return text;
}

}  // namespace ferrowen
