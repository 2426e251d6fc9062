// What the converters to Polish MP share: several files one after the other, types and labels checked,
// results in the folder "mps" of the program folder, progress, stop and summary.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "mp/mp_types.hpp"
#include "mp/mp_writer.hpp"
#include "mp/problem_list.hpp"

namespace ferrowen {

// How a conversion ended; the later, the worse.
enum class ConversionEnd : unsigned char { done, stopped_by_check, bad_input, failed, cancelled };

struct ConvertedFile {
  std::string input, output;
};

struct Conversion {
  ConversionEnd end = ConversionEnd::done;
  std::vector<ConvertedFile> files;        // written
  std::vector<std::string> not_converted;  // inputs that had no turn, or no result
  MpCounts counts;                         // of all files that were written
  bool has_foreign_letters = false;        // labels beyond ASCII: the build should name a code page
};

// "Lines:", "Polygons:" (only where there are some), "POIs:", "Coordinates:", one per line (CR LF).
std::string conversion_summary(const MpCounts& counts);
// The option of mkgmap that keeps the labels of these files as they are.
inline constexpr std::string_view label_code_page_option = "--code-page=1251";

// How the map of such files keeps its labels.
enum class LabelEncoding : unsigned char { unicode, code_page_1251 };
// Puts the choice into the options of the build.
void use_label_encoding(Settings& settings, LabelEncoding encoding);

// One source file while it is converted: what a format's routine writes with.
class ConversionJob {
 public:
  ConversionJob(std::string source_name, MpWriter& to, Prompts& person, Progress& bar)
      : name(std::move(source_name)), writer(to), prompts(person), progress(bar) {}

  // The types as they are written; nothing for an invalid one. Each complaint is told once. The type of a
  // line is shortened in its box.
  std::optional<std::string> line_type(std::string& type_box, MpKind kind);
  std::optional<std::string> point_type(const std::string& type_box);
  // The label's bytes; letters without a place in its code page become problems. `line` is where the label
  // stands in the file; 0 for one that a person has given.
  std::string label(std::string_view text, std::size_t line = 0);
  // Moves the bar and lets events in; false when the person wants an end, or the disk takes no more.
  bool keep_going(std::size_t done, std::size_t whole);
  void add_problems(const ProblemList& problems);
  // "There were errors:" with what was collected; nothing when there is nothing.
  void tell_problems();

  std::string name;  // of the file, without its folder
  MpWriter& writer;
  Prompts& prompts;
  Progress& progress;
  bool has_invalid_type = false, has_foreign_letters = false, was_stopped = false;

 private:
  friend class FileConverter;
  bool is_told(const std::string& text);

  // A label with letters that were written as "?".
  struct PoorLabel {
    std::string problem;
    std::size_t line = 0, count = 0;
  };
  void add_label_problems();

  std::vector<std::string> m_problems, m_told;
  std::vector<PoorLabel> m_poor_labels;
};

struct SourceFormat {
  std::string_view ending;   // ".gpx"
  std::string_view refusal;  // of a file with another ending
  PaddedValue padded = PaddedValue::longitude;
  bool writes_points = false;  // points were asked for
  // Writes the objects of one file. Its bytes may be changed.
  std::function<ConversionEnd(ConversionJob&, std::string& bytes)> convert;
};

Conversion convert_files(Workspace& workspace, Prompts& prompts, Progress& progress,
                         const std::vector<std::string>& files, const SourceFormat& format);
// The text that would be written for one file; nothing is told and no question asked. Empty when it has none.
std::string converted_text(const std::string& file, Progress& progress, const SourceFormat& format);

// Puts a result before the person's eyes; what is no MP file is refused.
void show_mp(Prompts& prompts, const std::string& path);

}  // namespace ferrowen
