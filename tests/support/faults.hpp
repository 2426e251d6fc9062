// File operations that fail when a test says so: the n-th one from now, alone or with all that follow, as on
// a disk that is full or a drive that is pulled out.
#pragma once

namespace ferrowen::test {

class Faults {
 public:
  // The operation with this number (from 1) fails; with `all_that_follow` each later one too.
  Faults(int number, bool all_that_follow);
  ~Faults();
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;
  // Whether it came to that.
  [[nodiscard]] bool happened() const;
};

}  // namespace ferrowen::test
