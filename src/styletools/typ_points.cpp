// Definitions of points: images with a colour table of their own.
#include <unordered_map>

#include "styletools/typ_definition_parts.hpp"
#include "styletools/typ_definitions.hpp"

namespace ferrowen {

namespace {

constexpr std::uint32_t image_mode_mask = 3;
constexpr std::uint32_t night_table_alone = 2;
constexpr std::uint32_t night_image = 3;
constexpr std::uint32_t point_labels = 4;
constexpr std::uint32_t point_font = 8;

constexpr std::uint32_t opaque_colours = 0;
constexpr std::uint32_t one_transparent = 0x10;
constexpr std::uint32_t colours_with_transparency = 0x20;

constexpr unsigned translucent_colour_bits = 28;
constexpr unsigned opaque_colour_bits = 24;

// A bit string, lowest bit first.
class Bits {
 public:
  explicit Bits(std::string_view bytes) : m_bytes(bytes) {}
  std::uint32_t take(unsigned count) {
    std::uint32_t value = 0;
    for (unsigned bit = 0; bit < count; ++bit, ++m_at) {
      const auto byte = static_cast<unsigned char>(m_bytes[m_at / 8]);
      value |= static_cast<std::uint32_t>(byte >> (m_at % 8) & 1) << bit;
    }
    return value;
  }

 private:
  std::string_view m_bytes;
  std::size_t m_at = 0;
};

constexpr std::size_t bytes_of(std::size_t bits) { return (bits + 7) / 8; }

TypColour colour_of(std::uint32_t bits) {
  return {static_cast<std::uint8_t>(bits >> 16), static_cast<std::uint8_t>(bits >> 8),
          static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 24)};
}

unsigned bits_per_pixel(std::size_t values) {
  if (values <= 1) return 1;
  if (values <= 3) return 2;
  return values <= 15 ? 4 : 8;
}

std::vector<TypColour> read_table(TypCursor& cursor, std::size_t count, std::uint32_t mode) {
  const unsigned bits = mode == colours_with_transparency ? translucent_colour_bits : opaque_colour_bits;
  const std::string_view bytes = cursor.part(bytes_of(count * bits));
  std::vector<TypColour> colours;
  if (cursor.ran_out()) return colours;
  Bits table(bytes);
  for (std::size_t index = 0; index < count; ++index)
    colours.push_back(colour_of(table.take(bits)));
  return colours;
}

void read_pixels(TypCursor& cursor, TypImage& image) {
  const std::size_t values = image.colours.size() + (image.has_transparent ? 1 : 0);
  const unsigned bits = bits_per_pixel(values);
  const auto width = static_cast<std::size_t>(image.width);
  const std::size_t row_bytes = bytes_of(width * bits);
  const std::string_view bytes = cursor.part(row_bytes * static_cast<std::size_t>(image.height));
  if (cursor.ran_out()) return;
  image.pixels.reserve(width * static_cast<std::size_t>(image.height));
  for (std::size_t row = 0; row < static_cast<std::size_t>(image.height); ++row) {
    Bits pixels(bytes.substr(row * row_bytes, row_bytes));
    for (std::size_t column = 0; column < width; ++column) {
      const std::uint32_t index = pixels.take(bits);
      if (index >= image.colours.size()) image.has_transparent = true;
      image.pixels.push_back(static_cast<std::uint16_t>(std::min<std::size_t>(index, image.colours.size())));
    }
  }
}

// Without a table: one colour per pixel, in one bit string over the whole image.
void read_true_colour(TypCursor& cursor, TypImage& image, std::uint32_t mode) {
  constexpr std::uint32_t no_colour = 0xFFFFFFFF;  // above every colour of 28 bits
  const std::uint32_t transparent = mode == one_transparent ? cursor.number(3) : no_colour;
  const unsigned bits = mode == colours_with_transparency ? translucent_colour_bits : opaque_colour_bits;
  const std::size_t count = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
  const std::string_view bytes = cursor.part(bytes_of(count * bits));
  if (cursor.ran_out()) return;
  image.true_colour = true;
  image.has_transparent = mode == one_transparent;
  std::unordered_map<std::uint32_t, std::uint16_t> known;
  std::vector<std::uint32_t> pixels;
  Bits values(bytes);
  for (std::size_t index = 0; index < count; ++index) {
    pixels.push_back(values.take(bits));
    if (pixels.back() != transparent && known.try_emplace(pixels.back(), known.size()).second)
      image.colours.push_back(colour_of(pixels.back()));
  }
  for (const std::uint32_t pixel : pixels)
    image.pixels.push_back(pixel == transparent ? static_cast<std::uint16_t>(image.colours.size())
                                                : known[pixel]);
}

struct TableHead {
  std::size_t count = 0;
  std::uint32_t mode = 0;
};

TableHead read_table_head(DefinitionReader& reader) {
  TableHead head;
  head.count = reader.cursor.number(1);
  head.mode = reader.cursor.number(1);
  if (head.mode != opaque_colours && head.mode != one_transparent && head.mode != colours_with_transparency)
    reader.definition.damage = "unknown colour mode 0x" + f_mat(hexadecimal_text(head.mode));
  return head;
}

void read_image(DefinitionReader& reader, TypImage& image) {
  const TableHead head = read_table_head(reader);
  if (!reader.definition.damage.empty()) return;
  if (head.count == 0) {
    read_true_colour(reader.cursor, image, head.mode);
  } else {
    image.colours = read_table(reader.cursor, head.count, head.mode);
    image.has_transparent = head.mode == one_transparent;
    if (!reader.cursor.ran_out()) read_pixels(reader.cursor, image);
  }
  if (reader.cursor.ran_out()) reader.definition.damage = "the image goes beyond the end of its definition";
}

// The day image in other colours.
void read_night_table(DefinitionReader& reader, TypImage& image) {
  const TableHead head = read_table_head(reader);
  if (!reader.definition.damage.empty()) return;
  const std::size_t day_colours = image.colours.size();
  image.colours = read_table(reader.cursor, head.count, head.mode);
  image.has_transparent = false;
  if (reader.cursor.ran_out()) {
    reader.definition.damage = "the night colours go beyond the end of their definition";
    return;
  }
  for (std::uint16_t& pixel : image.pixels) {
    if (pixel >= day_colours || pixel >= image.colours.size())
      pixel = static_cast<std::uint16_t>(image.colours.size());
    if (pixel == image.colours.size()) image.has_transparent = true;
  }
}

void read_images(DefinitionReader& reader, std::uint32_t image_mode) {
  TypDefinition& point = reader.definition;
  TypImage image;
  image.width = static_cast<int>(reader.cursor.number(1));
  image.height = static_cast<int>(reader.cursor.number(1));
  if (image_mode == 0) return;
  point.day_image = image;
  read_image(reader, *point.day_image);
  if (!point.damage.empty() || (image_mode != night_table_alone && image_mode != night_image)) return;
  point.night_image = image_mode == night_image ? image : *point.day_image;
  if (image_mode == night_image)
    read_image(reader, *point.night_image);
  else
    read_night_table(reader, *point.night_image);
}

}  // namespace

void poi_bmp(DefinitionReader& reader) {
  const std::uint32_t flags = reader.cursor.number(1);
  read_images(reader, flags & image_mode_mask);
  if (!reader.definition.damage.empty()) {
    reader.definition.day_image.reset();
    reader.definition.night_image.reset();
    return;
  }
  read_labels_and_font(reader, (flags & point_labels) != 0, (flags & point_font) != 0);
}

}  // namespace ferrowen
