#include "styletools/typ_export.hpp"

#include <algorithm>

#include "base/files.hpp"
#include "base/text.hpp"
#include "platform/paths.hpp"
#include "styletools/typ_text.hpp"

namespace ferrowen {

namespace {

constexpr std::string_view editor_ending = ".tvkx";
constexpr std::string_view csv_heading =
    "Kind,Type,Key,Draw order,Labels,Font,Line width,Border width,Orientation,Day colours,Night "
    "colours,Size,Damage";

std::string csv_field(const std::string& text) {
  if (text.find_first_of(",\"\r\n;") == std::string::npos) return text;
  return "\"" + replace_all(text, "\"", "\"\"") + "\"";
}

std::string labels_field(const TypDefinition& definition) {
  std::vector<std::string> labels;
  for (const TypLabel& label : definition.labels)
    labels.push_back("0x" + lower_ascii(hexadecimal_text(label.language)) + ":" + label.text);
  return join_texts(labels, "; ");
}

std::string pair_field(const TypColour& foreground, const std::optional<TypColour>& background) {
  return "#" + colour_text(foreground) + (background ? " #" + colour_text(*background) : "");
}

std::string image_colours(const std::optional<TypImage>& image) {
  std::vector<std::string> colours;
  if (!image) return "";
  for (const TypColour& colour : image->colours)
    colours.push_back("#" + colour_text(colour));
  return join_texts(colours, " ");
}

std::string size_field(RuleKind kind, const TypDefinition& definition) {
  if (definition.day_image)
    return std::to_string(definition.day_image->width) + "x" + std::to_string(definition.day_image->height);
  return kind == RuleKind::points || definition.rows.empty() ? ""
                                                             : "32x" + std::to_string(definition.rows.size());
}

std::vector<std::string> csv_fields(RuleKind kind, const TypDefinition& definition) {
  const bool point = kind == RuleKind::points;
  const bool solid_line = kind == RuleKind::lines && definition.rows.empty();
  const TypColours& colours = definition.colours;
  return {std::string(kind_title(kind)),
          type_code(definition.type, definition.subtype),
          definition.key,
          definition.draw_order > 0 ? std::to_string(definition.draw_order) : "",
          labels_field(definition),
          definition.font ? font_style_name(definition.font->style) : "",
          solid_line ? std::to_string(definition.line_width) : "",
          solid_line && definition.border_width ? std::to_string(*definition.border_width) : "",
          kind == RuleKind::lines ? (definition.follows_direction ? "Y" : "N") : "",
          point ? image_colours(definition.day_image)
                : pair_field(colours.day_foreground, colours.day_background),
          point ? image_colours(definition.night_image)
                : pair_field(colours.night_foreground, colours.night_background),
          size_field(kind, definition),
          definition.damage};
}

bool holds_nothing(const TypFile& typ) {
  return std::all_of(typ.definitions.begin(), typ.definitions.end(),
                     [](const auto& all) { return all.empty(); });
}

}  // namespace

std::string typ_csv(const TypFile& typ) {
  std::string text = std::string(csv_heading) + std::string(crlf);
  for (const RuleKind kind : rule_kinds)
    for (const TypDefinition& definition : typ.of(kind)) {
      std::vector<std::string> fields = csv_fields(kind, definition);
      std::transform(fields.begin(), fields.end(), fields.begin(), csv_field);
      text.append(join_texts(fields, ",")).append(crlf);
    }
  return text;
}

std::vector<std::string> editor_file_paths(const std::string& path) {
  const bool ended = ends_with_ignoring_case(path, editor_ending);
  const std::string base = ended ? path.substr(0, path.size() - editor_ending.size()) : path;
  std::vector<std::string> paths;
  paths.reserve(rule_kinds.size());
  for (const RuleKind kind : rule_kinds)
    paths.push_back(base + "_" + std::string(rule_file_name(kind)) + std::string(editor_ending));
  return paths;
}

std::string with_ending(const std::string& path, const std::string& ending) {
  return contains(platform::name_of(path), ".") ? path : path + ending;
}

bool export_editor_files(const TypFile& typ, const std::string& path, Prompts& prompts) {
  if (holds_nothing(typ)) {
    prompts.tell("No data");
    return false;
  }
  const std::vector<std::string> paths = editor_file_paths(path);
  const bool exists =
      std::any_of(paths.begin(), paths.end(), [](const std::string& one) { return file_exists(one); });
  if (exists && prompts.ask("Overwrite?") != Answer::yes) return false;
  // All three are encoded before the first is written.
  std::array<std::string, 3> bytes;
  for (const RuleKind kind : rule_kinds) {
    Result<std::string> encoded = encode_typ_text(typ_text(typ, kind), text_code_page(typ));
    if (!encoded.ok()) {
      prompts.tell(encoded.error, Icon::critical);
      return false;
    }
    bytes.at(static_cast<std::size_t>(kind)) = std::move(encoded.value);
  }
  for (std::size_t file = 0; file < paths.size(); ++file)
    if (const Status written = safe_write(paths[file], bytes.at(file)); !written.ok()) {
      prompts.tell(written.error, Icon::critical);
      return false;
    }
  if (const std::vector<std::string> losses = text_losses(typ); !losses.empty())
    prompts.tell(join_texts(losses, crlf), Icon::warning);
  return true;
}

}  // namespace ferrowen
