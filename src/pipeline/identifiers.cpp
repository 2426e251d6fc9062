#include "pipeline/identifiers.hpp"

#include <chrono>
#include <cmath>
#include <random>
#include <set>

#include "app/settings_file.hpp"
#include "base/text.hpp"
#include "pipeline/installed_maps.hpp"

namespace ferrowen {

namespace {

constexpr int draws_before_walking = 100'000;
constexpr std::size_t map_id_length = 8;
constexpr std::size_t map_id_group = 3;

double nearest_even(double number) {
  const double below = std::floor(number);
  const double rest = number - below;
  if (rest != 0.5) return std::floor(number + 0.5);
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1;
}

int base_of(const Settings& settings) {
  return settings.fid_from_base ? static_cast<int>(lenient_whole_number(settings.fid_base)) : lowest_fid;
}

}  // namespace

std::int16_t fid_candidate(double uniform, int base) {
  return static_cast<std::int16_t>(static_cast<long>(nearest_even(uniform * fid_range + base)));
}

std::optional<int> free_fid(int base, const std::string& registered, const std::string& avoided,
                            const std::function<double()>& uniform) {
  std::set<std::string> taken;
  for (const std::string& list : {registered, avoided}) {
    for (std::string& one : split(list, ","))
      taken.insert(std::move(one));
  }
  const auto is_free = [&](int candidate) {
    return candidate > 0 && taken.find(std::to_string(candidate)) == taken.end();
  };
  for (int draw = 0; draw < draws_before_walking; ++draw) {
    if (const int candidate = fid_candidate(uniform(), base); is_free(candidate)) return candidate;
  }
  // Almost every number is taken: look at each one, so that the search ends.
  for (int step = 0; step <= fid_range; ++step) {
    const int candidate = fid_candidate(static_cast<double>(step) / fid_range, base);
    if (is_free(candidate)) return candidate;
  }
  return std::nullopt;
}

bool is_fid(std::string_view text) {
  return is_digits(text) && lenient_number(text) > 0 && lenient_number(text) <= highest_fid;
}

std::string fid_number(std::string_view text) {
  return is_fid(text) ? std::to_string(lenient_whole_number(text)) : std::string(text);
}

void new_id(Workspace& workspace, Prompts& prompts, const Collect& collect) {
  if (workspace.settings.fid_locked) {
    prompts.tell("Please unlock FID", Icon::warning);
    return;
  }
  const bool nothing_collected =
      trim(workspace.registered_fids) == "," || trim(workspace.registered_fids).empty();
  if (workspace.settings.register_map && nothing_collected && collect) collect(workspace);
  const auto clock = std::chrono::system_clock::now().time_since_epoch().count();
  std::minstd_rand generator(static_cast<std::minstd_rand::result_type>(clock));
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  const std::optional<int> fid = free_fid(base_of(workspace.settings), workspace.registered_fids,
                                          workspace.avoided_fids, [&] { return uniform(generator); });
  if (!fid) {
    prompts.tell("No free family ID is left in this range.", Icon::critical);
    return;
  }
  workspace.settings.fid = std::to_string(*fid);
}

namespace {

// An empty FID is drawn; false when that cannot be, which has been told.
bool fid_is_there(Workspace& workspace, Prompts& prompts, const Collect& collect) {
  Settings& settings = workspace.settings;
  if (lenient_number(settings.fid) != 0) return true;
  if (settings.fid_locked) {
    prompts.tell("FID can't be 0 . Please unlock FID", Icon::warning);
    return false;
  }
  new_id(workspace, prompts, collect);
  if (lenient_number(settings.fid) == 0 && settings.auto_add_fid) new_id(workspace, prompts, collect);
  if (lenient_number(settings.fid) != 0) return true;
  prompts.tell(workspace.message(70) + "\r\nSee Settings to set AUTO ADD FID", Icon::warning);
  return false;
}

// A registered FID is replaced when the person wants that.
bool fid_is_unregistered(Workspace& workspace, Prompts& prompts, const Collect& collect) {
  const Settings& settings = workspace.settings;
  if (!comma_list_holds(workspace.registered_fids, settings.fid)) return true;
  const std::string question =
      "FID " + settings.fid + " " + workspace.message(175) + "\r\nLet ferrowen create new FID?";
  if (prompts.ask(question) == Answer::yes) {
    const std::string taken = settings.fid;
    new_id(workspace, prompts, collect);
    return settings.fid != taken;  // why there is no other one has been told
  }
  prompts.tell(workspace.message(198));
  if (const Status saved = savedata(workspace); !saved.ok()) prompts.tell(saved.error, Icon::critical);
  return false;
}

// A product of this name is installed: its FID is in use.
bool name_is_unused(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  if (!is_registered_product(workspace, settings.map_name)) return true;
  const std::string exists = "FID " + settings.fid + workspace.message(228);
  if (settings.register_map) {
    prompts.tell(exists + ". Cannot Continue.\r\n\r\nClick green 'new' to create new FID.", Icon::warning);
    return false;
  }
  return prompts.ask(exists + " This may be on your device.Continue?") == Answer::yes;
}

}  // namespace

bool check_fid(Workspace& workspace, Prompts& prompts, const Collect& collect) {
  Settings& settings = workspace.settings;
  settings.fid = trim(settings.fid);
  if (settings.always_collect_fids && collect) collect(workspace);
  if (!fid_is_there(workspace, prompts, collect)) return false;
  if (!is_fid(settings.fid)) {
    prompts.tell(workspace.message(70), Icon::warning);
    return false;
  }
  settings.fid = fid_number(settings.fid);
  return fid_is_unregistered(workspace, prompts, collect) && name_is_unused(workspace, prompts);
}

std::string map_id_problem(const std::string& id) {
  if (lenient_number(id) == 0) return "Map ID:" + id + "?";
  return id.size() == map_id_length ? "" : "8 numbers?";
}

bool check_map_id(const Workspace& workspace, Prompts& prompts) {
  const Settings& settings = workspace.settings;
  const std::string& id = settings.map_id;
  if (const std::string problem = map_id_problem(id); !problem.empty()) {
    prompts.tell(problem, Icon::warning);
    return false;
  }
  const bool on_device = comma_list_holds(workspace.device_map_ids, id);
  const bool related = contains(workspace.device_map_ids, id.substr(0, map_id_group) + ",");
  if (!settings.show_map_id_warnings || !(on_device || related)) return true;
  if (on_device && settings.map_id_locked)
    prompts.tell("Caution!\r\nYour device may contain map id:" + id + "\r\nUnlock Map ID.", Icon::warning);
  else if (!settings.map_id_locked && settings.device_image)
    prompts.tell("Changing Map ID to avoid possible conflict.");
  return true;
}

Registered id_exists(Workspace& workspace, Prompts& prompts, const Collect& collect,
                     std::string_view previous_name) {
  const Settings& settings = workspace.settings;
  const bool nothing_collected = trim(workspace.registered_fids) == ",";
  if (collect && (settings.always_collect_fids || nothing_collected)) collect(workspace);
  if (!settings.register_map) return Registered::free;
  const bool is_other = settings.map_name != previous_name;
  if (is_other && is_registered_product(workspace, settings.map_name)) {
    workspace.product_to_replace = std::string(trim(settings.map_name));
    prompts.tell("Mapname '" + settings.map_name + "'" + workspace.message(16), Icon::warning);
    return Registered::name_exists;
  }
  if (!comma_list_holds(workspace.registered_fids, fid_number(settings.fid))) return Registered::free;
  prompts.tell("FID " + settings.fid + " exists in Basecamp. ", Icon::warning);
  return Registered::fid_exists;
}

bool confirm_new_map(Workspace& workspace, Prompts& prompts, const std::string& built_name,
                     const Collect& collect) {
  if (built_name.empty() || workspace.settings.confirmations_off) return true;
  const std::string question =
      "A map has been created but not uploaded!\r\n '" + built_name + "'\r\n Create a new map anyway?";
  if (prompts.ask(question) != Answer::yes) return false;
  // Only behind the first question: at every map it would be asked for nothing.
  if (prompts.ask("Reset FID & Map ID?") != Answer::yes) return true;
  new_id(workspace, prompts, collect);
  if (const Status saved = savedata(workspace); !saved.ok()) prompts.tell(saved.error, Icon::critical);
  return true;
}

}  // namespace ferrowen
