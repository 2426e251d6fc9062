// One opened code page of the system's converter. UTF-8 is no code page here: it needs no converter.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ferrowen::platform {

class CodePage {
 public:
  explicit CodePage(int number);
  ~CodePage();
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;

  // False when the system has no such code page, or one whose first half is not ASCII.
  [[nodiscard]] bool is_known() const;
  // Bytes of a text without any regard to look-alikes that the converter may have put in.
  [[nodiscard]] std::optional<std::string> from_utf8(std::string_view utf8) const;
  [[nodiscard]] std::optional<std::string> to_utf8(std::string_view bytes) const;

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace ferrowen::platform
