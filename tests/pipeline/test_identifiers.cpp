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

  // Zeros in front do not make another number, and a Yes that cannot draw one ends the build.
  stand_in.set("fid=01234; fid-locked=1");
  stand_in.prompts.answers = {Answer::yes};
  CHECK_FALSE(check_fid(stand_in.workspace, stand_in.prompts));
  CHECK(settings.fid == "1234");
  CHECK(stand_in.prompts.tells().back() == "Please unlock FID");

  stand_in.prompts.said.clear();
  stand_in.set("fid-locked=0; fid= ; fid-from-base=1; fid-base=9999");
  CHECK(check_fid(stand_in.workspace, stand_in.prompts));
  CHECK(std::stoi(settings.fid) >= 9999);
  CHECK(std::stoi(settings.fid) <= 17999);
  stand_in.set("fid=5; fid-locked=1");
  new_id(stand_in.workspace, stand_in.prompts);
  CHECK(settings.fid == "5");
  CHECK(stand_in.prompts.tells() == Texts{"Please unlock FID"});
}

TEST_CASE("a name that is installed already: its family ID is in use") {
  test::StandIn stand_in;
  stand_in.workspace.registered_products = {"ALPS"};
  stand_in.set("fid=77; map-name=Alps; register=1");
  CHECK_FALSE(check_fid(stand_in.workspace, stand_in.prompts));
  CHECK(stand_in.prompts.tells() ==
        Texts{"FID 77exists.. Cannot Continue.\r\n\r\nClick green 'new' to create new FID."});
  stand_in.set("register=0");
  stand_in.prompts.answers = {Answer::no};
  CHECK_FALSE(check_fid(stand_in.workspace, stand_in.prompts));
  CHECK(stand_in.prompts.asks() == Texts{"FID 77exists. This may be on your device.Continue?"});
}

TEST_CASE("the map ID against what the device holds") {
  struct Case {
    const char* settings;
    const char* device;
    bool passes;
    const char* told;
  };
  const Case cases[] = {
      {"map-id=00000000", ",", false, "Map ID:00000000?"},
      {"map-id=1234567", ",", false, "8 numbers?"},
      {"map-id=1234567A", ",", true, ""},
      {"map-id=13224385; map-id-warnings=1; gmapsupp=1", ",13224385,", true,
       "Changing Map ID to avoid possible conflict."},
      {"map-id=13224385; map-id-warnings=1; gmapsupp=1", "13224385,", true, ""},
      {"map-id=13224385; map-id-warnings=1; gmapsupp=1", ",132,", true,
       "Changing Map ID to avoid possible conflict."},
      {"map-id=13224385; map-id-warnings=1; gmapsupp=0", ",13224385,", true, ""},
      {"map-id=13224385; map-id-warnings=1; map-id-locked=1", ",13224385,", true,
       "Caution!\r\nYour device may contain map id:13224385\r\nUnlock Map ID."},
      {"map-id=13224385; map-id-warnings=0; map-id-locked=1", ",13224385,", true, ""},
  };
  for (const Case& one : cases) {
    CAPTURE(one.settings);
    CAPTURE(one.device);
    test::StandIn stand_in;
    stand_in.set(one.settings);
    stand_in.workspace.device_map_ids = one.device;
    CHECK(check_map_id(stand_in.workspace, stand_in.prompts) == one.passes);
    CHECK(join_texts(stand_in.prompts.tells(), "|") == one.told);
  }
}

TEST_CASE("before a registration: the name first, then the FID") {
  test::StandIn stand_in;
  stand_in.set("fid=1234; map-name=Alps; register=1");
  int collected = 0;
  const Collect collect = [&](Workspace& workspace) {
    ++collected;
    workspace.registered_fids = ",1234,";
    workspace.registered_products = {"Alps"};
  };
  CHECK(id_exists(stand_in.workspace, stand_in.prompts, collect) == Registered::name_exists);
  CHECK(id_exists(stand_in.workspace, stand_in.prompts, collect, "Alps") == Registered::fid_exists);
  CHECK(collected == 1);
  stand_in.set("register=0");
  CHECK(id_exists(stand_in.workspace, stand_in.prompts, collect) == Registered::free);
  CHECK(stand_in.prompts.tells() ==
        Texts{"Mapname 'Alps' exists in registry.", "FID 1234 exists in Basecamp. "});
}

TEST_CASE("a new map while the last one is not registered yet") {
  test::StandIn stand_in;
  CHECK(confirm_new_map(stand_in.workspace, stand_in.prompts, ""));
  stand_in.prompts.answers = {Answer::no, Answer::yes, Answer::yes};
  CHECK_FALSE(confirm_new_map(stand_in.workspace, stand_in.prompts, "Alps"));
  stand_in.set("fid=1");
  CHECK(confirm_new_map(stand_in.workspace, stand_in.prompts, "Alps"));
  CHECK(stand_in.workspace.settings.fid != "1");
  CHECK(stand_in.prompts.asks() ==
        Texts{"A map has been created but not uploaded!\r\n 'Alps'\r\n Create a new map anyway?",
              "A map has been created but not uploaded!\r\n 'Alps'\r\n Create a new map anyway?",
              "Reset FID & Map ID?"});
}
