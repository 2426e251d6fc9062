#ifdef _WIN32
#include <doctest/doctest.h>
#include <windows.h>

#include "child_program.hpp"
#include "platform/files.hpp"
#include "platform/registry.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

namespace {

// A batch file that hands all its arguments to the child program.
std::string make_batch_file(const TestFolder& folder) {
  const std::string path = folder.file("hand on.bat");
  REQUIRE(write_flushed(path, "@\"" FERROWEN_TEST_CHILD "\" args %*\r\n@exit 3\r\n").empty());
  std::filesystem::copy_file(file_system_path(child_path()), folder.at(FERROWEN_TEST_CHILD));
  return path;
}

std::string with_nuls(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts)
    joined += text + '\0';
  return joined;
}

}  // namespace

TEST_CASE("a batch file gets its arguments unchanged, or is not run") {
  const TestFolder folder("batch");
  ProcessRequest request;
  request.program = make_batch_file(folder);
  request.folder = folder.path();
  request.arguments = {"two words", "a&b", "|", "<x>", "^", "!x!", "(y)", "C:\\dir\\", "a\\b", "", ";,="};
  const Outcome outcome = run(request);
  CHECK((outcome.output == with_nuls(request.arguments)));
  CAPTURE(outcome.output);
  CHECK(outcome.status == 3);

  for (const char* refused : {"say \"hi\"", "%PATH%", "100%", "line\nbreak", "\r"}) {
    CAPTURE(refused);
    request.arguments = {refused};
    ChildProcess child;
    CHECK(child.start(request) == StartResult::not_started);
    CHECK(child.error().find(refused) != std::string::npos);
  }
}

TEST_CASE("a program with a console of its own is waited for and its output is not captured") {
  ProcessRequest request = child_request({"exit", "6"});
  request.own_console = true;
  request.console_title = "ferrowen test console";
  ChildProcess child;
  REQUIRE(child.start(request) == StartResult::started);
  CHECK(read_all(child, 2000).empty());
  CHECK(child.wait() == 6);
  request.arguments = {"sleep", "15000"};
  REQUIRE(child.start(request) == StartResult::started);
  child.end_group(500);
  CHECK(child.poll_exit() == 137);
}

TEST_CASE("registry values of either kind are read") {
  const char* key = "Software\\Ferrowen test \u00fc";
  const std::string text = "C:\\a b\\\u00fc " + std::string(1000, 'x');
  const DWORD number = 0x8000'0001;
  REQUIRE(RegSetKeyValueA(HKEY_CURRENT_USER, key, "text", REG_SZ, text.c_str(),
                          static_cast<DWORD>(text.size() + 1)) == ERROR_SUCCESS);
  REQUIRE(RegSetKeyValueA(HKEY_CURRENT_USER, key, "expanded", REG_EXPAND_SZ, "<%COMSPEC%>", 12) ==
          ERROR_SUCCESS);
  REQUIRE(RegSetKeyValueA(HKEY_CURRENT_USER, key, "number", REG_DWORD, &number, 4) == ERROR_SUCCESS);
  CHECK((registry_text(RegistryRoot::current_user, key, "text") == text));
  CHECK(registry_text(RegistryRoot::current_user, key, "expanded") == "<" + *environment("COMSPEC") + ">");
  CHECK(registry_number(RegistryRoot::current_user, key, "number") == number);
  CHECK_FALSE(registry_text(RegistryRoot::current_user, key, "number").has_value());
  CHECK_FALSE(registry_number(RegistryRoot::current_user, key, "text").has_value());
  CHECK(RegDeleteKeyA(HKEY_CURRENT_USER, key) == ERROR_SUCCESS);
}
#endif
