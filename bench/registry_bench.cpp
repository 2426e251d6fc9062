// Time to collect 2,000 registered families: from the program's own store, and from the files of a Wine
// prefix that holds as many other keys as a fresh one. Prints two lines, "store" and "wine": the median in
// milliseconds, that of reading the same bytes alone as the peer, and the number of families found.
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>

#include "base/files.hpp"
#include "base/text.hpp"
#include "bench/median.hpp"
#include "pipeline/installed_maps.hpp"
#include "pipeline/registration_text.hpp"

namespace {

using namespace ferrowen;
namespace fs = std::filesystem;

constexpr int runs = 21;
constexpr int families = 2000;
constexpr int other_keys = 8900;  // as in a fresh prefix, with about 170 bytes each
constexpr const char* usual_time = " 1795273134\n#time=1dd79c8d3cab6fc\n";

class QuietPrompts : public Prompts {
 public:
  void tell(std::string_view text, Icon /*icon*/) override { std::cerr << text << "\n"; }
  Answer ask(std::string_view /*text*/, Buttons /*buttons*/, Icon /*icon*/) override { return Answer::no; }
  std::optional<std::string> choose_file(const FileQuestion& /*question*/) override { return {}; }
  std::optional<std::string> choose_folder(std::string_view /*title*/, const std::string& /*at*/) override {
    return {};
  }
  void show_file(const std::string& /*path*/) override {}
};

fs::path bench_folder() { return fs::temp_directory_path() / "ferrowen-bench-registry"; }

RegistrationFacts facts_of(int number) {
  const std::string name = "Map of a region " + std::to_string(number);
  const fs::path map_folder = bench_folder() / "maps" / replace_all(name, " ", "_");
  fs::create_directories(map_folder);
  const std::string folder = path_on_z(map_folder.string());
  constexpr std::string_view digits = "0123456789abcdef";
  const auto byte = [&](int value) {
    return std::string{digits[static_cast<std::size_t>(value >> 4 & 0xF)],
                       digits[static_cast<std::size_t>(value & 0xF)]};
  };
  return {name,
          byte(number & 0xFF) + "," + byte(number >> 8),
          folder,
          folder + R"(\osmmap.img)",
          folder + R"(\osmmap.tdb)",
          folder + R"(\osmmap.mdx)",
          folder + R"(\osmmap_mdr.img)",
          folder + R"(\typ\xmapnik.typ)",
          true};
}

// A registration text in the manner of Wine's own files.
std::string as_wine_text(const std::string& text) {
  std::string lines;
  for (const std::string_view line : split_lines(text)) {
    if (!line.starts_with('[')) {
      lines += std::string(line) + "\n";
      continue;
    }
    const std::string key(line.substr(1, line.size() - 2));
    lines += "\n[" +
             replace_all(replace_all(key, R"(HKEY_LOCAL_MACHINE\SOFTWARE)", "Software"), "\\", R"(\\)") +
             "]" + usual_time;
  }
  return lines;
}

std::string registrations(bool for_wine) {
  std::string all;
  for (int number = 1; number <= families; ++number) {
    const std::string text = registration_text(facts_of(number));
    const std::string body = text.substr(text.find('['));
    all += for_wine ? as_wine_text(body) : body;
  }
  return all;
}

std::string wine_text() {
  std::string text =
      "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\Machine\n\n#arch=win64\n\n";
  for (int number = 0; number < other_keys; ++number)
    text += R"([Software\\Classes\\CLSID\\{00000000-0000-0000-0000-)" + std::to_string(100000 + number) +
            R"(}\\InProcServer32])" + usual_time +
            "@=\"C:\\\\windows\\\\system32\\\\some.dll\"\n\"ThreadingModel\"=\"Both\"\n\n";
  return text + registrations(true);
}

template <typename Open>
void report(const char* name, const std::string& file, Open open) {
  QuietPrompts prompts;
  std::size_t found = 0, bytes = 0;
  const MessageTable messages;
  const double collecting = bench::median_milliseconds(runs, [&] {
    const std::unique_ptr<Registry> registry = open();
    found = installed_maps(*registry, messages, prompts).size();
  });
  const double reading = bench::median_milliseconds(runs, [&] { bytes = read_whole_file(file).size(); });
  std::cout << name << " " << collecting << " " << reading << " " << found << " " << bytes << "\n";
}

}  // namespace

int main() {
  const fs::path folder = bench_folder();
  fs::create_directories(folder / "prefix" / "dosdevices");
  std::error_code there_already;
  fs::create_directory_symlink("/", folder / "prefix" / "dosdevices" / "z:", there_already);
  const std::string store = (folder / "registry.reg").string();
  const std::string system = (folder / "prefix" / "system.reg").string();
  const std::string user = (folder / "prefix" / "user.reg").string();
  for (const auto& [path, text] :
       {std::pair(store, encode_registry_text("Windows Registry Editor Version 5.00\r\n\r\n" +
                                              registrations(false))),
        std::pair(system, wine_text()), std::pair(user, std::string("WINE REGISTRY Version 2\n"))}) {
    if (const Status written = safe_write(path, text); !written.ok()) {
      std::cerr << written.error << "\n";
      return 1;
    }
  }
  report("store", store, [&] { return embedded_registry(store); });
  report("wine", system, [&] { return wine_registry((folder / "prefix").string(), folder.string()); });
  fs::remove_all(folder);
  return 0;
}
