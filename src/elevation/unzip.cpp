#include "elevation/unzip.hpp"

#include <algorithm>
#include <map>
#include <optional>

#include "base/files.hpp"
#include "base/inflate.hpp"
#include "base/text.hpp"
#include "elevation/height_cells.hpp"
#include "elevation/tool_script.hpp"
#include "elevation/zip_directory.hpp"
#include "platform/files.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_select = 20;
constexpr int message_no_folder = 51;
constexpr int message_no_files = 86;
constexpr std::string_view archive_ending = ".zip";
constexpr const char* nothing_unpacked = "Files were not unzippped";

// What an archive promises of a file.
struct Promise {
  std::uint64_t size = 0;
  std::uint32_t checksum = 0;
  std::string archive;
};

struct Contents {
  std::map<std::string, std::vector<Promise>> files;  // by the name of the unpacked file
  std::uint64_t bytes = 0;
  std::vector<std::string> archives;  // that are unpacked
  std::vector<std::string> refused;
  std::string problems;  // one line per archive that is refused
};

// The archiver would take such a name for several archives.
bool is_pattern(const std::string& archive) { return archive.find_first_of("*?") != std::string::npos; }

std::string archive_problem(const std::string& folder, const std::string& archive,
                            const Result<std::vector<ArchiveItem>>& entries) {
  std::string problem = entries.error;
  if (problem.empty() && is_pattern(archive)) problem = "has '*' or '?' in its name";
  for (const ArchiveItem& entry : entries.value) {
    if (problem.empty()) problem = zip_entry_problem(entry);
    if (problem.empty() && !entry.is_folder && ends_with_ignoring_case(entry.name, archive_ending))
      problem = "'" + entry.name + "' is an archive itself";
    if (problem.empty() && !entry.is_folder &&
        folder_exists(platform::join(folder, zip_base_name(entry.name))))
      problem = "'" + entry.name + "' has the name of a folder that is there";
  }
  return problem;
}

void add_archive(const std::string& folder, const std::string& archive, Contents& contents) {
  FileSource source(platform::join(folder, archive));
  const Result<std::vector<ArchiveItem>> entries = read_zip_directory(source);
  if (const std::string problem = archive_problem(folder, archive, entries); !problem.empty()) {
    contents.refused.push_back(archive);
    contents.problems.append(crlf).append(archive).append(" ").append(problem);
    return;
  }
  contents.archives.push_back(archive);
  for (const ArchiveItem& entry : entries.value) {
    if (entry.is_folder) continue;
    contents.files[zip_base_name(entry.name)].push_back({entry.size, entry.checksum, archive});
    contents.bytes += entry.size;
  }
}

Contents contents_of(const std::string& folder, const std::vector<std::string>& archives) {
  Contents contents;
  for (const std::string& archive : archives)
    add_archive(folder, archive, contents);
  return contents;
}

// Nothing when the file cannot be read to its end.
std::optional<std::uint32_t> checksum_of(const std::string& path) {
  constexpr std::size_t piece = 1024ULL * 1024;
  FileSource source(path);
  if (!source.is_open()) return std::nullopt;
  std::uint32_t checksum = 0;
  for (std::uint64_t offset = 0; offset < source.size(); offset += piece)
    checksum = crc32(source.read(offset, piece), checksum);
  return source.read_failed() ? std::nullopt : std::optional(checksum);
}

class Unpacker {
 public:
  Unpacker(Workspace& workspace, Prompts& prompts, Progress& progress, std::string folder)
      : m_workspace(workspace), m_prompts(prompts), m_progress(progress), m_folder(std::move(folder)) {}

  UnzipReport unpack(const char* missing_tool) {
    if (check_tool(missing_tool) && check_folder() && look_into_archives()) run();
    return std::move(m_report);
  }

 private:
  bool stop(const std::string& text, Icon icon = Icon::warning) {
    m_prompts.tell(text, icon);
    return false;
  }

  bool check_tool(const char* missing_tool) {
    const std::string& tool = m_workspace.settings.seven_zip;
    return (!tool.empty() && file_exists(tool) && !folder_exists(tool)) || stop(missing_tool);
  }

  bool check_folder() {
    if (trim(m_folder).empty()) return stop(m_workspace.message(message_select));
    m_folder = platform::absolute(std::string(trim(m_folder)));
    if (!folder_exists(m_folder)) return stop(m_workspace.message(message_no_folder) + m_folder);
    if (platform::folder_is_writable(m_folder)) return true;
    return stop(m_folder + ": the folder cannot be written to", Icon::critical);
  }

  bool look_into_archives() {
    const std::vector<std::string> archives = zip_archives(m_folder);
    for (const std::string& archive : archives)
      m_endings.insert(archive.substr(archive.size() - archive_ending.size()));
    if (archives.empty()) return stop(m_workspace.message(message_no_files) + ": " + m_folder);
    m_contents = contents_of(m_folder, archives);
    m_report.refused = m_contents.refused;
    if (!m_contents.problems.empty()) stop("Not unzipped:" + m_contents.problems);
    if (m_contents.archives.empty()) return false;
    const std::optional<std::uint64_t> space = platform::free_space(m_folder);
    if (space && *space < m_contents.bytes)
      return stop("No space left: " + m_folder + " (" + std::to_string(m_contents.bytes) + " bytes needed)",
                  Icon::critical);
    return true;
  }

  void run() {
    std::vector<std::string> paths;
    for (const auto& [name, promises] : m_contents.files)
      paths.push_back(platform::join(m_folder, name));
    ExpectedFiles results(paths);
    Status ready = results.clear_the_way();
    Result<ConsoleScript> console = unzip_script(platform::short_path(m_workspace.settings.seven_zip),
                                                 m_folder, native_dialect, m_endings, archives_by_name());
    if (ready.ok()) ready.error = console.error;
    Result<VisibleRunEnd> end{{}, ready.error};
    if (ready.ok()) {
      const std::string folder = m_workspace.folder.path();
      const ToolScript script{std::move(console.value), platform::join(folder, script_name("zip")), folder,
                              false, [&] { show_progress(results); }};
      end = run_tool_script(m_workspace, m_prompts, m_progress, script);
    }
    const Result<std::vector<std::string>> bad =
        results.settle([&](const std::string& path) { return is_whole(path); });
    for (const std::string& error : {end.error, bad.error}) {
      if (!error.empty()) m_prompts.tell(error, Icon::critical);
    }
    if (end.ok()) conclude(bad.value, end.value);
  }

  // With refused archives beside them the others are unpacked one by one.
  [[nodiscard]] std::vector<std::string> archives_by_name() const {
    std::vector<std::string> names;
    if (m_contents.refused.empty()) return names;
    for (const std::string& archive : m_contents.archives)
      names.push_back(platform::name_of(platform::short_path(platform::join(m_folder, archive))));
    return names;
  }

  void show_progress(const ExpectedFiles& results) {
    if (results.count() == 0) return;
    m_progress.fraction(static_cast<double>(results.found()) / static_cast<double>(results.count()));
  }

  // Its bytes are what an archive promised, and it is no link that was smuggled in.
  bool is_whole(const std::string& path) {
    if (!file_exists(path) || folder_exists(path) || platform::is_link(path)) return false;
    const std::vector<Promise>& promises = m_contents.files.at(platform::name_of(path));
    const std::uint64_t size = file_size(path);
    const std::optional<std::uint32_t> checksum = checksum_of(path);
    return std::any_of(promises.begin(), promises.end(), [&](const Promise& promise) {
      return promise.size == size && checksum == promise.checksum;
    });
  }

  void conclude(const std::vector<std::string>& bad, const VisibleRunEnd& end) {
    for (const auto& [name, promises] : m_contents.files) {
      const bool is_bad = std::find(bad.begin(), bad.end(), platform::join(m_folder, name)) != bad.end();
      (is_bad ? m_report.failed : m_report.files).push_back(name);
    }
    const bool good = bad.empty() && m_report.refused.empty() && !m_report.files.empty();
    m_report.result = good ? StageResult::done : StageResult::failed;
    if (end.cancelled) {
      m_report.result = StageResult::cancelled;
      return;
    }
    if (!m_report.files.empty())
      m_prompts.tell("Successfully zipped:\r\n" + join_texts(m_report.files, crlf));
    if (!bad.empty() || m_report.files.empty()) tell_failed(end.output);
  }

  // Each file with the archives that were to give it, then what the archiver says of them.
  void tell_failed(const std::string& output) {
    std::vector<std::string> lines;
    for (const std::string& name : m_report.failed) {
      std::vector<std::string> archives;
      for (const Promise& promise : m_contents.files.at(name))
        archives.push_back(promise.archive);
      lines.push_back(name + " (" + join_texts(archives, ", ") + ")");
    }
    for (const std::string& line : split_lines(output)) {
      if (line.starts_with("ERROR")) lines.push_back(line);
    }
    m_prompts.tell(nothing_unpacked + std::string(crlf) + join_texts(lines, crlf), Icon::critical);
  }

  Workspace& m_workspace;
  Prompts& m_prompts;
  Progress& m_progress;
  std::string m_folder;
  std::set<std::string> m_endings;
  Contents m_contents;
  UnzipReport m_report;
};

}  // namespace

std::vector<std::string> zip_archives(const std::string& folder) {
  std::vector<std::string> archives = list_files(folder, {""});
  std::erase_if(archives,
                [](const std::string& name) { return !ends_with_ignoring_case(name, archive_ending); });
  return archives;
}

Result<ConsoleScript> unzip_script(const std::string& seven_zip, const std::string& folder, Dialect dialect,
                                   const std::set<std::string>& endings,
                                   const std::vector<std::string>& archives) {
  Result<ConsoleScript> console;
  console.value.add(step::ChangeFolder{folder, " cd /d "});
  // The archiver itself looks for the archives; files that are there are replaced without a question.
  if (!archives.empty()) {
    const std::string here = dialect == Dialect::shell ? "./" : ".\\";
    for (const std::string& archive : archives)
      console.value.add(step::Run{{seven_zip, {word("e"), quoted(here + archive), word("-y")}}});
  } else if (dialect == Dialect::shell) {
    for (const std::string& ending : endings)
      console.value.add(step::Run{{seven_zip, {word("e"), quoted("*" + ending), word("-y")}}});
  } else {
    const Result<std::string> program = render_command({seven_zip, {}}, dialect);
    console.error = program.error;
    console.value.add(step::Lines{program.value + " e *.zip -y"});
  }
  console.value.add(step::Pause{});
  return console;
}

UnzipReport unzip(Workspace& workspace, Prompts& prompts, Progress& progress, const std::string& folder,
                  const char* missing_tool) {
  return Unpacker(workspace, prompts, progress, folder).unpack(missing_tool);
}

std::vector<std::string> archives_with_cells(const std::string& folder,
                                             const std::vector<std::string>& cells) {
  std::vector<std::string> found;
  for (const std::string& archive : zip_archives(folder)) {
    FileSource source(platform::join(folder, archive));
    const Result<std::vector<ArchiveItem>> entries = read_zip_directory(source);
    const bool useful =
        std::any_of(entries.value.begin(), entries.value.end(), [&](const ArchiveItem& entry) {
          return std::find(cells.begin(), cells.end(), cell_of_entry(entry)) != cells.end();
        });
    if (useful) found.push_back(archive);
  }
  return found;
}

}  // namespace ferrowen
