#include <doctest/doctest.h>

#include <vector>

#include "pipeline/identifiers.hpp"
#include "support/stand_in.hpp"

using namespace ferrowen;
using namespace ferrowen::test;

TEST_CASE("a candidate is rounded to the nearest number, halves to even, in 16 bits") {
  CHECK(fid_candidate(0.0, 200) == 200);
  CHECK(fid_candidate(1.0, 9999) == 17999);
  CHECK(fid_candidate(0.5 / 8000, 200) == 200);
  CHECK(fid_candidate(1.5 / 8000, 200) == 202);
  CHECK(fid_candidate(0.0, 40000) == -25536);
}

TEST_CASE("a taken number is drawn again; whole entries are compared") {
  std::vector<double> draws = {0.0, 1.0 / 8000, 2.0 / 8000};
  std::size_t next = 0;
  const auto draw = [&] { return draws.at(next++); };
  CHECK(free_fid(200, ",200,2010,", ",201,", draw) == 202);
  CHECK(next == 3);
}

TEST_CASE("the search ends when one number is left, and when none is") {
  std::string taken = ",";
  for (int fid = 200; fid <= 8200; ++fid)
    if (fid != 4321) taken += std::to_string(fid) + ",";
  CHECK(free_fid(200, taken, ",", [] { return 0.25; }) == 4321);
  CHECK_FALSE(free_fid(200, taken + "4321,", ",", [] { return 0.25; }).has_value());
}

TEST_CASE("new_id respects lock and base") {
  StandIn stand_in;
  Settings& settings = stand_in.workspace.settings;
  settings.fid_from_base = true;
  settings.fid_base = "9999";
  new_id(stand_in.workspace, stand_in.prompts);
  CHECK(std::stoi(settings.fid) >= 9999);
  CHECK(std::stoi(settings.fid) <= 17999);
  settings.fid = "5";
  settings.fid_locked = true;
  new_id(stand_in.workspace, stand_in.prompts);
  CHECK(settings.fid == "5");
  CHECK(stand_in.prompts.tells() == std::vector<std::string>{"Please unlock FID"});
}

TEST_CASE("the FID check when a build starts") {
  StandIn stand_in;
  Workspace& workspace = stand_in.workspace;
  Settings& settings = workspace.settings;
  SUBCASE("an empty one is drawn") {
    settings.fid = " ";
    CHECK(check_fid(workspace, stand_in.prompts));
    CHECK(std::stoi(settings.fid) >= 200);
  }
  SUBCASE("a locked zero stops") {
    settings.fid = "0";
    settings.fid_locked = true;
    CHECK_FALSE(check_fid(workspace, stand_in.prompts));
    CHECK(stand_in.prompts.tells() == std::vector<std::string>{"FID can't be 0 . Please unlock FID"});
  }
  SUBCASE("a registered one is replaced on Yes") {
    workspace.registered_fids = ",1234,";
    stand_in.prompts.answers = {Answer::yes};
    CHECK(check_fid(workspace, stand_in.prompts));
    CHECK(settings.fid != "1234");
    CHECK(stand_in.prompts.asks() ==
          std::vector<std::string>{"FID 1234 exists in Garmin Register. Can't upload map.\r\n"
                                   "Let ferrowen create new FID?"});
  }
  SUBCASE("a registered one stops the build on No") {
    workspace.registered_fids = ",1234,";
    stand_in.prompts.answers = {Answer::no};
    CHECK_FALSE(check_fid(workspace, stand_in.prompts));
    CHECK(settings.fid == "1234");
  }
}
