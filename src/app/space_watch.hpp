// Looks out for a disk that has run full under a tool that does not end of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ferrowen {

// The first of the folders whose volume has next to no space left; "" when there is none.
std::string full_folder(const std::vector<std::string>& folders);
// Bytes of all files that lie in the folders themselves.
std::uint64_t bytes_in(const std::vector<std::string>& folders);

// Decides from what is seen in the course of a run.
class SpaceWatch {
 public:
  // Takes the time in seconds, the full folder ("" for none) and the number of bytes that the tool has left
  // so far. True once a folder has been full for some seconds in which nothing new has come.
  bool is_stuck(double now, const std::string& full, std::uint64_t left);

 private:
  std::string m_full;
  std::uint64_t m_left = 0;
  double m_since = 0;
};

}  // namespace ferrowen
