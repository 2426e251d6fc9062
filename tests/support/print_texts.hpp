// Lists of texts in the report of a failed comparison, which doctest prints as {?} otherwise.
#pragma once

#include <doctest/doctest.h>

#include <string>
#include <vector>

template <>
struct doctest::StringMaker<std::vector<std::string>> {
  static doctest::String convert(const std::vector<std::string>& texts) {
    std::string all = "{";
    for (const std::string& one : texts)
      all += (all.size() > 1 ? ", \"" : "\"") + one + "\"";
    return (all + "}").c_str();
  }
};
