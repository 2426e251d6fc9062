#include "app/tools.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/commands.hpp"
#include "cli/terminal.hpp"
#include "platform/paths.hpp"
#include "styletools/style_doctor.hpp"
#include "styletools/typ_reader.hpp"

namespace ferrowen {

namespace {

constexpr const char* typ_missing = "Can't find TYP file. ";
constexpr const char* typ_not_there = "Can't find TYP file. Please select.";

// What is to be examined, read and kept.
struct Patient {
  StyleLocation location;
  std::vector<LoadedStyle> kinds;
  std::optional<TypFile> typ;
};

// A style that is named by its folder needs no program folder, so that the check runs wherever styles are
// kept.
ExitStatus find_style(Session& session, const DoctorArguments& arguments, StyleLocation& location) {
  if (!folder_exists(arguments.style)) {
    const ExitStatus opened = session.open(Session::Access::read, Session::Notes::drop);
    if (opened != ExitStatus::done) return opened;
    location = locate_style(session.workspace.settings, arguments.style);
  } else {
    location = style_in_folder(arguments.style);
    Settings tools;
    find_tools(tools);
    location.mkgmap_jar = tools.mkgmap_jar;
  }
  return ExitStatus::done;
}

// A rule file that cannot be read must not look like one without findings.
ExitStatus read_style(Session& session, const DoctorArguments& arguments, Patient& patient) {
  std::vector<RuleKind> missing;
  for (const RuleKind kind : rule_kinds) {
    if (arguments.kind && *arguments.kind != rule_file_name(kind)) continue;
    LoadedStyle style = load_style(patient.location, kind);
    if (!style.text.unread.empty()) return session.fail(join_texts(style.text.unread, crlf));
    if (style.text.is_missing())
      missing.push_back(kind);
    else
      patient.kinds.push_back(std::move(style));
  }
  if (patient.kinds.empty()) {
    nodata(patient.location, session.prompts);
    return ExitStatus::wrong_usage;
  }
  for (const RuleKind kind : missing)
    session.prompts.tell("The style has no rules for " + std::string(rule_file_name(kind)) + ".");
  return ExitStatus::done;
}

// The TYP file of the command line, else that of the settings when they are open.
ExitStatus read_typ_file(Session& session, const DoctorArguments& arguments, bool is_named,
                         Patient& patient) {
  if (!is_named && !arguments.checks.empty()) return ExitStatus::done;
  const std::string named = arguments.typ.value_or(session.workspace.settings.doctor_typ);
  if (named.empty()) {
    if (is_named || arguments.typ) return session.fail(typ_missing + std::string("--typ FILE names it."));
    session.prompts.tell("Without --typ FILE the style is not compared with a TYP file.");
    return ExitStatus::done;
  }
  const std::string path = platform::absolute(named);
  if (!file_exists(path)) return session.fail(typ_not_there + std::string("\r\n") + path);
  Result<TypFile> typ = loadbinary(path);
  if (!typ.ok()) return session.fail(typ.error);
  patient.typ = std::move(typ.value);
  return ExitStatus::done;
}

Examination examination_of(const DoctorArguments& arguments, const Patient& patient) {
  Examination examination;
  for (const LoadedStyle& style : patient.kinds)
    examination.kinds.push_back(&style);
  for (const std::string& name : arguments.checks)
    if (const auto check = check_named(name)) examination.checks.push_back(*check);
  examination.kind_is_chosen = arguments.kind.has_value();
  examination.lowest_draw_order = arguments.draw_order;
  return examination;
}

Json row_object(const DoctorRow& row) {
  Json object{{"check", check_name(row.check)},
              {"weight", weight_name(row.weight)},
              {"kind", rule_file_name(row.kind)},
              {"type", row.key},
              {"file", row.file},
              {"line", row.line},
              {"finding", row.finding},
              {"detail", row.detail}};
  if (!row.other_place.empty()) object["earlier"] = row.other_place;
  return object;
}

void show_report(Session& session, const DoctorReport& report, const DoctorArguments& arguments) {
  session.json["issues"] = report.issues;
  session.json["findings"] = Json::array();
  if (session.options.json) {
    for (const DoctorRow& row : report.rows)
      if (row.weight != Weight::heading) session.json["findings"].push_back(row_object(row));
    return;
  }
  if (arguments.format == "csv") return session.show(report_csv(report));
  const std::string lines = terminal_text(report_lines(report));
  if (!lines.empty()) session.show(lines + "\n");
}

}  // namespace

ExitStatus run_command(Session& session, const DoctorArguments& arguments) {
  Patient patient;
  const ExitStatus found = find_style(session, arguments, patient.location);
  if (found != ExitStatus::done) return found;
  if (const ExitStatus read = read_style(session, arguments, patient); read != ExitStatus::done) return read;
  Examination examination = examination_of(arguments, patient);
  if (const std::string idle = idle_check(examination); !idle.empty()) return session.fail(idle);
  const ExitStatus read = read_typ_file(session, arguments, asks_for(examination, DoctorCheck::typ), patient);
  if (read != ExitStatus::done) return read;
  examination.typ = patient.typ ? &*patient.typ : nullptr;
  DoctorReport report = examine(examination);
  session.json["style"] = patient.location.folder;
  if (arguments.checks.empty() && !session.options.verbose)
    std::erase_if(report.rows, [](const DoctorRow& row) { return !row.counts(); });
  show_report(session, report, arguments);
  if (report.issues == 0) {
    session.prompts.tell("No issues found.");
    return ExitStatus::done;
  }
  session.result = "issues found";
  return ExitStatus::run_failed;
}

}  // namespace ferrowen
