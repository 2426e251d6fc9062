#include "mp/kml2mp.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "mp/kml_reader.hpp"
#include "mp/markup.hpp"

namespace ferrowen {

namespace {

constexpr std::size_t placemarks_per_step = 100;  // between two looks at the events
constexpr std::size_t longest_kept = 20000;       // bytes of coordinates that are shown
constexpr std::size_t points_per_step = 10000;    // within one long path

void make_lower_case(std::string& text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
}

// One file.
class KmlConversion {
 public:
  KmlConversion(ConversionJob& job, KmlChoices& choices, const std::string& text, const KmlFile& file)
      : m_job(job), m_choices(choices), m_text(text), m_file(file), m_problems(text) {}

  ConversionEnd convert() {
    if (!m_file.error.empty()) return refuse(m_job.name + " " + m_file.error);
    if (!m_file.has_placemarks) return refuse("Cannot find required data");
    m_given_label = m_job.label(m_choices.label);
    std::size_t done = 0;
    for (const KmlPlacemark& placemark : m_file.placemarks) {
      if (!write(placemark)) break;
      const bool is_step = ++done % placemarks_per_step == 0 || done == m_file.placemarks.size();
      if (is_step && !m_job.keep_going(done, m_file.placemarks.size())) break;
    }
    m_job.add_problems(m_problems);
    return ConversionEnd::done;
  }

 private:
  ConversionEnd refuse(std::string_view text) {
    m_job.prompts.tell(text, Icon::warning);
    return ConversionEnd::bad_input;
  }

  std::string label_of(const KmlPlacemark& placemark) {
    if (!m_given_label.empty() || placemark.label.empty()) return m_given_label;
    return m_job.label(file_text_as_utf8(placemark.label, m_text), line_of(placemark));
  }

  // Placemarks come in their order: each line is counted once.
  std::size_t line_of(const KmlPlacemark& placemark) {
    const auto at = static_cast<std::size_t>(placemark.coordinates.data() - m_text.data());
    const std::string_view passed = m_text.substr(m_counted_to, at - m_counted_to);
    m_line += static_cast<std::size_t>(std::count(passed.begin(), passed.end(), '\n'));
    m_counted_to = at;
    return m_line;
  }

  // The next good tuple; nothing at the end.
  bool next_point(std::string_view& rest, Coordinate& point) {
    for (std::string_view tuple = next_tuple(rest); !tuple.empty(); tuple = next_tuple(rest)) {
      const std::string problem = read_tuple(tuple, point, m_rewritten);
      if (problem.empty()) return true;
      m_problems.add_at(static_cast<std::size_t>(tuple.data() - m_text.data()), problem);
    }
    return false;
  }

  // False when the conversion must end.
  bool write(const KmlPlacemark& placemark) {
    std::string_view rest = placemark.coordinates;
    Coordinate first;
    Coordinate second;
    if (!next_point(rest, first)) {
      m_problems.add_at(static_cast<std::size_t>(placemark.coordinates.data() - m_text.data()),
                        "a placemark without any good coordinates");
      return true;
    }
    if (next_point(rest, second)) {
      keep_coordinates(placemark);
      return write_line(placemark, first, second, rest);
    }
    if (!m_choices.writes_points) return true;
    keep_coordinates(placemark);
    write_point(placemark, first);
    return true;
  }

  void keep_coordinates(const KmlPlacemark& placemark) {
    std::string& kept = m_choices.converted_coordinates;
    if (kept.size() < longest_kept) kept.append(trim(placemark.coordinates.substr(0, longest_kept))) += '\n';
  }

  void write_point(const KmlPlacemark& placemark, const Coordinate& point) {
    const std::optional<std::string> type = m_job.point_type(m_choices.point_type);
    if (!type) return;
    m_job.writer.single_point(*type, label_of(placemark), point);
    m_job.writer.count_coordinates(1);
  }

  bool write_line(const KmlPlacemark& placemark, const Coordinate& first, const Coordinate& second,
                  std::string_view rest) {
    const std::optional<std::string> type = m_job.line_type(m_choices.line_type, MpKind::line);
    if (!type) return true;
    m_job.writer.begin_line({*type, label_of(placemark), false});
    m_job.writer.add_to_line(first);
    m_job.writer.add_to_line(second);
    std::size_t count = 2;
    for (Coordinate point; next_point(rest, point);) {
      m_job.writer.add_to_line(point);
      const auto passed = static_cast<std::size_t>(rest.data() - placemark.coordinates.data());
      if (++count % points_per_step == 0 && !m_job.keep_going(passed, placemark.coordinates.size()))
        return false;
    }
    static_cast<void>(m_job.writer.end_line());
    m_job.writer.count_coordinates(count);
    return true;
  }

  ConversionJob& m_job;
  KmlChoices& m_choices;
  std::string_view m_text;
  const KmlFile& m_file;
  ProblemList m_problems;
  RewrittenTexts m_rewritten;
  std::string m_given_label;
  std::size_t m_line = 1, m_counted_to = 0;
};

}  // namespace

SourceFormat kml_format(KmlChoices& choices) {
  return {".kml", "Not a kml file.", PaddedValue::latitude, choices.writes_points,
          [&choices](ConversionJob& job, std::string& bytes) {
            choices.converted_coordinates.clear();
            make_lower_case(bytes);
            const KmlFile file = read_kml(bytes);
            job.add_problems(file.problems);
            return KmlConversion(job, choices, bytes, file).convert();
          }};
}

Conversion kml2mp(Workspace& workspace, Prompts& prompts, Progress& progress,
                  const std::vector<std::string>& files, KmlChoices& choices) {
  return convert_files(workspace, prompts, progress, files, kml_format(choices));
}

}  // namespace ferrowen
