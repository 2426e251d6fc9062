#ifndef _WIN32
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "child_program.hpp"
#include "platform/files.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

TEST_CASE("a child gets the C.UTF-8 locale unless the request says otherwise") {
  ProcessRequest request = child_request({"env", "LC_ALL"});
  CHECK(run(request).output == "C.UTF-8");
  request.environment = {{"LC_ALL", "de_DE.UTF-8"}};
  CHECK(run(request).output == "de_DE.UTF-8");
}

TEST_CASE("a child that a signal ended has 128 and the signal's number as its status") {
  CHECK(run(child_request({"signal"})).status == 128 + SIGTERM);
}

TEST_CASE("no descriptor of this process reaches the child") {
  const int leaky = ::open("/dev/null", O_RDONLY);
  REQUIRE(leaky > 2);
  CHECK(run(child_request({"descriptors"})).output == "0");
  ::close(leaky);
}

TEST_CASE("a child starts with default signals whatever this process ignores or blocks") {
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
  struct sigaction ignore {};
  struct sigaction old_term {};
  struct sigaction old_pipe {};
  struct sigaction old_child {};
  ignore.sa_handler = SIG_IGN;
  ::sigaction(SIGTERM, &ignore, &old_term);
  ::sigaction(SIGPIPE, &ignore, &old_pipe);
  ::sigaction(SIGCHLD, &ignore, &old_child);

  CHECK(run(child_request({"signal"})).status == 128 + SIGTERM);
  ChildProcess child;
  REQUIRE(child.start(child_request({"pieces", "3", "30"})) == StartResult::started);
  child.close_output();
  CHECK(child.wait() == 128 + SIGPIPE);

  ::sigaction(SIGTERM, &old_term, nullptr);
  ::sigaction(SIGPIPE, &old_pipe, nullptr);
  ::sigaction(SIGCHLD, &old_child, nullptr);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_CASE("closed standard streams of this process do not get into the child's way") {
  const int saved = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
  ::close(STDIN_FILENO);
  const Outcome outcome = run(child_request({"both"}));
  const Outcome missing = run([] {
    ProcessRequest request;
    request.program = "ferrowen-no-such-program";
    return request;
  }());
  if (saved >= 0) ::dup2(saved, STDIN_FILENO);
  CHECK(outcome.output == "out err out");
  CHECK(missing.started == StartResult::not_started);
}

TEST_CASE("the reasons of a start that fails are told apart") {
  const TestFolder folder("reasons");
  REQUIRE(write_flushed(folder.file("plain"), "text\n").empty());
  REQUIRE(write_flushed(folder.file("broken"),
                        "\x7F"
                        "ELF")
              .empty());
  REQUIRE(write_flushed(folder.file("no-interpreter"), "#!/no/such/interpreter\n").empty());
  for (const char* name : {"broken", "no-interpreter"})
    REQUIRE(::chmod(folder.file(name).c_str(), 0755) == 0);
  struct Case {
    std::string program;
    std::string folder;
    std::string reason;
  };
  const Case cases[] = {
      {"ferrowen-no-such-program", "", "No such file or directory"},
      {folder.file("plain"), "", "Permission denied"},
      {folder.file("broken"), "", "Exec format error"},
      {folder.file("no-interpreter"), "", "No such file or directory"},
      {child_path(), folder.file("none"), folder.file("none") + ": No such file or directory"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.program);
    ProcessRequest request;
    request.program = each.program;
    request.folder = each.folder;
    ChildProcess child;
    CHECK(child.start(request) == StartResult::not_started);
    CHECK(child.error() == each.reason);
  }
}
#endif
