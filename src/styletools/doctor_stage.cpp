#include "styletools/doctor_stage.hpp"

#include "base/files.hpp"
#include "styletools/typ_export.hpp"
#include "styletools/typ_reader.hpp"

namespace ferrowen {

namespace {

constexpr const char* results_file = "typ.txt";
constexpr std::size_t shortest_typ_path = 3;

}  // namespace

std::optional<TypFile> find_typ(const std::string& path, const StyleLocation& style, Prompts& prompts) {
  if (path.empty()) {
    prompts.tell("Can't find TYP file. ", Icon::warning);
    return std::nullopt;
  }
  if (style.folder.empty() || !folder_exists(style.folder)) {
    nodata(style, prompts);
    return std::nullopt;
  }
  if (path.size() < shortest_typ_path || !file_exists(path)) {
    prompts.tell("Can't find TYP file. Please select.\r\n" + path, Icon::warning);
    return std::nullopt;
  }
  Result<TypFile> typ = loadbinary(path);
  if (typ.ok()) return std::move(typ.value);
  prompts.tell(typ.error, Icon::warning);
  return std::nullopt;
}

std::string results_path(const Workspace& workspace) { return workspace.path(results_file); }

bool write_results(const Workspace& workspace, const StyleLocation& style, const TypFile& typ,
                   std::size_t lowest_draw_order, Prompts& prompts) {
  const std::string path = results_path(workspace);
  Status status = remove_file(path);
  std::vector<LoadedStyle> kinds;
  for (const RuleKind kind : rule_kinds) {
    LoadedStyle loaded = load_style(style, kind);
    tell_unread(loaded.text, prompts);
    if (!loaded.text.is_missing()) kinds.push_back(std::move(loaded));
  }
  if (kinds.empty()) {
    nodata(style, prompts);
    return false;
  }
  if (status.ok())
    status = safe_write(path, results_text(whole_report(kinds, typ, lowest_draw_order), style.folder));
  if (!status.ok()) prompts.tell(status.error, Icon::critical);
  if (!file_exists(path)) {
    prompts.tell("Cannot find results:" + path, Icon::warning);
    return false;
  }
  if (status.ok()) prompts.show_file(path);
  return status.ok();
}

bool export_report(const DoctorReport& report, ReportFormat format, Prompts& prompts) {
  if (report.rows.empty()) {
    prompts.tell("No data");
    return false;
  }
  const bool is_text = format == ReportFormat::text;
  const FileQuestion question{
      "",
      {is_text ? FileFilter{"Text File (txt)", "*.txt"} : FileFilter{"Comma Delimiter (csv)", "*.csv"}},
      is_text ? "untitled.txt" : "untitled.csv",
      true,
      false};
  std::optional<std::string> path = prompts.choose_file(question);
  if (!path) return false;
  *path = with_ending(*path, is_text ? ".txt" : ".csv");
  if (file_exists(*path) && prompts.ask("Overwrite?") != Answer::yes) return false;
  const Status written = safe_write(*path, is_text ? report_text(report) : report_csv(report));
  if (!written.ok()) prompts.tell(written.error, Icon::critical);
  return written.ok();
}

}  // namespace ferrowen
