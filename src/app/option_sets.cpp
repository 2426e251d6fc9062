#include "app/option_sets.hpp"

#include <algorithm>

#include "base/date_text.hpp"
#include "base/encoding.hpp"
#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"

namespace ferrowen {

namespace {

constexpr int message_remove = 160, message_bracket_missing = 168, message_not_closed = 169,
              message_continue = 171, message_clear = 191, message_backed_up = 192, message_cannot_find = 89,
              message_saved = 202, message_exists = 228;
constexpr std::string_view end_of_options = "##";
constexpr std::uint64_t largest_file = 16ULL << 20;
constexpr std::size_t longest_name = 100;

std::string_view file_of(OptionKeeper keeper) {
  return keeper == OptionKeeper::mkgmap ? file_name::mkgmap_options : file_name::splitter_options;
}

std::string& options_of(Settings& settings, OptionKeeper keeper) {
  return keeper == OptionKeeper::mkgmap ? settings.options_text : settings.splitter_options;
}

bool is_header(std::string_view line) { return line.starts_with('[') && contains(line, "]"); }

// The message number for a line that looks like a broken header; 0 for any other. Options and comments may
// hold brackets of their own.
int bracket_fault(std::string_view line) {
  if (line.starts_with('[')) return contains(line, "]") ? 0 : message_not_closed;
  const bool is_option = line.starts_with('-') || line.starts_with('#') || contains(line, "=");
  return !is_option && line.ends_with(']') && !contains(line, "[") ? message_bracket_missing : 0;
}

std::string free_name(const OptionSets& sets, const std::string& wanted) {
  std::string name = wanted;
  for (int number = 2; sets.find(name) != nullptr; ++number)
    name = wanted + " (" + std::to_string(number) + ")";
  return name;
}

class SetReader {
 public:
  explicit SetReader(const MessageTable& messages) : m_messages(messages) { m_read.sets.emplace_back(); }

  OptionSets read(std::string_view text) {
    for (const std::string& line : split_lines(text)) {
      ++m_line;
      take(line);
    }
    finish_set();
    return std::move(m_read);
  }

 private:
  void take(const std::string& whole_line) {
    std::string_view line = whole_line;
    while (is_header(trim(line))) {
      line = begin_set(trim(line));
      if (line.empty()) return;
    }
    const std::string_view content = trim(line);
    if (const int fault = bracket_fault(content); fault != 0)
      note(m_messages(fault) + " " + std::string(line));
    m_lines.emplace_back(line);
  }

  // Returns what stands behind the name: it belongs to the set.
  std::string_view begin_set(std::string_view header) {
    drop_end_mark();
    finish_set();
    const std::size_t end = header.find(']');
    std::string name(trim(header.substr(1, end - 1)));
    if (name.empty()) {
      note(m_messages(message_bracket_missing) + " " + std::string(header));
      name = "?";
    }
    std::string free = free_name(m_read, name);
    if (free != name) note("[" + name + "] " + m_messages(message_exists) + " --> [" + free + "]");
    m_read.sets.push_back({std::move(free), ""});
    return trim(header.substr(end + 1));
  }

  // The end mark in front of the first name belongs to the file, not to the set.
  void drop_end_mark() {
    if (m_read.sets.size() == 1 && !m_lines.empty() && trim(m_lines.back()) == end_of_options)
      m_lines.pop_back();
  }

  void finish_set() {
    std::string& text = m_read.sets.back().text;
    for (const std::string& line : m_lines)
      text.append(line).append(crlf);
    m_lines.clear();
  }

  void note(const std::string& problem) {
    m_read.problems.push_back("line " + std::to_string(m_line) + ": " + problem);
  }

  const MessageTable& m_messages;
  OptionSets m_read;
  std::vector<std::string> m_lines;
  std::size_t m_line = 0;
};

bool refuse(Prompts& prompts, const std::string& text) {
  prompts.tell(text, Icon::warning);
  return false;
}

// Tells what is wrong with the file; false when it cannot be used at all.
bool load(const Workspace& workspace, Prompts& prompts, OptionKeeper keeper, OptionSets& sets) {
  Result<OptionSets> read = load_option_sets(workspace, keeper);
  if (!read.ok()) return refuse(prompts, read.error);
  sets = std::move(read.value);
  if (!sets.problems.empty())
    prompts.tell(workspace.path(file_of(keeper)) + std::string(crlf) + join_texts(sets.problems, crlf),
                 Icon::warning);
  return true;
}

Status write(const Workspace& workspace, OptionKeeper keeper, const OptionSets& sets) {
  return safe_write(workspace.path(file_of(keeper)), option_sets_text(sets));
}

bool may_be_lost(const Workspace& workspace, Prompts& prompts, OptionKeeper keeper, std::string_view next) {
  const std::string_view now = trim(current_options(workspace.settings, keeper));
  return now.empty() || now == trim(next) ||
         prompts.ask(workspace.message(message_clear), Buttons::yes_no, Icon::warning) == Answer::yes;
}

OptionSet* find_set(OptionSets& sets, std::string_view name) {
  const auto found = std::find_if(sets.sets.begin(), sets.sets.end(),
                                  [&](const OptionSet& set) { return equal_ignoring_case(set.name, name); });
  return found == sets.sets.end() ? nullptr : &*found;
}

void remember_name(Workspace& workspace, OptionKeeper keeper, const std::string& name) {
  if (keeper == OptionKeeper::mkgmap) workspace.settings.option_set = name;
}

}  // namespace

const OptionSet* OptionSets::find(std::string_view name) const {
  const auto found = std::find_if(sets.begin(), sets.end(),
                                  [&](const OptionSet& set) { return equal_ignoring_case(set.name, name); });
  return found == sets.end() ? nullptr : &*found;
}

OptionSets parse_option_sets(std::string_view text, const MessageTable& messages) {
  return SetReader(messages).read(text);
}

std::string option_sets_text(const OptionSets& sets) {
  std::string text;
  for (const OptionSet& set : sets.sets) {
    if (!set.name.empty()) text.append("[").append(set.name).append("]").append(crlf);
    text += with_crlf(set.text);
    if (!text.empty() && !text.ends_with('\n')) text += crlf;
    const bool names_follow = &set == sets.sets.data() && sets.sets.size() > 1;
    if (names_follow) text.append(end_of_options).append(crlf);
  }
  return text;
}

Status check_option_set(std::string_view name, std::string_view text, const MessageTable& messages) {
  if (name.find_first_of("[]") != std::string_view::npos)
    return {messages(message_bracket_missing) + " " + std::string(name)};
  const bool has_control = std::any_of(
      name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; });
  if (has_control || name.size() > longest_name || !is_valid_utf8(name) || name != trim(name))
    return {"'" + std::string(name) + "' cannot be the name of an option set."};
  for (const std::string& line : split_lines(text)) {
    const std::string_view content = trim(line);
    if (is_header(content)) return {messages(message_bracket_missing) + " " + line};
    if (const int fault = bracket_fault(content); fault != 0) return {messages(fault) + " " + line};
  }
  return {};
}

Result<OptionSets> load_option_sets(const Workspace& workspace, OptionKeeper keeper) {
  const std::string path = workspace.path(file_of(keeper));
  if (!file_exists(path)) return {parse_option_sets("", workspace.messages), ""};
  const Result<std::string> bytes = read_file(path, largest_file);
  if (!bytes.ok()) return failed<OptionSets>(bytes.error);
  return {parse_option_sets(decode_tool_text(bytes.value), workspace.messages), ""};
}

const std::string& current_options(const Settings& settings, OptionKeeper keeper) {
  return keeper == OptionKeeper::mkgmap ? settings.options_text : settings.splitter_options;
}

Status store_option_set(const Workspace& workspace, OptionKeeper keeper, const std::string& name,
                        const std::string& text) {
  if (Status sound = check_option_set(name, text, workspace.messages); !sound.ok()) return sound;
  Result<OptionSets> read = load_option_sets(workspace, keeper);
  if (!read.ok()) return {read.error};
  if (OptionSet* old = find_set(read.value, name); old != nullptr)
    old->text = text;
  else
    read.value.sets.push_back({name, text});
  return write(workspace, keeper, read.value);
}

bool save_option_set(Workspace& workspace, Prompts& prompts, OptionKeeper keeper, const std::string& name) {
  const std::string wanted(trim(name));
  const std::string& text = current_options(workspace.settings, keeper);
  if (const Status sound = check_option_set(wanted, text, workspace.messages); !sound.ok())
    return refuse(prompts, sound.error);
  OptionSets sets;
  if (!load(workspace, prompts, keeper, sets)) return false;
  if (OptionSet* old = find_set(sets, wanted); old == nullptr) {
    sets.sets.push_back({wanted, text});
  } else {
    const bool differs = !trim(old->text).empty() && trim(old->text) != trim(text);
    const std::string question = "[" + wanted + "] " + workspace.message(message_exists) + std::string(crlf) +
                                 workspace.message(message_continue);
    if (differs && prompts.ask(question) != Answer::yes) return false;
    old->text = text;
  }
  if (const Status written = write(workspace, keeper, sets); !written.ok())
    return refuse(prompts, written.error);
  remember_name(workspace, keeper, wanted);
  prompts.tell(workspace.message(message_saved));
  return true;
}

bool recall_option_set(Workspace& workspace, Prompts& prompts, OptionKeeper keeper, const std::string& name) {
  OptionSets sets;
  if (!load(workspace, prompts, keeper, sets)) return false;
  const OptionSet* set = sets.find(name);
  if (set == nullptr) return refuse(prompts, workspace.message(message_cannot_find) + "[" + name + "]");
  if (!may_be_lost(workspace, prompts, keeper, set->text)) return false;
  options_of(workspace.settings, keeper) = set->text;
  remember_name(workspace, keeper, set->name);
  return true;
}

bool delete_option_set(Workspace& workspace, Prompts& prompts, OptionKeeper keeper, const std::string& name) {
  OptionSets sets;
  if (!load(workspace, prompts, keeper, sets)) return false;
  const auto found = std::find_if(sets.sets.begin() + 1, sets.sets.end(),
                                  [&](const OptionSet& set) { return equal_ignoring_case(set.name, name); });
  if (found == sets.sets.end())
    return refuse(prompts, workspace.message(message_cannot_find) + "[" + name + "]");
  const std::string question = workspace.message(message_remove) + "[" + found->name + "]?";
  if (prompts.ask(question, Buttons::yes_no, Icon::warning) != Answer::yes) return false;
  const bool in_use = equal_ignoring_case(workspace.settings.option_set, found->name);
  sets.sets.erase(found);
  if (const Status written = write(workspace, keeper, sets); !written.ok())
    return refuse(prompts, written.error);
  if (in_use) remember_name(workspace, keeper, "");
  return true;
}

bool clear_options(Workspace& workspace, Prompts& prompts, OptionKeeper keeper) {
  if (!may_be_lost(workspace, prompts, keeper, "")) return false;
  options_of(workspace.settings, keeper).clear();
  remember_name(workspace, keeper, "");
  return true;
}

bool back_up_option_sets(const Workspace& workspace, Prompts& prompts, std::time_t now) {
  const std::string folder = platform::join(workspace.path("backup"), "options " + time_stamp(now));
  Status done = make_folder(folder);
  for (const OptionKeeper keeper : {OptionKeeper::mkgmap, OptionKeeper::splitter}) {
    const std::string name(file_of(keeper));
    const std::string path = workspace.path(name);
    if (done.ok() && file_exists(path)) done = copy_file(path, platform::join(folder, name));
    if (done.ok())
      done =
          safe_write(platform::join(folder, name + "-in-use"), current_options(workspace.settings, keeper));
  }
  if (!done.ok()) return refuse(prompts, done.error);
  prompts.tell(workspace.message(message_backed_up) + folder);
  return true;
}

}  // namespace ferrowen
