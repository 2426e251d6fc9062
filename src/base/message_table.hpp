// The numbered user messages (1 to 250): English texts built in, each replaceable by a language file.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace ferrowen {

inline constexpr int message_count = 250;

// The built-in English text of a message; "" for a number without text or outside the table.
std::string_view english_message(int number);

class MessageTable {
 public:
  MessageTable();
  // Current text of a message; "" outside the table.
  [[nodiscard]] const std::string& operator()(int number) const;
  // False (and nothing changed) for a number outside the table.
  bool set(int number, std::string_view text);
  void reset();

 private:
  std::array<std::string, message_count + 1> m_texts;
};

}  // namespace ferrowen
