// Dates as people write them, and names that every file system takes.
#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace ferrowen {

// yyyy yy, mmm (Jan) mm m, dd d, hh h, nn n (minutes), ss s, in small or capital letters; everything else
// stands for itself.
std::string date_text(const std::tm& date, std::string_view format);
// "2025-11-21 14-05-33" in local time: sorts by time and can name a folder.
std::string time_stamp(std::time_t seconds);
bool is_time_stamp(std::string_view text);

// The text as the name of one folder or file: characters that no name can hold on one of our systems become
// "-", blanks and points at its end go. A text of which nothing is left gives "-".
std::string as_file_name(std::string_view text);

}  // namespace ferrowen
