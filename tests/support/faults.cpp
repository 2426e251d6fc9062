// The routines of the system that change or open files, in front of the system's own: those of the standard
// library are called through them too.
#include "support/faults.hpp"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace ferrowen::test {

namespace {

int operations_left = 0;  // until the one that fails; 0: none does
bool follow = false;
bool has_happened = false;

bool fails() {
  if (has_happened) {
    if (follow) errno = ENOSPC;
    return follow;
  }
  if (operations_left == 0 || --operations_left > 0) return false;
  has_happened = true;
  errno = ENOSPC;
  return true;
}

template <typename Routine>
Routine* system_routine(const char* name) {
  return reinterpret_cast<Routine*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

Faults::Faults(int number, bool all_that_follow) {
  operations_left = number;
  follow = all_that_follow;
  has_happened = false;
}

Faults::~Faults() {
  operations_left = 0;
  has_happened = false;
}

bool Faults::happened() const { return has_happened; }

}  // namespace ferrowen::test

#define FERROWEN_FAULTY(type, name, parameters, words, failure)                           \
  extern "C" type name parameters {                                                       \
    if (ferrowen::test::fails()) return failure;                                          \
    static auto* const original = ferrowen::test::system_routine<type parameters>(#name); \
    return original words;                                                                \
  }

FERROWEN_FAULTY(ssize_t, write, (int file, const void* bytes, size_t size), (file, bytes, size), -1)
FERROWEN_FAULTY(int, rename, (const char* from, const char* to) noexcept, (from, to), -1)
FERROWEN_FAULTY(int, remove, (const char* path) noexcept, (path), -1)
FERROWEN_FAULTY(int, unlink, (const char* path) noexcept, (path), -1)
FERROWEN_FAULTY(int, rmdir, (const char* path) noexcept, (path), -1)
FERROWEN_FAULTY(int, mkdir, (const char* path, mode_t mode) noexcept, (path, mode), -1)
FERROWEN_FAULTY(int, link, (const char* from, const char* to) noexcept, (from, to), -1)
// The disks of test machines need not be waited for.
extern "C" int fsync(int /*file*/) { return ferrowen::test::fails() ? -1 : 0; }
FERROWEN_FAULTY(FILE*, fopen64, (const char* path, const char* mode), (path, mode), nullptr)
FERROWEN_FAULTY(DIR*, opendir, (const char* path), (path), nullptr)

extern "C" int open(const char* path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const auto mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if (ferrowen::test::fails()) return -1;
  static auto* const original = ferrowen::test::system_routine<int(const char*, int, ...)>("open");
  return original(path, flags, mode);
}
