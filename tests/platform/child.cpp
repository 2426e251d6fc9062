// The child of the process tests: one small program that behaves, or misbehaves, as its first argument says.
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "platform/paths.hpp"
#include "platform/system.hpp"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <process.h>
#else
#include <unistd.h>
#endif

namespace platform = ferrowen::platform;

namespace {

using Arguments = std::vector<std::string>;

int number(const std::string& text) {
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

void pause_for(const std::string& milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(number(milliseconds)));
}

void say(const std::string& text, std::FILE* stream = stdout) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
  if (!written || std::fflush(stream) != 0) std::exit(65);
}

void start_sleeper(const std::string& milliseconds) {
  const std::string program = platform::executable_path();
#ifdef _WIN32
  _spawnl(_P_NOWAIT, program.c_str(), "child", "sleep", milliseconds.c_str(), nullptr);
#else
  if (fork() == 0) execl(program.c_str(), "child", "sleep", milliseconds.c_str(), nullptr);
#endif
}

void print_bytes(const Arguments& words) {
  std::string text;
  for (int i = 0; i < number(words.at(0)); ++i)
    text += static_cast<char>(i % 251);
  say(text);
}

void print_pieces(const Arguments& words) {
  for (int i = 0; i < number(words.at(0)); ++i) {
    say("piece " + std::to_string(i) + "\n");
    pause_for(words.at(1));
  }
}

void print_arguments(const Arguments& words) {
  for (const std::string& word : words)
    say(word + '\0');
}

void print_both_streams(const Arguments& /*words*/) {
  say("out ");
  say("err ", stderr);
  say("out");
}

void close_early(const Arguments& words) {
  pause_for(words.at(0));
  say("before");
  for (std::FILE* stream : {stdout, stderr})
    if (std::fclose(stream) != 0) std::exit(65);
  pause_for(words.at(1));
  std::exit(7);
}

// Starts a sleeper that keeps the output open, then stays for a while itself.
void start_grandchild(const Arguments& words) {
  start_sleeper(words.at(0));
  say("ready");
  pause_for(words.at(1));
}

void hold_lock(const Arguments& words) {
  platform::InstanceLock lock;
  say(lock.acquire(words.at(0)) == platform::InstanceLock::Result::held ? "held" : "taken");
  pause_for(words.at(1));
}

const std::map<std::string, void (*)(const Arguments&)> modes = {
    {"print", print_bytes},
    {"pieces", print_pieces},
    {"args", print_arguments},
    {"both", print_both_streams},
    {"env", [](const Arguments& words) { say(platform::environment(words.at(0)).value_or("(not set)")); }},
    {"folder", [](const Arguments& /*words*/) { say(platform::absolute(".")); }},
    {"stdin", [](const Arguments& /*words*/) { say(std::fgetc(stdin) == EOF ? "at its end" : "open"); }},
    {"sleep", [](const Arguments& words) { pause_for(words.at(0)); }},
    {"close", close_early},
    {"grandchild", start_grandchild},
    {"lock", hold_lock},
    {"exit", [](const Arguments& words) { std::exit(number(words.at(0))); }},
};

}  // namespace

int main(int argc, char** argv) {
#ifdef _WIN32
  _setmode(1, _O_BINARY);
#endif
  const Arguments words(argv, argv + argc);
  const auto mode = modes.find(words.size() > 1 ? words[1] : "");
  if (mode == modes.end()) return 64;
  mode->second(Arguments(words.begin() + 2, words.end()));
  return 0;
}
