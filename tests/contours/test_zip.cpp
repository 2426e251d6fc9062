#include <doctest/doctest.h>

#include <tuple>

#include "base/inflate.hpp"
#include "base/zip_archive.hpp"
#include "contours/cell_file.hpp"
#include "support/zip_bytes.hpp"

using namespace ferrowen;

namespace {

std::string from_hex(std::string_view digits) {
  const auto value = [](char digit) { return digit <= '9' ? digit - '0' : digit - 'a' + 10; };
  std::string bytes;
  for (std::size_t at = 0; at + 1 < digits.size(); at += 2)
    bytes += static_cast<char>(value(digits[at]) * 16 + value(digits[at + 1]));
  return bytes;
}

// Made by zlib: a block with codes of its own, and one with the fixed codes.
const std::string own_codes = from_hex(
    "0d90491284201004dfa6a0a0c888087266dffe7f9fba76546465f5e279d9a7ce76dcc9f52f5eed0957b5de966b3e590e9796fe44"
    "d74c"
    "e0f5f4a49c93673396a43b896bbbc35b7fde15376f5c55229dc6b7ade14356822bb300817413b74683ae9f7f0a99243fe303618b"
    "ac7d"
    "61ab2bb237b8f790c8ee68e38155e397f2ce2defc3a4b5dbc8db1196ca3c2d0abe62e8a440e0683bd1e60a9d5fe683a70f0eae09"
    "aca0"
    "fe2c0c5903aee92fb2026dd25f659d7b5e8648a2af70204162c58ec527fee0c075d1b61357e615ccb67c0c9a649791c261af0a2b"
    "0e2c"
    "be905dbb8ea42dc82ab469fc8c81cbba8aaa313870afb142648dff12f8dab605526f5ce5b4303bd3af1f51371d0e5c45f903");
const std::string fixed_codes = from_hex("cb48cdc9c957c84027b900");
const std::string stored_block = std::string("\x01\x03\x00\xFC\xFF", 5) + "abc";

}  // namespace

TEST_CASE("packed data in every form") {
  const Result<std::string> letters = inflate(own_codes, 400);
  REQUIRE(letters.ok());
  CHECK(letters.value.size() == 400);
  CHECK(crc32(letters.value) == 0x998c6974);
  CHECK(inflate(fixed_codes, 100).value == "hello hello hello hello\n");
  CHECK(crc32("hello hello hello hello\n") == 0x0b598800);
  CHECK(inflate(stored_block, 3).value == "abc");
  CHECK(inflate(stored_block + "behind", 3).value == "abc");
}

TEST_CASE("packed data that is cut off, damaged or larger than it may be") {
  for (std::size_t size = 0; size < own_codes.size(); ++size)
    CHECK_FALSE(inflate(std::string_view(own_codes).substr(0, size), 1000).ok());
  CHECK(inflate(own_codes, 399).error == "unpacks to more than 399 bytes");
  CHECK(inflate(stored_block, 2).error == "unpacks to more than 2 bytes");
  CHECK(inflate("", 10).error == "the packed data ends early");
  CHECK(inflate("\x07", 10).error == "the packed data is damaged");  // no such kind of block
  CHECK(inflate(std::string("\x01\x03\x00\xFC\xFE", 5), 9).error == "the packed data is damaged");
  CHECK(inflate(from_hex("4b04c201"), 100).error ==
        "the packed data is damaged");  // reaches before the start
}

TEST_CASE("a cell out of an archive") {
  const Cell cell{46, -7};
  const std::string hello = "hello hello hello hello\n";
  const test::ZipFile packed{"folder/n46w007.HGT", fixed_codes, 8, 24, 0x0b598800, 0};
  const test::ZipFile other{"N47E009.hgt", "abc", 0, 3, crc32("abc"), 0};
  CHECK(cell_in_archive(test::zip_bytes({other, packed}), cell).value == hello);
  CHECK(cell_in_archive(test::zip_bytes({packed}, "a comment"), cell).value == hello);
  CHECK(cell_in_archive(test::zip_bytes({other}), cell).error == "holds no N46W007.hgt, but N47E009.hgt");
  CHECK(cell_in_archive(test::zip_bytes({}), cell).error == "holds no N46W007.hgt");
  CHECK(cell_in_archive("PK", cell).error == "is no whole zip archive");

  const std::string name = "N46W007.hgt";
  for (const auto& [file, problem] :
       {std::pair{test::ZipFile{name, fixed_codes, 8, 24, 1, 0},
                  "the checksum does not fit: the data is damaged"},
        {{name, fixed_codes, 8, 23, 0, 0}, "unpacks to more than 23 bytes"},
        {{name, fixed_codes, 8, 25, 0, 0}, "the packed data ends early"},
        {{name, fixed_codes, 8, 25934403, 0, 0}, "too large (25934403 bytes)"},
        {{name, fixed_codes, 9, 24, 0, 0}, "is packed with method 9, not with deflate"},
        {{name, fixed_codes, 8, 24, 0, 1}, "is encrypted"}})
    CHECK(cell_in_archive(test::zip_bytes({file}), cell).error == name + ": " + problem);
}

TEST_CASE("archives that are cut off or lie about where things are") {
  const std::string whole = test::zip_bytes({{"N46W007.hgt", fixed_codes, 8, 24, 0x0b598800, 0}});
  for (std::size_t size = 0; size < whole.size(); ++size)
    CHECK_FALSE(cell_in_archive(whole.substr(0, size), {46, -7}).ok());
  for (std::size_t at = 0; at < whole.size(); ++at) {
    std::string changed = whole;
    changed[at] = static_cast<char>(changed[at] ^ '\xFF');
    const Result<std::string> bytes = cell_in_archive(changed, {46, -7});
    if (bytes.ok()) CHECK(bytes.value == "hello hello hello hello\n");
  }
}
