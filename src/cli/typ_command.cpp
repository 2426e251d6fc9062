#include "base/files.hpp"
#include "base/text.hpp"
#include "cli/commands.hpp"
#include "cli/terminal.hpp"
#include "platform/paths.hpp"
#include "styletools/style_reader.hpp"
#include "styletools/typ_compiler.hpp"
#include "styletools/typ_export.hpp"
#include "styletools/typ_generator.hpp"
#include "styletools/typ_reader.hpp"
#include "styletools/typ_text.hpp"

namespace ferrowen {

namespace {

constexpr int message_file_exists = 57;
// More damage than this is one message: a file of rubbish must not scroll everything away.
constexpr std::size_t most_findings_told = 20;

bool may_write(Session& session, const std::string& path) {
  if (!file_exists(path)) return true;
  return session.prompts.ask(path + "\r\n" + session.workspace.message(message_file_exists)) == Answer::yes;
}

// False when the file holds less than it says it does.
bool tell_findings(Session& session, const std::string& path, const TypFile& typ) {
  session.json["findings"] = Json::array();
  for (const TypFinding& finding : typ.findings) {
    if (session.json["findings"].size() < most_findings_told)
      session.prompts.tell(path + ", byte " + std::to_string(finding.offset) + ": " + finding.text,
                           Icon::critical);
    session.json["findings"].push_back({{"offset", finding.offset}, {"text", finding.text}});
  }
  if (typ.findings.size() > most_findings_told)
    session.prompts.tell(std::to_string(typ.findings.size() - most_findings_told) + " more, see --json",
                         Icon::critical);
  return typ.findings.empty();
}

ExitStatus write_bytes(Session& session, const std::string& path, const std::string& bytes) {
  if (!may_write(session, path)) return ExitStatus::stopped;
  if (const Status written = safe_write(path, bytes); !written.ok())
    return session.fail(written.error, ExitStatus::run_failed);
  session.json["file"] = path;
  session.prompts.tell("Written: " + path);
  return ExitStatus::done;
}

ExitStatus show_text(Session& session, const TypArguments& arguments, const TypFile& typ) {
  const bool csv = arguments.format.value_or("text") == "csv";
  const std::string text = csv ? typ_csv(typ) : typ_text(typ);
  if (!arguments.output) {
    session.json["text"] = text;
    session.show(replace_all(text, "\r\n", "\n"));
    return ExitStatus::done;
  }
  const std::string path = platform::absolute(*arguments.output);
  if (csv) return write_bytes(session, path, text);
  for (const std::string& loss : text_losses(typ))
    session.prompts.tell(loss, Icon::warning);
  const Result<std::string> bytes = encode_typ_text(text, text_code_page(typ));
  if (!bytes.ok()) return session.fail(bytes.error, ExitStatus::run_failed);
  return write_bytes(session, path, bytes.value);
}

ExitStatus show(Session& session, const TypArguments& arguments) {
  const std::string path = platform::absolute(arguments.file);
  const Result<TypFile> typ = loadbinary(path);
  if (!typ.ok()) return session.fail(typ.error);
  for (const RuleKind kind : rule_kinds)
    session.json[std::string(rule_file_name(kind))] = typ.value.of(kind).size();
  session.json["draw_order_levels"] = typ.value.draw_order.size();
  const bool is_whole = tell_findings(session, path, typ.value);
  if (!is_whole && (arguments.output || arguments.editor_files))
    return session.fail(path + " is damaged: what was read of it is not written as if it were all.",
                        ExitStatus::run_failed);
  if (!arguments.editor_files) {
    const ExitStatus shown = show_text(session, arguments, typ.value);
    return shown == ExitStatus::done && !is_whole ? ExitStatus::run_failed : shown;
  }
  const std::string target = platform::absolute(*arguments.editor_files);
  if (!export_editor_files(typ.value, target, session.prompts)) return ExitStatus::stopped;
  session.json["files"] = editor_file_paths(target);
  for (const std::string& written : editor_file_paths(target))
    session.prompts.tell("Written: " + written);
  return ExitStatus::done;
}

ExitStatus check_sheet(Session& session, const std::string& path, const Sheet& sheet) {
  const TypCheck check = check_typ_text(session.workspace, session.prompts, session.progress, path);
  session.json["checked"] = check.not_checked.empty();
  for (const std::string& warning : check.warnings)
    session.prompts.tell(warning, Icon::warning);
  if (!check.not_checked.empty()) {
    session.prompts.tell("Not checked with mkgmap: " + check.not_checked, Icon::warning);
    return ExitStatus::done;
  }
  if (check.accepted) {
    session.prompts.tell("mkgmap accepts this text.");
    return ExitStatus::done;
  }
  session.json["problem"] = {{"line", check.line}, {"section", check.section}, {"text", check.message}};
  const std::size_t plain = sheet.complete ? 0 : count_without_colour(sheet);
  const std::string hint = plain == 0
                               ? ""
                               : "\r\n" + std::to_string(plain) +
                                     " polygon types have no colour yet: --complete gives them a neutral "
                                     "fill.";
  return session.fail("mkgmap refuses this text. " + check_text(check) + hint, ExitStatus::run_failed);
}

ExitStatus create(Session& session, const TypArguments& arguments) {
  SheetRequest request;
  request.style = locate_style(session.workspace.settings, arguments.style);
  if (!request.style.folder.empty() && !folder_exists(request.style.folder)) {
    nodata(request.style, session.prompts);
    return ExitStatus::wrong_usage;
  }
  request.family_id = arguments.family_id.value_or(first_family_id);
  request.complete = arguments.complete;
  request.icon_folder = session.workspace.path(icon_subfolder);
  const std::optional<Sheet> sheet = create_sheet(request, session.prompts);
  if (!sheet) return ExitStatus::stopped;
  const std::string path = platform::absolute(*arguments.output);
  if (!may_write(session, path)) return ExitStatus::stopped;
  if (const Status written = append_(path, *sheet); !written.ok())
    return session.fail(written.error, ExitStatus::run_failed);
  session.json["file"] = path;
  for (const RuleKind kind : rule_kinds)
    session.json[std::string(rule_file_name(kind))] = sheet->types.at(static_cast<std::size_t>(kind)).size();
  session.prompts.tell("Written: " + path);
  return check_sheet(session, path, *sheet);
}

}  // namespace

ExitStatus run_command(Session& session, const TypArguments& arguments) {
  const ExitStatus opened = session.open(Session::Access::read, Session::Notes::drop);
  if (opened != ExitStatus::done) return opened;
  return arguments.action == TypArguments::Action::show ? show(session, arguments)
                                                        : create(session, arguments);
}

}  // namespace ferrowen
