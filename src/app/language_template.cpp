#include "app/language_file.hpp"
#include "app/language_tags.hpp"
#include "base/text.hpp"

namespace ferrowen {

namespace {

// Above the marker, where nothing is read. A tag must not stand here: the first one of its name counts.
constexpr std::string_view notes = R"(# A language file of Ferrowen.
#
# Save it as UTF-8 in the folder "languages" of the program folder, with a name that ends in .m5l. Write the
# language's own name behind "mlanguage=", and translate what stands behind the first ":" of each line.
# "ferrowen language check FILE" tells what is missing, superfluous or out of range.
#
# - What the file leaves out stays English; a line without ":" counts as left out.
# - "#" begins a comment: the rest of the line is not read, and no text can hold this sign.
# - Blanks at the beginning and the end of a text belong to it: a name or a path follows there. A "#" right
#   behind such a text only shows where it ends; it may stay.
# - %1, %2 and so on stand for what the program puts there; a translation has the same ones, in any order.
# - commands: a line counts by its position. Keep their order and number, and put no other line between them;
#   the word before the ":" only reminds you of what the text is for.
# - settings, menus, tooltiptxt, labels: the word before the ":" says what the text is for. Keep it as it is;
#   the order is free.
# - messages: the number before the ":" is that of the message, from 1 to 250; other numbers are not read.
#   This section has no closing tag and stays the last one.

)";

void add_line(std::string& text, std::string_view line) { text.append(line) += '\n'; }

void add_item(std::string& text, std::string_view key, std::string_view english) {
  text.append(key).append(":").append(english);
  // Many editors drop blanks at the end of a line.
  if (english.ends_with(' ')) text += language_comment;
  text += '\n';
}

}  // namespace

std::string language_template() {
  std::string text(notes);
  add_line(text, std::string(language_name_start) + "English");
  add_line(text, language_marker);
  for (std::size_t i = 0; i < section_count; ++i) {
    const auto section = static_cast<Section>(i);
    add_line(text, opening_tag(section));
    for (const InterfaceItem& item : interface_items(section))
      add_item(text, item.key, item.english);
    add_line(text, closing_tag(section));
  }
  add_line(text, messages_tag);
  for (int number = 1; number <= message_count; ++number) {
    if (const std::string_view english = english_message(number); !english.empty())
      add_item(text, std::to_string(number), english);
  }
  return with_crlf(text);
}

}  // namespace ferrowen
