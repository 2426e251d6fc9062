#ifdef _WIN32
#include <doctest/doctest.h>
#include <windows.h>

#include "child_program.hpp"
#include "platform/registry.hpp"
#include "support/temp_folder.hpp"

using namespace ferrowen::platform;
using namespace ferrowen::platform::testing;

TEST_CASE("a batch file gets its arguments unchanged, or is not run") {
  const ferrowen::test::TempFolder folder("b\u00e4tch file");
  std::filesystem::copy_file(file_system_path(child_path()), file_system_path(folder / FERROWEN_TEST_CHILD));
  const std::string batch =
      folder.write("hand on.bat", "@\"" FERROWEN_TEST_CHILD "\" args %*\r\n@exit 3\r\n");
  ProcessRequest request = request_for(batch, {}, folder.path());
  request.arguments = {"two words", "a&b", "|", "<x>", "^", "!x!", "(y)", "C:\\dir\\", "a\\b", "", ";,="};
  std::string expected;
  for (const std::string& argument : request.arguments)
    expected += argument + '\0';
  const Outcome outcome = run(request);
  CHECK((outcome.output == expected));
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
  ChildProcess child;
  REQUIRE(child.start(request) == StartResult::started);
  CHECK(read_all(child, 2000).empty());
  CHECK(child.wait() == 6);
  request.arguments = {"sleep", "15000"};
  REQUIRE(child.start(request) == StartResult::started);
  child.end_group(500);
  CHECK(child.poll_exit() == 137);
}

TEST_CASE("registry values are read as what they are") {
  const char* key = "Software\\Ferrowen test \u00fc";
  const std::string text = "C:\\a b\\\u00fc " + std::string(1000, 'x');
  const DWORD size = static_cast<DWORD>(text.size() + 1);
  const DWORD number = 0x8000'0001;
  REQUIRE(RegSetKeyValueA(HKEY_CURRENT_USER, key, "text", REG_SZ, text.c_str(), size) == ERROR_SUCCESS);
  REQUIRE(RegSetKeyValueA(HKEY_CURRENT_USER, key, "path", REG_EXPAND_SZ, "%COMSPEC%", 10) == ERROR_SUCCESS);
  REQUIRE(RegSetKeyValueA(HKEY_CURRENT_USER, key, "number", REG_DWORD, &number, 4) == ERROR_SUCCESS);
  CHECK((registry_text(RegistryRoot::current_user, key, "text") == text));
  CHECK(registry_text(RegistryRoot::current_user, key, "path") == environment("COMSPEC"));
  CHECK(registry_number(RegistryRoot::current_user, key, "number") == number);
  CHECK_FALSE(registry_text(RegistryRoot::current_user, key, "number").has_value());
  CHECK_FALSE(registry_number(RegistryRoot::current_user, key, "gone").has_value());
  CHECK(RegDeleteKeyA(HKEY_CURRENT_USER, key) == ERROR_SUCCESS);
}
#endif
