#include "app/own_script.hpp"

#include "app/script_run.hpp"
#include "base/files.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr int message_no_script = 82;

}  // namespace

std::string script_to_edit(std::string_view last_run) {
  const std::string redirection = " 2>" + std::string(file_name::error_stream);
  std::string_view script = trim(last_run);
  if (script.ends_with(redirection)) script.remove_suffix(redirection.size());
  return with_crlf(trim(script)) + std::string(crlf);
}

std::string own_script_for_editing(const Workspace& workspace, Prompts& prompts) {
  std::string path = workspace.path(file_name::own_script);
  if (file_exists(path)) return path;
  const std::string last_run = read_whole_file(workspace.path(file_name::last_run));
  // An own script takes the place of a build: the script of a split is none to begin with.
  if (trim(last_run).empty() || is_split_script(last_run)) {
    prompts.tell(workspace.message(message_no_script) + std::string(crlf) + path, Icon::warning);
    return "";
  }
  if (const Status written = safe_write(path, script_to_edit(last_run)); !written.ok()) {
    prompts.tell(written.error, Icon::critical);
    return "";
  }
  return path;
}

}  // namespace ferrowen
