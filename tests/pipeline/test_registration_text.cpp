#include "pipeline/registration_text.hpp"

#include <doctest/doctest.h>

using namespace ferrowen;

TEST_CASE("registration text: FID bytes come from the map's own TDB") {
  const std::string tdb("P?\0\x01\0\xE8\x03\x97\x01", 9);
  CHECK(fid_bytes_of_tdb(tdb) == "e8,03");
  CHECK(fid_of_bytes("e8,03") == 1000);
  CHECK(fid_of_bytes("ff,ff") == 65535);
  for (const std::string& damaged : {std::string(), std::string("P?\0\x01\0\xE8", 6), "Q" + tdb.substr(1)}) {
    CHECK(fid_bytes_of_tdb(damaged) == "0000");
    CHECK_FALSE(fid_of_bytes(fid_bytes_of_tdb(damaged)).has_value());
  }
}

TEST_CASE("registration text: the family, to the byte") {
  RegistrationFacts facts{"My Map",
                          "e8,03",
                          R"(Z:\maps\My_Map)",
                          R"(Z:\maps\My_Map\osmmap.img)",
                          R"(Z:\maps\My_Map\osmmap.tdb)",
                          R"(Z:\maps\My_Map\osmmap.mdx)",
                          R"(Z:\maps\My_Map\osmmap_mdr.img)",
                          R"(Z:\maps\My_Map\typ\xmy.TYP)",
                          true};
  CHECK(registration_text(facts) ==
        "REGEDIT4\r\n\r\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Garmin\\MapSource\\Families\\My Map]\r\n"
        "\"ID\"=hex:e8,03\r\n"
        "\"IDX\"=\"Z:\\\\maps\\\\My_Map\\\\osmmap.mdx\"\r\n"
        "\"MDR\"=\"Z:\\\\maps\\\\My_Map\\\\osmmap_mdr.img\"\r\n"
        "\"TYP\"=\"Z:\\\\maps\\\\My_Map\\\\typ\\\\xmy.TYP\"\r\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Garmin\\MapSource\\Families\\My Map\\1]\r\n"
        "\"LOC\"=\"Z:\\\\maps\\\\My_Map\"\r\n"
        "\"BMAP\"=\"Z:\\\\maps\\\\My_Map\\\\osmmap.img\"\r\n"
        "\"TDB\"=\"Z:\\\\maps\\\\My_Map\\\\osmmap.tdb\"\r\n");
  facts.index.clear();
  facts.typ.clear();
  facts.wow64 = false;
  CHECK(registration_text(facts) ==
        "REGEDIT4\r\n\r\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Garmin\\MapSource\\Families\\My Map]\r\n"
        "\"ID\"=hex:e8,03\r\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Garmin\\MapSource\\Families\\My Map\\1]\r\n"
        "\"LOC\"=\"Z:\\\\maps\\\\My_Map\"\r\n"
        "\"BMAP\"=\"Z:\\\\maps\\\\My_Map\\\\osmmap.img\"\r\n"
        "\"TDB\"=\"Z:\\\\maps\\\\My_Map\\\\osmmap.tdb\"\r\n");
}

TEST_CASE("registration text: the map used last, to the byte") {
  CHECK(last_used_text({"e8,03", "S-1-5-21-0-0-0-1000", ""}) ==
        "REGEDIT4\r\n\r\n"
        "[HKEY_CURRENT_USER\\SOFTWARE\\Garmin\\Basecamp\\Settings]\r\n"
        "\"MRUProduct\"=hex:01,00,e8,03\r\n"
        "[HKEY_CURRENT_USER\\Software\\Garmin\\MapSource\\Settings]\r\n"
        "\"MRUProduct\"=dword:e8030001\r\n"
        "[HKEY_CURRENT_USER\\Software\\Garmin\\HomePort\\Settings]\r\n"
        "\"MRUProduct\"=dword:e8030001\r\n"
        "[HKEY_USERS\\S-1-5-21-0-0-0-1000\\Software\\Garmin\\BaseCamp\\Settings]\r\n"
        "\"MRUProduct\"=hex:01,00,e8,03\r\n");
  CHECK(last_used_text({"e8,03", "", "12"}) ==
        "REGEDIT4\r\n\r\n"
        "[HKEY_CURRENT_USER\\SOFTWARE\\Garmin\\Basecamp\\Settings]\r\n"
        "\"MRUProduct\"=hex:01,00,e8,03\r\n"
        "\"Detail\"=hex:12\r\n"
        "[HKEY_CURRENT_USER\\Software\\Garmin\\BaseCamp\\Settings\\Profiles\\CurrentProfile]\r\n"
        "@=hex:0c,00,00,00\r\n"
        "[HKEY_CURRENT_USER\\Software\\Garmin\\MapSource\\Settings]\r\n"
        "\"MRUProduct\"=dword:e8030001\r\n"
        "\"Detail\"=hex:12\r\n"
        "[HKEY_CURRENT_USER\\Software\\Garmin\\HomePort\\Settings]\r\n"
        "\"MRUProduct\"=dword:e8030001\r\n");
  CHECK(last_used_text({"e8,03", "", "15"}).find("CurrentProfile") == std::string::npos);
}
