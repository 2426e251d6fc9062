// A stand-in for osmconvert and 7-Zip. As osmconvert it writes its inputs, one behind the other, to the file
// behind "-o=", framed as that format asks for; an input that begins with "broken" leaves a part of itself
// there and fails. As 7-Zip ("e ...") it unpacks every archive of the working folder, each entry as zeros of
// its size.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

// The words of the command line are UTF-8 on every system.
fs::path path_of(const std::string& text) { return fs::path(std::u8string(text.begin(), text.end())); }

std::string read_text(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool write_text(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  return file << text && file.flush();
}

std::size_t number_at(const std::string& bytes, std::size_t at, std::size_t width) {
  std::size_t number = 0;
  while (width-- > 0)
    number = number * 256 + static_cast<unsigned char>(bytes.at(at + width));
  return number;
}

bool unpack(const fs::path& archive) {
  constexpr std::size_t size_field = 24, length_field = 28, name_field = 46;
  const std::string bytes = read_text(archive);
  bool good = true;
  for (std::size_t at = bytes.find("PK\1\2"); at != std::string::npos; at = bytes.find("PK\1\2", at + 1)) {
    const std::string name = bytes.substr(at + name_field, number_at(bytes, at + length_field, 2));
    const std::string content(number_at(bytes, at + size_field, 4), '\0');
    good = write_text(path_of(name).filename(), content) && good;
  }
  return good;
}

int unpack_all() {
  std::vector<fs::path> archives;
  for (const fs::directory_entry& entry : fs::directory_iterator("."))
    if (entry.path().extension() == ".zip") archives.push_back(entry.path());
  return std::all_of(archives.begin(), archives.end(), unpack) && !archives.empty() ? 0 : 2;
}

std::string pbf_block(const std::string& type, const std::string& bytes) {
  std::string head = "\x0a" + std::string(1, static_cast<char>(type.size())) + type + "\x18";
  for (std::size_t size = bytes.size(); size > 0; size >>= 7U)
    head += static_cast<char>((size & 0x7FU) | (size > 0x7FU ? 0x80U : 0U));
  return std::string(3, '\0') + static_cast<char>(head.size()) + head + bytes;
}

std::string framed(const fs::path& target, const std::string& bytes) {
  if (target.extension() == ".o5m") return bytes + '\xfe';
  return target.extension() == ".pbf" ? pbf_block("OSMHeader", "h") + pbf_block("OSMData", bytes) : bytes;
}

int convert(const std::vector<std::string>& words) {
  std::string inputs, target;
  bool good = true;
  for (const std::string& word : words) {
    if (word.starts_with("-o=")) target = word.substr(3);
    if (word.starts_with("-B=")) good = good && read_text(path_of(word.substr(3))).starts_with("area");
    if (word.starts_with("-")) continue;
    if (!fs::exists(path_of(word))) return 2;
    std::string input = read_text(path_of(word));
    if (input.ends_with('\xfe')) input.pop_back();
    if (input.starts_with("broken")) {
      input.resize(input.size() / 2);
      good = false;
    }
    inputs += input;
  }
  return write_text(path_of(target), framed(path_of(target), inputs)) && good ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.empty()) return 1;
  const int status = words.front() == "e" ? unpack_all() : convert(words);
  if (status != 0) std::cerr << "stand-in: failed\n";
  return status;
}
