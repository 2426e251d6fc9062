// dem.args: the DEM options of a build.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ferrowen {

// Text of dem.args: the options without "--", then "dem=" and, when `areas_poly` is not empty, "dem-poly=".
// `block` are the lines of the options text's own <dem> block. CR LF.
std::string dem_arguments_text(std::string_view dem_options, const std::vector<std::string>& block,
                               std::string_view hgt_folder, std::string_view areas_poly);

}  // namespace ferrowen
