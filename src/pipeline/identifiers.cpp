#include "pipeline/identifiers.hpp"

#include <chrono>
#include <cmath>
#include <random>

#include "app/settings_file.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr int draws_before_walking = 100'000;

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
  const auto is_free = [&](int candidate) {
    const std::string text = std::to_string(candidate);
    return candidate > 0 && !comma_list_holds(registered, text) && !comma_list_holds(avoided, text);
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

void new_id(Workspace& workspace, Prompts& prompts) {
  if (workspace.settings.fid_locked) {
    prompts.tell("Please unlock FID", Icon::warning);
    return;
  }
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

bool check_fid(Workspace& workspace, Prompts& prompts) {
  Settings& settings = workspace.settings;
  settings.fid = trim(settings.fid);
  if (lenient_number(settings.fid) == 0) {
    if (settings.fid_locked) {
      prompts.tell("FID can't be 0 . Please unlock FID", Icon::warning);
      return false;
    }
    new_id(workspace, prompts);
    if (lenient_number(settings.fid) == 0) return false;
  }
  if (!settings.fid.empty() && !is_fid(settings.fid)) {
    prompts.tell(workspace.message(70), Icon::warning);
    return false;
  }
  if (comma_list_holds(workspace.registered_fids, settings.fid)) {
    const std::string question =
        "FID " + settings.fid + " " + workspace.message(175) + "\r\nLet ferrowen create new FID?";
    if (prompts.ask(question) != Answer::yes) {
      prompts.tell(workspace.message(198));
      if (const Status saved = savedata(workspace); !saved.ok()) prompts.tell(saved.error, Icon::critical);
      return false;
    }
    new_id(workspace, prompts);
  }
  if (settings.fid.empty() && settings.auto_add_fid) new_id(workspace, prompts);
  if (!settings.fid.empty()) return true;
  prompts.tell(workspace.message(70) + "\r\nSee Settings to set AUTO ADD FID", Icon::warning);
  return false;
}

}  // namespace ferrowen
