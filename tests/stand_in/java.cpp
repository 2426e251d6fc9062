// A stand-in for Java with splitter.jar and mkgmap.jar: leaves the files that the real tools would leave, or
// fails in one of their ways. How it behaves is told by the file "stand-in-mode" in the working folder. Where
// a folder "prepared" stands beside the jar, what the real tools once left is copied from it ("split",
// "build").
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

std::string read_text(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A missing result must not look like a mode of failing.
void write_text(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) std::cerr << "stand-in: cannot write a file\n";
}

// The words of the command line are UTF-8 on every system.
fs::path path_of(const std::string& text) { return fs::path(std::u8string(text.begin(), text.end())); }

std::string mode() {
  std::string text = read_text("stand-in-mode");
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
    text.pop_back();
  return text;
}

std::string option_value(const Words& words, const std::string& name) {
  std::string value;
  for (const std::string& word : words) {
    if (word.starts_with(name)) value = word.substr(name.size());
  }
  return value;
}

bool has_word(const Words& words, const std::string& wanted) {
  for (const std::string& word : words) {
    if (word == wanted) return true;
  }
  return false;
}

// As the splitter writes it: local time, English names.
std::string date_now() {
  const std::time_t now = std::time(nullptr);
  char text[64];
  const std::size_t length =
      std::strftime(text, sizeof text, "%a %b %d %H:%M:%S CET %Y", std::localtime(&now));
  return {text, length};
}

void sleep_for_minutes() { std::this_thread::sleep_for(std::chrono::minutes(5)); }

// False where nothing is prepared for this tool. The copies are as new as what the real tool would write.
bool leave_prepared(const Words& words) {
  const auto jar = std::find_if(words.begin(), words.end(),
                                [](const std::string& word) { return word.ends_with(".jar"); });
  if (jar == words.end()) return false;
  const char* const tool = jar->ends_with("splitter.jar") ? "split" : "build";
  const fs::path kept = path_of(*jar).parent_path() / "prepared" / tool;
  if (!fs::is_directory(kept)) return false;
  const fs::path target = path_of(option_value(words, "--output-dir="));
  for (const fs::directory_entry& entry : fs::directory_iterator(kept))
    write_text(target / entry.path().filename(), read_text(entry.path()));
  return true;
}

// Three tiles side by side, from the map ID upwards.
int split(const Words& words) {
  const fs::path folder = path_of(option_value(words, "--output-dir="));
  const long first = std::stol(option_value(words, "--mapid="));
  std::string areas = "# List of areas\n# Generated " + date_now() + "\n#\n";
  std::string blocks = "#\n# This file can be given to mkgmap using the -c option\n#\n";
  for (long i = 0; i < 3; ++i) {
    const std::string number = std::to_string(first + i);
    areas += number + ": 2197504," + std::to_string(444416 + i * 6144) + " to 2203648," +
             std::to_string(450560 + i * 6144) + "\n";
    blocks += "mapname: " + number + "\ndescription: Tile " + number + "\ninput-file: " + number + ".o5m\n\n";
    const bool stays_empty = mode() == "empty-tile" && i == 1;
    write_text(folder / (number + ".o5m"), stays_empty ? "" : "tile " + number);
  }
  write_text(folder / "areas.list", areas);
  write_text(folder / "areas.poly", "area\n1\n  9.5  47.1\nEND\nEND\n");
  write_text(folder / "template.args", blocks);
  std::cout << "3 areas\n";
  return 0;
}

void write_images(const Words& words, const fs::path& folder, const fs::path& argument_file) {
  std::ifstream file(argument_file, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.starts_with("mapname:")) continue;
    const std::string number = line.substr(line.find_first_not_of(' ', 8));
    if (mode() == "missing-image" && number.ends_with('6')) continue;
    write_text(folder / (number + ".img"), "image " + number);
    if (has_word(words, "--route")) write_text(folder / ("ovm_" + number + ".img"), "overview");
  }
}

int build(const Words& words) {
  const fs::path folder = path_of(option_value(words, "--output-dir="));
  std::cerr << "Mkgmap version 4905\n";
  if (mode() == "style-error") {
    std::cerr << "SEVERE (global): Error in style: Error: (lines:304): Unrecognised type command 'foo'\n";
    return 1;
  }
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (words[i] == "-c") write_images(words, folder, path_of(words[i + 1]));
  }
  if (mode() == "hang") sleep_for_minutes();
  if (has_word(words, "--gmapsupp")) write_text(folder / "gmapsupp.img", "device image");
  if (mode() == "severe") std::cerr << "SEVERE (DEM): something is odd\n";
  std::cerr << "SEVERE (RoundaboutCheck): always there\n";
  std::cerr << "Number of MapFailedExceptions: " << (mode() == "exceptions" ? 1 : 0) << "\n";
  return 0;
}

// Versions and help texts. The help holds words that end other captured runs.
bool answer(const Words& words) {
  const bool is_mkgmap = words[1].ends_with("mkgmap.jar");
  if (has_word(words, "--version"))
    std::cerr << (mode() == "rubbish" ? "hello\n"
                  : is_mkgmap         ? "Mkgmap version 4905\n4905\n"
                                      : "splitter 653 compiled 2022-12-27T06:20:39+0000\n");
  else if (has_word(words, "--help=options"))
    std::cout << (mode() == "rubbish" ? "hello\n"
                                      : "=== File options ===\n\n--route\n    Could not be reduced.\n");
  else if (has_word(words, "--help"))
    std::cout << "Options:\n --mixed    reduce.\n --output   The could not type.\n";
  else
    return false;
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  const Words words(arguments + 1, arguments + count);
  if (has_word(words, "-version")) {
    std::cerr << "openjdk version \"17.0.21\" 2026-11-17\nOpenJDK Runtime Environment (build 17.0.21+2)\n";
    return 0;
  }
  if (words.size() > 2 && answer(words)) return 0;
  std::string received;
  for (const std::string& word : words)
    received += word + "\n";
  write_text("stand-in-arguments", received);
  if (mode() == "out-of-memory") {
    std::cerr << "java.lang.OutOfMemoryError: Java heap space\n" << std::flush;
    sleep_for_minutes();
  }
  if (mode() == "fail") {
    std::cerr << "Error: input file doesn't exist or is not a readable file: x\n";
    return 1;
  }
  if (leave_prepared(words)) return 0;
  for (const std::string& word : words) {
    if (word.ends_with("splitter.jar")) return split(words);
    if (word.ends_with("mkgmap.jar")) return build(words);
  }
  return 1;
}
