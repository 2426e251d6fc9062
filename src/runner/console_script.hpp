// A console script as a list of steps, rendered as a Windows batch file (CR LF) or a POSIX shell script (LF).
#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "base/status.hpp"
#include "runner/command.hpp"

namespace ferrowen {

class ConsoleScript;

namespace step {
struct Header {
  std::string batch_line;
};  // "@Echo Off" as the script writes it; nothing in a shell
struct Echo {
  std::string word;
  std::string text;
  bool plain_brackets = false;  // batch: stands in no branch, so brackets need no escape
};                              // word as the batch file spells it: "@echo ", "@echo. ", "echo "
struct ChangeFolder {
  std::string folder;
  std::string word = "cd /d ";  // as the batch file spells it
};                              // cd /d "..."; a shell stops when it is not there
struct NamedFolder {
  std::string variable;
  std::string folder;
};  // set VARIABLE=folder, then cd /d %VARIABLE%; a shell stops when it is not there
struct Run {
  Command command;
};
struct Lines {
  std::string text;
};  // ready script text of this dialect, taken over unchanged
struct IfExists {
  std::string path;
  bool exists = true;  // false: if not exist
  std::shared_ptr<const ConsoleScript> then;
  std::shared_ptr<const ConsoleScript> otherwise;  // may be null
  bool else_behind_line = false;                   // batch: ") else (" closes the last line of `then`
};
struct Delete {
  std::string path;
};
struct DeleteEmpty {
  std::string path;
};                         // a file without content: what a failed tool leaves behind
struct CollectNothing {};  // begins the list of Collect anew
struct Collect {
  std::string path;
};  // an existing file joins the list that RunWithCollected passes on
struct RunWithCollected {
  Command command;
};  // the collected files stand behind the program, before its arguments; nothing runs without any
struct Pause {
  std::string word = "pause";
};  // waits for a key where a person can press one
struct Exit {
  int status = 0;
  bool with_status = true;
};
}  // namespace step

using Step =
    std::variant<step::Header, step::Echo, step::ChangeFolder, step::Run, step::Lines, step::NamedFolder,
                 step::IfExists, step::Delete, step::DeleteEmpty, step::CollectNothing, step::Collect,
                 step::RunWithCollected, step::Pause, step::Exit>;

class ConsoleScript {
 public:
  ConsoleScript& add(Step step);
  [[nodiscard]] const std::vector<Step>& steps() const { return m_steps; }

 private:
  std::vector<Step> m_steps;
};

// Text of the script in UTF-8. A shell script begins with "#!/bin/sh", has LF line ends and ends with the
// status of its last command, also when that is followed by a pause. What cannot be written safely is an
// error; so is a batch line that is longer than the interpreter reads.
Result<std::string> render(const ConsoleScript& script, Dialect dialect);

// Renders, encodes for the shell and writes the file safely; on POSIX it is made executable.
Status write_script(const ConsoleScript& script, Dialect dialect, const std::string& path);

}  // namespace ferrowen
