#include "pipeline/identifiers.hpp"

#include <doctest/doctest.h>

#include "support/stand_in.hpp"

using namespace ferrowen;
using Texts = std::vector<std::string>;

TEST_CASE("a candidate is rounded to the nearest number, halves to even, in 16 bits") {
  CHECK(fid_candidate(1.0, 9999) == 17999);
  CHECK(fid_candidate(0.5 / 8000, 200) == 200);
  CHECK(fid_candidate(1.5 / 8000, 200) == 202);
  CHECK(fid_candidate(0.0, 40000) == -25536);
}

TEST_CASE("a taken number is drawn again until one is free or none is left") {
  double number = 0;
  CHECK(free_fid(200, ",200,2010,", ",201,", [&] { return number++ / 8000; }) == 202);
  std::string taken = ",";
  for (int fid = 200; fid <= 8200; ++fid)
    if (fid != 4321) taken += std::to_string(fid) + ",";
  CHECK(free_fid(200, taken, ",", [] { return 0.25; }) == 4321);
  CHECK_FALSE(free_fid(200, taken + "4321,", ",", [] { return 0.25; }).has_value());
}

TEST_CASE("the FID check when a build starts draws a new one, or respects the lock") {
  test::StandIn stand_in;
  Settings& settings = stand_in.workspace.settings;
  stand_in.workspace.registered_fids = ",1234,";
  stand_in.prompts.answers = {Answer::no, Answer::yes};
  CHECK_FALSE(check_fid(stand_in.workspace, stand_in.prompts));
  CHECK(settings.fid == "1234");
  CHECK(check_fid(stand_in.workspace, stand_in.prompts));
  CHECK(settings.fid != "1234");
  CHECK(stand_in.prompts.asks().back() ==
        "FID 1234 exists in Garmin Register. Can't upload map.\r\nLet ferrowen create new FID?");

  stand_in.set("fid= ; fid-from-base=1; fid-base=9999");
  CHECK(check_fid(stand_in.workspace, stand_in.prompts));
  CHECK(std::stoi(settings.fid) >= 9999);
  CHECK(std::stoi(settings.fid) <= 17999);
  stand_in.set("fid=5; fid-locked=1");
  new_id(stand_in.workspace, stand_in.prompts);
  CHECK(settings.fid == "5");
  CHECK(stand_in.prompts.tells() == Texts{"Options cancelled.", "Please unlock FID"});
}
