// The child of the process tests: one small program that behaves, or misbehaves, as its first argument says.
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "platform/paths.hpp"
#include "platform/system.hpp"

#ifdef _WIN32
#include <windows.h>
// windows.h comes first.
#include <fcntl.h>
#include <io.h>
#include <process.h>
#else
#include <unistd.h>
#endif

namespace platform = ferrowen::platform;

namespace {

using Arguments = std::vector<std::string>;

int number_in(const std::string& text) {
  int value = 0;
  const bool good = std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc();
  return good ? value : 0;
}

int number(const Arguments& arguments, std::size_t index) {
  return index < arguments.size() ? number_in(arguments[index]) : 0;
}

void pause_for(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

void say(const std::string& text, std::FILE* stream = stdout) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
  if (!written || std::fflush(stream) != 0) std::exit(65);
}

#ifdef _WIN32
void ignore_requests_to_end() {
  SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE);
}
void start_sleeper(const std::string& milliseconds) {
  const std::string program = platform::executable_path();
  _spawnl(_P_NOWAIT, program.c_str(), "child", "sleep", milliseconds.c_str(), nullptr);
}
void close_streams() {
  for (const int descriptor : {1, 2})
    _close(descriptor);
  for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
    CloseHandle(GetStdHandle(stream));
}
#else
void ignore_requests_to_end() {
  if (std::signal(SIGTERM, SIG_IGN) == SIG_ERR) std::exit(65);
}
void start_sleeper(const std::string& milliseconds) {
  const std::string program = platform::executable_path();
  if (fork() != 0) return;
  execl(program.c_str(), "child", "sleep", milliseconds.c_str(), nullptr);
  _exit(127);
}
void close_streams() {
  for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO})
    close(descriptor);
}
#endif

int print_bytes(const Arguments& arguments) {
  const int count = number(arguments, 0);
  std::string text;
  for (int i = 0; i < count; ++i)
    text += static_cast<char>(i % 251);
  say(text);
  return 0;
}

int print_pieces(const Arguments& arguments) {
  for (int i = 0; i < number(arguments, 0); ++i) {
    say("piece " + std::to_string(i) + "\n");
    pause_for(number(arguments, 1));
  }
  return 0;
}

int print_arguments(const Arguments& arguments) {
  for (const std::string& argument : arguments)
    say(argument + '\0');
  return 0;
}

int print_both_streams(const Arguments& /*arguments*/) {
  say("out ");
  say("err ", stderr);
  say("out");
  return 0;
}

int print_variable(const Arguments& arguments) {
  say(platform::environment(arguments.at(0)).value_or("(not set)"));
  return 0;
}

int print_folder(const Arguments& /*arguments*/) {
  say(platform::absolute("."));
  return 0;
}

int count_input(const Arguments& /*arguments*/) {
  int count = 0;
  while (std::fgetc(stdin) != EOF)
    ++count;
  say(std::to_string(count));
  return 0;
}

// Open descriptors beyond the standard streams, but for the one that reads the folder itself.
int count_descriptors(const Arguments& /*arguments*/) {
  int count = -1;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
    if (number_in(platform::path_text(entry.path().filename())) > 2) ++count;
  say(std::to_string(count));
  return 0;
}

int sleep_silently(const Arguments& arguments) {
  pause_for(number(arguments, 0));
  return 0;
}

int sleep_stubbornly(const Arguments& arguments) {
  ignore_requests_to_end();
  say("ready");
  pause_for(number(arguments, 0));
  return 0;
}

int close_early(const Arguments& arguments) {
  say("before");
  close_streams();
  pause_for(number(arguments, 0));
  return 7;
}

// Starts a sleeper that keeps the output open, then stays as long itself ("stay") or ends at once.
int start_grandchild(const Arguments& arguments) {
  start_sleeper(arguments.at(0));
  say("ready");
  if (arguments.at(1) == "stay") pause_for(number(arguments, 0));
  return 0;
}

int hold_lock(const Arguments& arguments) {
  platform::InstanceLock lock;
  switch (lock.acquire(arguments.at(0))) {
    case platform::InstanceLock::Result::held:
      say("held");
      break;
    case platform::InstanceLock::Result::taken_by_other:
      say("taken");
      break;
    case platform::InstanceLock::Result::failed:
      say("failed");
      break;
  }
  pause_for(number(arguments, 1));
  return 0;
}

int wait_for_interrupt(const Arguments& arguments) {
  platform::catch_interrupts();
  say("ready ");
  for (int waited = 0; waited < number(arguments, 0) && !platform::interrupted(); waited += 10)
    pause_for(10);
  say(platform::interrupted() ? "interrupted" : "nothing");
  return 0;
}

int end_with_status(const Arguments& arguments) { return number(arguments, 0); }

int end_by_signal(const Arguments& /*arguments*/) { return std::raise(SIGTERM); }

const std::map<std::string, std::function<int(const Arguments&)>> modes = {
    {"print", print_bytes},    {"pieces", print_pieces},
    {"args", print_arguments}, {"both", print_both_streams},
    {"env", print_variable},   {"folder", print_folder},
    {"stdin", count_input},    {"descriptors", count_descriptors},
    {"sleep", sleep_silently}, {"stubborn", sleep_stubbornly},
    {"close", close_early},    {"grandchild", start_grandchild},
    {"lock", hold_lock},       {"interrupt", wait_for_interrupt},
    {"exit", end_with_status}, {"signal", end_by_signal},
};

}  // namespace

int main(int argc, char** argv) {
#ifdef _WIN32
  _setmode(1, _O_BINARY);
#endif
  const Arguments words(argv, argv + argc);
  const auto mode = modes.find(words.size() > 1 ? words[1] : "");
  if (mode == modes.end()) return 64;
  return mode->second(Arguments(words.begin() + 2, words.end()));
}
