// An MP file on its way to the disk: written piece by piece beside its place, and put there when it is whole.
// A full disk or a stop leaves the file that was there before.
#pragma once

#include <string>
#include <string_view>

#include "base/status.hpp"
#include "platform/flushed_file.hpp"

namespace ferrowen {

class MpFile {
 public:
  explicit MpFile(std::string path) : m_path(std::move(path)) {}
  ~MpFile();  // removes what was not put in place
  MpFile(const MpFile&) = delete;
  MpFile& operator=(const MpFile&) = delete;

  // False when it could not be written; `problem` then says why. The file is made by the first piece.
  bool write(std::string_view text);
  Status put_in_place();
  [[nodiscard]] const std::string& problem() const { return m_problem; }

 private:
  [[nodiscard]] std::string neighbour() const { return m_path + ".new"; }

  std::string m_path, m_problem;
  platform::FlushedFile m_file;
  bool m_is_open = false, m_is_in_place = false;
};

}  // namespace ferrowen
