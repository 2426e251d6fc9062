#ifndef _WIN32
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "child_program.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

namespace {

ProcessRequest shell(const std::string& commands) { return request_for("/bin/sh", {"-c", commands}); }

}  // namespace

TEST_CASE("a child gets the C.UTF-8 locale unless the request says otherwise") {
  ProcessRequest request = shell("echo $LC_ALL");
  CHECK(run(request).output == "C.UTF-8\n");
  request.environment = {{"LC_ALL", "overwritten"}, {"LC_ALL", "de_DE.UTF-8"}};
  CHECK(run(request).output == "de_DE.UTF-8\n");
}

TEST_CASE("a child gets no descriptor of this process and default signals") {
  const int leaky = ::open("/dev/null", O_RDONLY);
  const int saved = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
  const auto old_pipe = std::signal(SIGPIPE, SIG_IGN);
  const auto old_child = std::signal(SIGCHLD, SIG_IGN);
  ::close(STDIN_FILENO);

  CHECK(run(shell("test -e /proc/$$/fd/" + std::to_string(leaky))).status == 1);
  CHECK(run(request_for("ferrowen-no-such-program")).started == StartResult::not_started);
  CHECK(run(shell("kill -PIPE $$; sleep 1")).status == 128 + SIGPIPE);

  ::dup2(saved, STDIN_FILENO);
  ::close(leaky);
  CHECK((std::signal(SIGPIPE, old_pipe) == SIG_IGN));
  CHECK((std::signal(SIGCHLD, old_child) != SIG_ERR));
}

TEST_CASE("a child that does not want to end is killed") {
  ChildProcess child;
  REQUIRE(child.start(shell("trap '' TERM; echo ready; sleep 15; echo still there")) == StartResult::started);
  REQUIRE(reads(child, "ready\n"));
  child.end_group(200);
  CHECK(read_all(child, 5000).empty());
  CHECK(child.wait() == 128 + SIGKILL);
}

#ifdef __linux__
TEST_CASE("the group of a child is ended as a left-over only when its parent is gone") {
  const std::string commands = "trap 'exit 3' TERM; echo ready; while :; do sleep 0.1; done";
  ChildProcess child;
  REQUIRE(child.start(shell(commands)) == StartResult::started);
  REQUIRE(reads(child, "ready\n"));
  CHECK_FALSE(end_orphaned_group(child.id(), own_process_id(), commands, 100));  // the parent is here
  CHECK_FALSE(end_orphaned_group(child.id(), child.id(), "another script", 100));
  CHECK_FALSE(end_orphaned_group(own_process_id(), child.id(), "", 100));
  CHECK_FALSE(child.poll_exit());
  // As if another process had started it.
  CHECK(end_orphaned_group(child.id(), child.id(), commands, 300));
  CHECK(child.wait() == 3);
}
#endif

TEST_CASE("the reasons of a start that fails are told apart") {
  const ferrowen::test::TempFolder folder("reasons");
  const std::string broken = folder.write("broken",
                                          "\x7f"
                                          "ELF");
  REQUIRE(::chmod(broken.c_str(), 0755) == 0);
  const std::pair<ProcessRequest, std::string> cases[] = {
      {request_for("ferrowen-no-such-program"), "No such file or directory"},
      {request_for(folder.write("plain", "text\n")), "Permission denied"},
      {request_for(broken), "Exec format error"},
      {request_for(child_path(), {}, folder / "none"), folder / "none" + ": No such file or directory"},
  };
  for (const auto& [request, reason] : cases) {
    ChildProcess child;
    CHECK(child.start(request) == StartResult::not_started);
    CHECK(child.error() == reason);
  }
}
#endif
