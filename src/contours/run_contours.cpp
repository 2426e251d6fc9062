#include "contours/run_contours.hpp"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <optional>
#include <ostream>
#include <thread>
#include <utility>

#include "base/files.hpp"
#include "contours/options.hpp"
#include "platform/paths.hpp"
#include "platform/system.hpp"

namespace ferrowen {

namespace {

struct Outcome {
  ContourStatus status = ContourStatus::done;
  std::string line, note, error;
};

std::string report_line(const ContourJob& job, const ContourReport& report, const ContourOptions& options) {
  const std::string side = std::to_string(report.samples);
  return job.output + ": " + std::to_string(report.lines) + " lines, " + std::to_string(report.points) +
         " points, every " + std::to_string(options.levels.interval) + " m, from " + side + " x " + side +
         " heights";
}

std::string note_about(const ContourJob& job, const ContourReport& report) {
  if (report.only_voids) return report.source + ": holds no height at all; there are no lines";
  const std::string name = platform::name_of(report.source);
  if (!name.starts_with(cell_name(job.cell)))
    return report.source + ": taken, though other tools look for the name in capital letters, " +
           cell_name(job.cell) + ".hgt";
  return "";
}

Outcome make_one(const ContourJob& job, const ContourCommand& command) {
  if (platform::interrupted()) return {ContourStatus::failed, "", "", job.output + ": stopped"};
  if (!command.overwrite && file_exists(job.output))
    return {ContourStatus::file_exists, "", "", job.output + ": exists; --OutputOverwrite=True replaces it"};
  const ContourResult result = make_contours(job, command.options, platform::interrupted);
  switch (result.outcome) {
    case ContourOutcome::done:
      break;
    case ContourOutcome::unreadable_cell:
      return {ContourStatus::wrong_usage, "", "", result.error};
    case ContourOutcome::failed:
      return {ContourStatus::failed, "", "", result.error};
  }
  return {ContourStatus::done, report_line(job, result.report, command.options),
          note_about(job, result.report), ""};
}

// Nothing may leave a thread but its outcome.
Outcome make_one_safely(const ContourJob& job, const ContourCommand& command) {
  try {
    return make_one(job, command);
  } catch (const std::bad_alloc&) {
    return {ContourStatus::failed, "", "", job.output + ": not enough memory"};
  }
}

// Tells the outcomes in the order of the jobs, each as soon as all before it are known.
class Reporter {
 public:
  Reporter(std::size_t count, std::ostream& output, std::ostream& error)
      : m_outcomes(count), m_output(output), m_error(error) {}

  void add(std::size_t number, Outcome outcome) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_outcomes[number] = std::move(outcome);
    for (; m_told < m_outcomes.size() && m_outcomes[m_told]; ++m_told)
      tell(*m_outcomes[m_told]);
  }
  [[nodiscard]] ContourStatus status() const { return m_status; }

 private:
  void tell(const Outcome& outcome) {
    if (!outcome.line.empty()) m_output << outcome.line << std::endl;
    if (!outcome.note.empty()) m_error << "Note: " << outcome.note << '\n';
    if (!outcome.error.empty()) m_error << "Error: " << outcome.error << '\n';
    if (outcome.status == ContourStatus::done) return;
    m_status = m_status == ContourStatus::done ? outcome.status : std::min(m_status, outcome.status);
  }

  std::mutex m_mutex;
  std::vector<std::optional<Outcome>> m_outcomes;
  std::size_t m_told = 0;
  ContourStatus m_status = ContourStatus::done;
  std::ostream& m_output;
  std::ostream& m_error;
};

ContourStatus make_all(const ContourCommand& command, std::ostream& output, std::ostream& error) {
  Reporter reporter(command.jobs.size(), output, error);
  std::atomic<std::size_t> next{0};
  const auto work = [&] {
    for (std::size_t number = next++; number < command.jobs.size(); number = next++)
      reporter.add(number, make_one_safely(command.jobs[number], command));
  };
  const std::size_t wanted = command.threads != 0 ? command.threads : std::thread::hardware_concurrency();
  std::vector<std::thread> threads;
  for (std::size_t count = 1; count < std::min(wanted, command.jobs.size()); ++count)
    threads.emplace_back(work);
  work();
  for (std::thread& thread : threads)
    thread.join();
  return reporter.status();
}

}  // namespace

ContourStatus run_contours(const std::vector<std::string>& arguments, std::ostream& output,
                           std::ostream& error) {
  const Result<ContourCommand> command = parse_contour_command(arguments);
  if (!command.ok()) {
    error << "Error: " << command.error << "\nferrowen-contours --help tells the options.\n";
    return ContourStatus::wrong_usage;
  }
  if (command.value.help) {
    output << contour_help();
  } else if (command.value.version) {
    output << "ferrowen-contours " FERROWEN_CONTOURS_VERSION "\n";
  } else {
    return make_all(command.value, output, error);
  }
  return ContourStatus::done;
}

}  // namespace ferrowen
