#include "pipeline/mkgmap_command.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "pipeline/tiles/splitter.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view forbidden_in_names = "\\/:*?\"<>|";
constexpr const char* sea_method = "multipolygon";
constexpr const char* sea_extras = ",extend-sea-sectors,close-gaps=6000,floodblocker";

// Appends to a command; knows the options text, so that nothing of it is said twice.
class CommandWriter {
 public:
  CommandWriter(const Settings& settings, const OptionsText& options)
      : m_settings(settings), m_free_options(options.options) {}

  Command write(const CommandFiles& files) {
    java_call();
    identity();
    names();
    style();
    map_data();
    output();
    products();
    description();
    add(option("--draw-priority", std::to_string(m_settings.draw_priority)));
    std::vector<Argument>& arguments = m_command.arguments;
    arguments.insert(arguments.end(), m_free_options.begin(), m_free_options.end());
    if (m_settings.device_image) add(word("--gmapsupp"));
    inputs(files);
    return std::move(m_command);
  }

 private:
  const Settings& m_settings;
  const std::vector<Argument>& m_free_options;
  Command m_command;

  void add(Argument argument) { m_command.arguments.push_back(std::move(argument)); }

  void java_call() {
    std::vector<Argument> words =
        parse_arguments(java_prefix(memory_of_java_options(m_settings.java_options)));
    m_command.program = words.front().name + words.front().value;
    words.erase(words.begin());
    m_command.arguments = std::move(words);
    add(quoted(m_settings.mkgmap_jar));
  }

  void identity() {
    if (m_settings.map_name_option) add(option("--mapname", std::string(trim(m_settings.map_id))));
    add(option("--family-id", std::string(trim(m_settings.fid))));
    if (!m_settings.address_search) return;
    const std::string country(trim(m_settings.country));
    if (!country.empty()) add(option("--country-name", country));
    index_once();
  }

  void index_once() {
    const bool is_there =
        has_option_named(m_command.arguments, "--index") || has_option_named(m_free_options, "--index");
    if (!is_there) add(word("--index"));
  }

  void names() {
    const std::string name(trim(m_settings.map_name));
    add(quoted_option("--series-name", name));
    add(quoted_option("--family-name", name));
    const std::string overview(trim(m_settings.overview_name));
    if (!overview.empty()) add(quoted_option("--overview-mapname", overview));
    add(word("--remove-short-arcs"));
  }

  void style() {
    const std::string name(trim(m_settings.style));
    if (name.empty() || name == "default") return;
    add(quoted_option("--style-file", m_settings.styles_folder));
    add(option("--style", name));
  }

  void map_data() {
    if (m_settings.sea) {
      const bool ready_sea = has_option_named(m_free_options, "--precomp-sea");
      add(option("--generate-sea", std::string(sea_method) + (ready_sea ? "" : sea_extras)));
    }
    if (m_settings.unicode) add(word("--unicode"));
    add(word("--keep-going"));
    add(word("--check-roundabouts"));
    add(option("--drive-on", m_settings.drive_on_left ? "left" : "right"));
    if (m_settings.use_max_jobs) max_jobs();
  }

  // Without a number mkgmap uses every core; 0 it does not take.
  void max_jobs() {
    const bool is_set = m_settings.max_jobs > 0;
    add(is_set ? option("--max-jobs", std::to_string(m_settings.max_jobs)) : word("--max-jobs"));
  }

  void output() { add(quoted_option("--output-dir", m_settings.output_folder)); }

  void products() {
    if (m_settings.transparent) add(word("--transparent"));
    index_once();
    if (m_settings.routing) add(word("--route"));
    if (m_settings.installer) add(word("--nsis"));
    if (m_settings.pois_to_areas) add(word("--add-pois-to-areas"));
    if (m_settings.pois_to_lines) {
      add(word("--add-pois-to-lines"));
      add(word("--merge-lines"));
    }
    // Registration needs the index files on the disk; a device image alone would take them all in.
    if (m_settings.tdb_file || m_settings.register_map) add(word("--tdbfile"));
  }

  void description() {
    const std::string text(trim(m_settings.description));
    if (!text.empty()) add(quoted_option("--description", text));
  }

  void argument_file(const std::string& path) {
    if (path.empty()) return;
    add(word("-c"));
    add(quoted(path));
  }

  // The tiles' own descriptions would win over the one given before them: it is said once more.
  void inputs(const CommandFiles& files) {
    argument_file(files.contours);
    argument_file(files.dem);
    argument_file(files.tiles);
    if (!files.typ.empty()) add(quoted(files.typ));
    description();
  }
};

}  // namespace

Command mkgmap_command(const Settings& settings, const OptionsText& options, const CommandFiles& files) {
  return CommandWriter(settings, options).write(files);
}

std::string overview_name(const Settings& settings) {
  const std::string_view name = trim(settings.overview_name);
  return std::string(name.empty() ? "osmmap" : name);
}

std::string overview_name_problem(std::string_view name, std::string_view message_33) {
  const auto found = std::find_if(name.begin(), name.end(), [](char c) {
    return contains(forbidden_in_names, std::string_view(&c, 1)) || (c >= '\0' && c < ' ');
  });
  if (found == name.end()) return "";
  const bool is_visible = *found >= ' ';
  return std::string(message_33) + (is_visible ? std::string(1, *found) : std::to_string(+*found));
}

}  // namespace ferrowen
