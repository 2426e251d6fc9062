#include "mp/gpx2mp.hpp"

#include "base/text.hpp"
#include "mp/distance.hpp"
#include "mp/gpx_reader.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t points_per_step = 100;  // between two looks at the events

// One file.
class GpxConversion {
 public:
  GpxConversion(ConversionJob& job, GpxChoices& choices, const GpxFile& file)
      : m_job(job), m_choices(choices), m_file(file) {}

  ConversionEnd convert() {
    if (!m_file.error.empty()) return refuse(m_job.name + " " + m_file.error);
    const std::string text = chosen_label();
    const std::string label = m_job.label(text, m_choices.label.empty() ? m_file.name_line : 0);
    if (m_file.segments.empty()) return refuse("Cannot find required data");
    for (const GpxSegment& segment : m_file.segments) {
      if (!segment.has_point_tags) {
        tell_without_coordinates();
      } else if (segment.count == 0) {
        m_job.tell_problems();
        refuse("No coordinates found");
        // What was read before it is good all the same.
        const MpCounts& counts = m_job.writer.counts();
        const bool has_written = counts.lines + counts.polygons + counts.pois > 0;
        return has_written ? ConversionEnd::stopped_by_check : ConversionEnd::bad_input;
      } else if (!write_segment(segment, label)) {
        break;  // stopped, or the disk is full: the caller knows
      }
    }
    return ConversionEnd::done;
  }

 private:
  ConversionEnd refuse(std::string_view text) {
    m_job.prompts.tell(text, Icon::warning);
    return ConversionEnd::bad_input;
  }

  void tell_without_coordinates() {
    if (!m_is_told) m_job.prompts.tell("Can't locate coordinates", Icon::warning);
    m_is_told = true;
  }

  // Whoever gave a label is not asked for another one, which would have no effect.
  std::string chosen_label() {
    if (!m_choices.label.empty() || !m_choices.offers_name || !m_file.name) return m_choices.label;
    const std::string question = "Found label:\r\n\r\n'" + *m_file.name + "'\r\n\r\nUse as label?";
    return m_job.prompts.ask(question) == Answer::yes ? *m_file.name : "";
  }

  bool write_segment(const GpxSegment& segment, const std::string& label) {
    const auto first = m_file.points.begin() + static_cast<std::ptrdiff_t>(segment.first);
    write_point(m_choices.start_type, "Start", *first);
    write_point(m_choices.finish_type, "Finish", *(first + static_cast<std::ptrdiff_t>(segment.count - 1)));
    LineLength length;
    if (!write_line(segment, label, length)) return false;
    m_job.writer.count_coordinates(segment.count);
    if (const auto half_way = length.half_way())
      write_point(m_choices.half_way_type, "half way", *(first + static_cast<std::ptrdiff_t>(*half_way)));
    return true;
  }

  void write_point(const std::string& type_box, std::string_view label, const Coordinate& point) {
    if (!m_choices.writes_points) return;
    if (const auto type = m_job.point_type(type_box)) m_job.writer.point_mp(*type, label, point);
  }

  bool write_line(const GpxSegment& segment, const std::string& label, LineLength& length) {
    const MpKind kind = m_choices.is_polygon ? MpKind::polygon : MpKind::line;
    const std::optional<std::string> type = m_job.line_type(m_choices.line_type, kind);
    if (type) m_job.writer.begin_line({*type, label, m_choices.is_polygon});
    auto point = m_file.points.begin() + static_cast<std::ptrdiff_t>(segment.first);
    for (std::size_t i = 1; i <= segment.count; ++i, ++point) {
      if (type) m_job.writer.add_to_line(*point);
      if (m_choices.writes_points) length.add(position_of(*point));
      if ((i % points_per_step == 0 || i == segment.count) && !m_job.keep_going(i, segment.count))
        return false;
    }
    if (type) static_cast<void>(m_job.writer.end_line());
    return true;
  }

  ConversionJob& m_job;
  GpxChoices& m_choices;
  const GpxFile& m_file;
  bool m_is_told = false;
};

}  // namespace

SourceFormat gpx_format(GpxChoices& choices) {
  return {".gpx", "Not a gpx file.", PaddedValue::longitude, choices.writes_points,
          [&choices](ConversionJob& job, std::string& bytes) {
            const GpxFile file = read_gpx(bytes);
            job.add_problems(file.problems);
            return GpxConversion(job, choices, file).convert();
          }};
}

Conversion gpx2mp(Workspace& workspace, Prompts& prompts, Progress& progress,
                  const std::vector<std::string>& files, GpxChoices& choices) {
  return convert_files(workspace, prompts, progress, files, gpx_format(choices));
}

}  // namespace ferrowen
