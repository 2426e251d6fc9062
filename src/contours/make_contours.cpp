#include "contours/make_contours.hpp"

#include <cmath>

#include "base/files.hpp"
#include "contours/cell_file.hpp"
#include "contours/osm_writer.hpp"

namespace ferrowen {

namespace {

LineRules rules_of(const ContourOptions& options, int samples) {
  const double spacing = static_cast<double>(units_per_degree) / (samples - 1);
  return {options.least_points, static_cast<std::int32_t>(std::ceil(options.least_extent * units_per_degree)),
          options.tolerance * spacing};
}

Result<std::string> source_file(const ContourJob& job) {
  if (!folder_exists(job.source)) return {job.source, ""};
  std::string path = find_cell_file(job.source, job.cell);
  if (!path.empty()) return {std::move(path), ""};
  const std::string name = cell_name(job.cell);
  return failed<std::string>(name + ".hgt: not found in " + job.source + ", nor " + name + ".zip or " + name +
                             ".hgt.zip");
}

}  // namespace

ContourResult make_contours(const ContourJob& job, const ContourOptions& options,
                            const std::function<bool()>& stopped) {
  const Result<std::string> source = source_file(job);
  if (!source.ok()) return {ContourOutcome::unreadable_cell, source.error, {}};
  const Result<HeightGrid> grid = load_cell(source.value, job.cell);
  if (!grid.ok()) return {ContourOutcome::unreadable_cell, grid.error, {}};
  const Result<ContourLines> contours =
      trace_contours(grid.value, job.cell, options.levels, rules_of(options, grid.value.size));
  if (!contours.ok()) return {ContourOutcome::failed, source.value + ": " + contours.error, {}};
  if (const Status written = write_osm_file(job.output, contours.value, job.cell, options.classes, stopped);
      !written.ok())
    return {ContourOutcome::failed, written.error, {}};
  return {ContourOutcome::done,
          "",
          {source.value, grid.value.size, contours.value.lines.size(), contours.value.points.size(),
           all_void(grid.value)}};
}

}  // namespace ferrowen
