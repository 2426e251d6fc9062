#include "styletools/typ_text.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "platform/charset.hpp"
#include "styletools/typ_xpm.hpp"

namespace ferrowen {

namespace {

constexpr int western_code_page = 1252;
constexpr int utf8_code_page = 65001;
constexpr std::string_view unreadable = "\xEF\xBF\xBD";
constexpr unsigned first_extended_type = 0x100;

using Lines = std::vector<std::string>;

void append(Lines& lines, const Lines& more) { lines.insert(lines.end(), more.begin(), more.end()); }

// A line end inside a label would end its line.
std::string one_line(std::string text) {
  text = replace_all(text, unreadable, "?");
  std::replace_if(
      text.begin(), text.end(), [](char byte) { return byte >= 0 && byte < ' '; }, ' ');
  return text;
}

bool has_unreadable_label(const TypDefinition& definition) {
  return std::any_of(definition.labels.begin(), definition.labels.end(),
                     [](const TypLabel& label) { return contains(label.text, unreadable); });
}

bool is_known_code_page(int code_page) { return !platform::encode("", code_page).failed_at; }

void add_labels(Lines& lines, const TypDefinition& definition) {
  if (definition.labels.empty()) lines.emplace_back("String1=0x0,");
  for (std::size_t index = 0; index < definition.labels.size(); ++index) {
    const TypLabel& label = definition.labels[index];
    lines.push_back("String" + std::to_string(index + 1) + "=0x" +
                    lower_ascii(hexadecimal_text(label.language)) + "," + one_line(label.text));
  }
}

void add_font(Lines& lines, const std::optional<TypFont>& font) {
  const bool day = font && font->day;
  const bool night = font && font->night;
  if (!day && !night) lines.emplace_back("CustomColor=No");
  if (day || night)
    lines.emplace_back(!night ? "CustomColor=Day" : day ? "CustomColor=DayAndNight" : "CustomColor=Night");
  if (day) lines.push_back("DaycustomColor:#" + colour_text(*font->day));
  if (night) lines.push_back("NightcustomColor:#" + colour_text(*font->night));
  lines.emplace_back(font ? "ExtendedLabels=Y" : "ExtendedLabels=N");
  if (font) lines.push_back("FontStyle=" + font_style_name(font->style));
}

// Widths belong to solid lines; one with a bitmap is as high as its bitmap.
void add_line_keys(Lines& lines, const TypDefinition& line) {
  if (line.rows.empty()) lines.push_back("LineWidth=" + std::to_string(line.line_width));
  if (line.rows.empty() && line.border_width)
    lines.push_back("BorderWidth=" + std::to_string(*line.border_width));
  lines.emplace_back(line.follows_direction ? "UseOrientation=Y" : "UseOrientation=N");
}

void add_header(Lines& lines, const TypFile& typ) {
  append(lines,
         {"[_id]", "ProductCode=" + std::to_string(typ.product_code), "FID=" + std::to_string(typ.family_id),
          "CodePage=" + std::to_string(text_code_page(typ)), "[end]"});
}

void add_draw_order(Lines& lines, const TypFile& typ) {
  append(lines, {"", "[_drawOrder]"});
  for (std::size_t level = 0; level < typ.draw_order.size(); ++level)
    for (const TypOrderEntry& entry : typ.draw_order[level])
      lines.push_back("Type=" + type_code(entry.type, entry.subtype) + "," + std::to_string(level + 1));
  lines.emplace_back("[end]");
}

void add_definitions(Lines& lines, const TypFile& typ, RuleKind kind) {
  for (const TypDefinition& definition : typ.of(kind)) {
    lines.emplace_back("");
    if (!definition.damage.empty()) {
      lines.push_back("; " + std::string(section_name(kind)) + " Type=" +
                      type_code(definition.type, definition.subtype) + " left out: " + definition.damage);
      continue;
    }
    if (has_unreadable_label(definition))
      lines.emplace_back("; each ? of these labels stands for a byte that is not in the code page");
    lines.emplace_back(section_name(kind));
    append(lines, definition_lines(kind, definition));
    lines.emplace_back("[end]");
  }
}

std::string text_of(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines)
    text.append(line).append(crlf);
  return text;
}

std::size_t line_of(std::string_view text, std::size_t at) {
  return 1 + static_cast<std::size_t>(
                 std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

}  // namespace

std::string colour_text(const TypColour& colour) {
  return f_mat(hexadecimal_text(colour.red)) + f_mat(hexadecimal_text(colour.green)) +
         f_mat(hexadecimal_text(colour.blue));
}

std::string type_code(unsigned type, unsigned subtype) {
  const std::string digits = f_mat(hexadecimal_text(type));
  const bool plain = type < first_extended_type && subtype == 0;
  return "0x" + lower_ascii(plain ? digits : digits + f_mat(hexadecimal_text(subtype)));
}

std::string_view section_name(RuleKind kind) {
  constexpr std::array<std::string_view, 3> names{"[_polygon]", "[_line]", "[_point]"};
  return names.at(static_cast<std::size_t>(kind));
}

std::string font_style_name(unsigned style) {
  constexpr std::array<std::string_view, 5> names{"Default", "Nolabel", "SmallFont", "Normal", "Large"};
  return style < names.size() ? std::string(names.at(style)) : std::to_string(style);
}

int text_code_page(const TypFile& typ) {
  if (typ.code_page == 0) return western_code_page;
  return is_known_code_page(typ.code_page) ? typ.code_page : utf8_code_page;
}

std::vector<std::string> text_losses(const TypFile& typ) {
  Lines losses;
  if (typ.code_page != 0 && !is_known_code_page(typ.code_page))
    losses.push_back("The code page " + std::to_string(typ.code_page) +
                     " is not known on this system: the text is written in UTF-8.");
  std::ptrdiff_t damaged = 0;
  for (const RuleKind kind : rule_kinds)
    damaged += std::count_if(typ.of(kind).begin(), typ.of(kind).end(), has_unreadable_label);
  if (damaged > 0)
    losses.push_back(std::to_string(damaged) +
                     " types have labels with bytes that are not in the code page: ? is written for each.");
  return losses;
}

std::vector<std::string> definition_lines(RuleKind kind, const TypDefinition& definition) {
  Lines lines{"Type=" + type_code(definition.type, definition.subtype)};
  add_labels(lines, definition);
  add_font(lines, definition.font);
  if (kind == RuleKind::lines) add_line_keys(lines, definition);
  if (kind != RuleKind::points) append(lines, xpm_lines(kind, definition));
  if (definition.day_image) append(lines, xpm_lines("Xpm=", *definition.day_image));
  if (definition.night_image) append(lines, xpm_lines("NightXpm=", *definition.night_image));
  return lines;
}

std::string typ_text(const TypFile& typ) {
  Lines lines;
  add_header(lines, typ);
  add_draw_order(lines, typ);
  for (const RuleKind kind : rule_kinds)
    add_definitions(lines, typ, kind);
  return text_of(lines);
}

std::string typ_text(const TypFile& typ, RuleKind kind) {
  Lines lines;
  add_header(lines, typ);
  if (kind == RuleKind::polygons) add_draw_order(lines, typ);
  add_definitions(lines, typ, kind);
  return text_of(lines);
}

Result<std::string> encode_typ_text(std::string_view text, int code_page) {
  platform::Encoded encoded = platform::encode(text, code_page);
  if (!encoded.failed_at) return {std::move(encoded.bytes), ""};
  const std::size_t at = *encoded.failed_at;
  std::size_t end = at + 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
    ++end;
  return failed<std::string>("Line " + std::to_string(line_of(text, at)) + ": \"" +
                             std::string(text.substr(at, end - at)) + "\" has no place in code page " +
                             std::to_string(code_page) + ".");
}

}  // namespace ferrowen
