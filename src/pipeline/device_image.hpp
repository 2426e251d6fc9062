// The device image: after a build that made gmapsupp.img, the image goes to its target folder (or drive)
// under its own name.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/workspace.hpp"
#include "base/prompts.hpp"
#include "pipeline/tiles/splitter.hpp"
#include "platform/drives.hpp"

namespace ferrowen {

inline constexpr const char* device_image_name = "gmapsupp.img";

// Times of the images that were there when a build started; nothing where there was none.
struct ImageDates {
  std::optional<double> output;  // in the output folder
  std::optional<double> folder;  // in the gmapsupp folder
};
ImageDates image_dates(const Settings& settings);
// start_findgmapsup: the path of the image that is new since then; "" when there is none.
std::string start_findgmapsup(const Settings& settings, const ImageDates& before);

// Name of the image without its ending; never blank, never a path.
std::string image_base_name(const Settings& settings);
// "", "A" to "Z", "AA" to "AZ", "AAA", ...
std::string image_suffix(std::size_t number);

struct ImageTarget {
  std::string path;
  bool ask = false;  // a file is there, and the person decides whether it goes
};
ImageTarget image_target(const Settings& settings, const std::string& folder, bool script_running,
                         const std::function<bool(const std::string&)>& exists);

// The folder that images are copied to: that of the settings, else the gmapsupp folder.
std::string image_folder(const Settings& settings);
// Where on a plugged-in drive an image belongs: its "Garmin" folder when it has one.
std::string image_folder_on(const platform::Drive& drive);

// Before a build: whether its image can be brought anywhere. A missing folder is told, and the person may
// choose another one for this build. False when there is none.
bool check_image_folder(Workspace& workspace, Prompts& prompts);

struct CopyFacts {
  std::uint64_t size = 0;                     // of the image
  std::uint64_t old_size = 0;                 // of the file that it replaces
  std::optional<std::uint64_t> free;          // bytes free at the target
  std::optional<std::uint64_t> largest_file;  // that the target's file system holds
};
// Why the copy cannot be made; "" when it can.
std::string copy_obstacle(const CopyFacts& facts, const std::string& folder);

struct ImageCopy {
  StageResult result = StageResult::done;
  std::string path;  // of the image in its new place; "" when it was not copied
};

// The stage: copies the image of the build before, tells where it went and, unless it is to be kept, removes
// it from the output folder once the copy has been read back whole. A failure leaves it there.
ImageCopy gmapsupp(const Workspace& workspace, Prompts& prompts, Progress& progress,
                   const ImageDates& before);

}  // namespace ferrowen
