// How a stage talks to a person. Windows, terminal and tests each implement these two interfaces; every text
// that a user sees passes through them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ferrowen {

enum class Icon : std::uint8_t { none, information, question, warning, critical };
enum class Buttons : std::uint8_t { yes_no, yes_no_cancel };
enum class Answer : std::uint8_t { yes, no, cancel };

struct FileFilter {
  std::string name;     // "Backup Files (*.mpdat)"
  std::string pattern;  // "*.mpdat"; several are separated by ";"
};

struct FileQuestion {
  std::string title;
  std::vector<FileFilter> filters;
  std::string proposal;  // name or path offered first
  bool save = false;     // a name to write to, instead of an existing file
  bool confirms = true;  // the dialog itself asks before an existing file is chosen to write to
};

class Prompts {
 public:
  Prompts() = default;
  virtual ~Prompts() = default;
  Prompts(const Prompts&) = delete;
  Prompts& operator=(const Prompts&) = delete;

  virtual void tell(std::string_view text, Icon icon = Icon::information) = 0;
  virtual Answer ask(std::string_view text, Buttons buttons = Buttons::yes_no,
                     Icon icon = Icon::question) = 0;
  // Nothing when the person gave up.
  virtual std::optional<std::string> choose_file(const FileQuestion& question) = 0;
  // Several existing files, none when the person gave up. Where only one can be chosen at a time, it is one.
  virtual std::vector<std::string> choose_files(const FileQuestion& question) {
    std::optional<std::string> file = choose_file(question);
    return file ? std::vector<std::string>{std::move(*file)} : std::vector<std::string>{};
  }
  virtual std::optional<std::string> choose_folder(std::string_view title, const std::string& start) = 0;
  // Puts a text file before the person's eyes (its associated program, or the terminal).
  virtual void show_file(const std::string& path) = 0;
};

class Progress {
 public:
  Progress() = default;
  virtual ~Progress() = default;
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  virtual void fraction(double done) = 0;           // 0 to 1
  virtual void status(std::string_view text) = 0;   // what is going on now
  virtual void elapsed(double seconds) = 0;         // since the start of the current run
  virtual void output(std::string_view text) = 0;   // text of a tool as it comes, any line ends
  virtual void command(std::string_view text) = 0;  // the command about to run, one option per line
  virtual void process_events() = 0;                // lets the interface live; returns at once
  [[nodiscard]] virtual bool stop_requested() = 0;  // the person wants the current work to end
};

}  // namespace ferrowen
