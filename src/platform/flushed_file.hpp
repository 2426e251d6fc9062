// A file that is written piece by piece and is on the disk when it is finished.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ferrowen::platform {

// Every routine returns the system's reason for a failure and "" for success. Closed when it is destroyed.
class FlushedFile {
 public:
  FlushedFile() = default;
  ~FlushedFile();
  FlushedFile(const FlushedFile&) = delete;
  FlushedFile& operator=(const FlushedFile&) = delete;

  // A new file; one that is there already is emptied.
  std::string open(const std::string& path);
  std::string write(std::string_view bytes);
  // Flushes and closes. Where the system allows it, its memory of the file is dropped: what is read from now
  // on comes from the disk.
  std::string finish();

 private:
  std::intptr_t m_handle = -1;
};

}  // namespace ferrowen::platform
