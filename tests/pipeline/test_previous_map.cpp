#include "pipeline/previous_map.hpp"

#include <doctest/doctest.h>

#include "base/files.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;

TEST_CASE("the previous map: exactly its files go, after a Yes, also after a restart") {
  test::StandIn made;
  const std::string image = made.home.write("out/1.img", "image");
  const std::string other = made.home.write("out/2.img", "another map");
  made.workspace.built_files = {image, made.home / "out/gone.img", made.home / "out"};
  REQUIRE(remember_built_files(made.workspace).ok());
  made.workspace.built_files.clear();  // as after a restart
  CHECK(previous_map_files(made.workspace) == std::vector<std::string>{image});
  made.prompts.answers = {Answer::no, Answer::yes};
  CHECK_FALSE(remove_previous_map(made.workspace, made.prompts));
  CHECK(file_exists(image));
  CHECK(remove_previous_map(made.workspace, made.prompts));
  CHECK_FALSE(file_exists(image));
  CHECK(file_exists(other));
  CHECK(made.prompts.asks().back().starts_with("Remove Demo Map?\r\n\r\n" + image));
  CHECK_FALSE(remove_previous_map(made.workspace, made.prompts));
  CHECK(made.prompts.tells().back() == "Cannot find map to remove.");
}
