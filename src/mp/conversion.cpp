#include "mp/conversion.hpp"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "base/files.hpp"
#include "base/text.hpp"
#include "mp/mp_file.hpp"
#include "mp/mp_label.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view mp_ending = ".mp";
constexpr std::string_view mp_mark = "[IMG ID]";
constexpr std::size_t most_poor_labels = 26;  // the last one stands for all that follow

// For a look at a file before it is converted: nothing is said, every question is answered with No.
class SilentPrompts : public Prompts {
 public:
  void tell(std::string_view /*text*/, Icon /*icon*/) override {}
  Answer ask(std::string_view /*text*/, Buttons /*buttons*/, Icon /*icon*/) override { return Answer::no; }
  std::optional<std::string> choose_file(const FileQuestion& /*question*/) override { return std::nullopt; }
  std::optional<std::string> choose_folder(std::string_view /*title*/,
                                           const std::string& /*start*/) override {
    return std::nullopt;
  }
  void show_file(const std::string& /*path*/) override {}
};

std::string comparable(const std::string& path) {
  return platform::names_ignore_case ? lower_ascii(path) : path;
}

void add_counts(MpCounts& sum, const MpCounts& more) {
  sum.lines += more.lines;
  sum.polygons += more.polygons;
  sum.pois += more.pois;
  sum.coordinates += more.coordinates;
}

// A pipe or a device may have no end, or never begin.
Result<std::string> read_source(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_status status =
      std::filesystem::status(platform::file_system_path(path), error);
  const bool is_other = std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
                        !std::filesystem::is_directory(status);
  return is_other ? Result<std::string>{"", path + ": is no file"} : read_file(path);
}

bool has_objects(const MpCounts& counts) { return counts.lines + counts.polygons + counts.pois > 0; }

}  // namespace

std::string conversion_summary(const MpCounts& counts) {
  std::string summary = "Lines:" + std::to_string(counts.lines);
  if (counts.polygons > 0) summary.append(crlf).append("Polygons:" + std::to_string(counts.polygons));
  summary.append(crlf).append("POIs:" + std::to_string(counts.pois));
  return summary.append(crlf).append("Coordinates:" + std::to_string(counts.coordinates));
}

void use_label_encoding(Settings& settings, LabelEncoding encoding) {
  settings.unicode = encoding == LabelEncoding::unicode;
  std::vector<std::string> lines = split_lines(settings.use_options_text ? settings.options_text : "");
  std::erase_if(lines, [](const std::string& line) { return trim(line).starts_with("--code-page="); });
  // In front: an end mark or a block of other options may stand further down.
  if (encoding == LabelEncoding::code_page_1251) lines.emplace(lines.begin(), label_code_page_option);
  settings.options_text = join_texts(lines, crlf);
  settings.use_options_text = settings.use_options_text || !lines.empty();
}

bool ConversionJob::is_told(const std::string& text) {
  if (std::find(m_told.begin(), m_told.end(), text) != m_told.end()) return true;
  m_told.push_back(text);
  return false;
}

std::optional<std::string> ConversionJob::point_type(const std::string& type_box) {
  const std::string type = typed_type(type_box);
  if (!is_valid_type(type)) {
    has_invalid_type = true;
    const std::string message = invalid_type_message(type_box);
    if (!is_told(message)) prompts.tell(message, Icon::warning);
    return std::nullopt;
  }
  const std::string warning = refused_type_warning(MpKind::point, type);
  if (!warning.empty() && !is_told(warning)) prompts.tell(warning, Icon::warning);
  return type;
}

std::optional<std::string> ConversionJob::line_type(std::string& type_box, MpKind kind) {
  const LineType line = ferrowen::line_type(typed_type(type_box));
  if (!is_valid_type(line.type)) {
    has_invalid_type = true;
    const std::string message = invalid_type_message(type_box);
    if (!is_told(message)) prompts.tell(message, Icon::warning);
    return std::nullopt;
  }
  if (line.was_shortened) {
    type_box = line.type;
    prompts.tell(shortened_type_message(line.type));
  }
  const std::string warning = refused_type_warning(kind, line.type);
  if (!warning.empty() && !is_told(warning)) prompts.tell(warning, Icon::warning);
  return line.type;
}

std::string ConversionJob::label(std::string_view text, std::size_t line) {
  EncodedLabel encoded = encode_label(text);
  has_foreign_letters =
      has_foreign_letters || std::any_of(encoded.bytes.begin(), encoded.bytes.end(),
                                         [](char c) { return static_cast<unsigned char>(c) >= 0x80U; });
  if (!encoded.unencodable.empty()) {
    const std::string problem = "label '" + std::string(text) + "': no place in code page 1251 for " +
                                encoded.unencodable + ", written as ?";
    const auto same = std::find_if(m_poor_labels.begin(), m_poor_labels.end(),
                                   [&](const PoorLabel& one) { return one.problem == problem; });
    if (same != m_poor_labels.end())
      ++same->count;
    else if (m_poor_labels.size() < most_poor_labels)
      m_poor_labels.push_back({problem, line, 1});
    else
      ++m_poor_labels.back().count;
  }
  return encoded.bytes;
}

void ConversionJob::add_label_problems() {
  for (const PoorLabel& one : m_poor_labels) {
    const std::string place = one.line == 0 ? "" : "line " + std::to_string(one.line) + ": ";
    const std::string more = one.count > 1 ? " (" + std::to_string(one.count) + " labels)" : "";
    if (!is_told(place + one.problem)) m_problems.push_back(place + one.problem + more);
  }
  m_poor_labels.clear();
}

bool ConversionJob::keep_going(std::size_t done, std::size_t whole) {
  progress.fraction(whole == 0 ? 0 : static_cast<double>(done) / static_cast<double>(whole));
  progress.process_events();
  was_stopped = was_stopped || progress.stop_requested();
  return !was_stopped && !writer.failed();
}

void ConversionJob::add_problems(const ProblemList& problems) {
  const std::vector<std::string> lines = problems.lines();
  m_problems.insert(m_problems.end(), lines.begin(), lines.end());
}

void ConversionJob::tell_problems() {
  constexpr std::size_t most_lines = 25;
  add_label_problems();
  if (m_problems.empty()) return;
  std::string text = "There were errors:";
  for (std::size_t i = 0; i < m_problems.size() && i < most_lines; ++i)
    text.append(crlf).append(name + ": " + m_problems[i]);
  if (m_problems.size() > most_lines)
    text.append(crlf).append("and " + std::to_string(m_problems.size() - most_lines) + " more");
  m_problems.clear();
  prompts.tell(text, Icon::warning);
}

// All files of one conversion, in order.
class FileConverter {
 public:
  FileConverter(Workspace& workspace, Prompts& prompts, Progress& progress, const SourceFormat& format)
      : m_workspace(workspace), m_prompts(prompts), m_progress(progress), m_format(format) {}

  Conversion convert(const std::vector<std::string>& files) {
    const auto start = std::chrono::steady_clock::now();
    bool goes_on = true;
    for (const std::string& file : files) {
      const std::size_t written = m_result.files.size();
      const ConversionEnd end = goes_on ? convert_file(file) : ConversionEnd::done;
      // A name with another ending is passed over; anything else that goes wrong ends the conversion.
      goes_on = goes_on && (end <= ConversionEnd::stopped_by_check || !is_of_format(file));
      m_result.end = std::max(m_result.end, end);
      if (m_result.files.size() == written) m_result.not_converted.push_back(file);
      m_progress.elapsed(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return m_result;
  }

 private:
  [[nodiscard]] bool is_of_format(const std::string& file) const {
    return ends_with_ignoring_case(file, m_format.ending);
  }

  ConversionEnd refuse(std::string_view text, ConversionEnd end) {
    m_prompts.tell(text, Icon::warning);
    return end;
  }

  ConversionEnd convert_file(const std::string& file) {
    if (!is_of_format(file)) return refuse(m_format.refusal, ConversionEnd::bad_input);
    const std::string folder = m_workspace.path("mps");
    if (const Status made = make_folder(folder); !made.ok()) return refuse(made.error, ConversionEnd::failed);
    const std::string name = platform::name_of(file);
    const std::string output =
        platform::join(folder, name.substr(0, name.size() - m_format.ending.size()) + std::string(mp_ending));
    if (const auto earlier = input_written_to(output))
      return refuse(output + " was just written from " + *earlier + "; " + file + " is not converted.",
                    ConversionEnd::stopped_by_check);
    Result<std::string> bytes = read_source(file);
    if (!bytes.ok()) return refuse(bytes.error, ConversionEnd::bad_input);
    m_progress.status(name);
    return write_file(file, output, bytes.value);
  }

  [[nodiscard]] std::optional<std::string> input_written_to(const std::string& output) const {
    for (const ConvertedFile& one : m_result.files) {
      if (comparable(one.output) == comparable(output)) return one.input;
    }
    return std::nullopt;
  }

  ConversionEnd write_file(const std::string& input, const std::string& output, std::string& bytes) {
    MpFile file(output);
    MpWriter writer([&file](std::string_view text) { return file.write(text); }, m_format.padded);
    ConversionJob job(platform::name_of(input), writer, m_prompts, m_progress);
    job.m_told = m_told;
    const ConversionEnd end = finish(job, m_format.convert(job, bytes), file);
    m_told = job.m_told;
    if (end > ConversionEnd::stopped_by_check || !has_objects(writer.counts())) return end;
    add_counts(m_result.counts, writer.counts());
    m_result.files.push_back({input, output});
    m_result.has_foreign_letters = m_result.has_foreign_letters || job.has_foreign_letters;
    return end;
  }

  ConversionEnd finish(ConversionJob& job, ConversionEnd end, MpFile& file) {
    if (job.was_stopped) return ConversionEnd::cancelled;
    job.tell_problems();
    if (job.writer.failed()) return refuse(file.problem(), ConversionEnd::failed);
    if (end > ConversionEnd::stopped_by_check) return end;
    const ConversionEnd good = job.has_invalid_type ? ConversionEnd::stopped_by_check : end;
    if (!has_objects(job.writer.counts())) {
      if (job.has_invalid_type) return good;
      return refuse(job.name + ": there is nothing to write. A line needs two points" +
                        (m_format.writes_points ? "." : ", and points were not asked for."),
                    ConversionEnd::bad_input);
    }
    const Status placed = job.writer.finish() ? file.put_in_place() : Status{file.problem()};
    return placed.ok() ? good : refuse(placed.error, ConversionEnd::failed);
  }

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  const SourceFormat& m_format;
  Conversion m_result;
  std::vector<std::string> m_told;  // complaints about types, once for all files
};

Conversion convert_files(Workspace& workspace, Prompts& prompts, Progress& progress,
                         const std::vector<std::string>& files, const SourceFormat& format) {
  return FileConverter(workspace, prompts, progress, format).convert(files);
}

std::string converted_text(const std::string& file, Progress& progress, const SourceFormat& format) {
  Result<std::string> bytes = read_source(file);
  if (!bytes.ok() || !ends_with_ignoring_case(file, format.ending)) return "";
  std::string text;
  MpWriter writer(
      [&text](std::string_view piece) {
        text += piece;
        return true;
      },
      format.padded);
  SilentPrompts silent;
  ConversionJob job(platform::name_of(file), writer, silent, progress);
  const ConversionEnd end = format.convert(job, bytes.value);
  if (end > ConversionEnd::stopped_by_check || job.was_stopped || !writer.finish()) return "";
  return has_objects(writer.counts()) ? text : "";
}

void show_mp(Prompts& prompts, const std::string& path) {
  constexpr std::size_t looked_at = 256;
  std::string head(looked_at, '\0');
  std::ifstream file(platform::file_system_path(path), std::ios::binary);
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  if (ends_with_ignoring_case(path, mp_ending) && contains(head, mp_mark))
    prompts.show_file(path);
  else
    prompts.tell(platform::name_of(path) + " not a valid mp file", Icon::warning);
}

}  // namespace ferrowen
