#include "mp/mp_types.hpp"

#include <charconv>
#include <optional>

#include "base/text.hpp"

namespace ferrowen {

namespace {

constexpr unsigned long first_extended_type = 0x10000;
constexpr unsigned long largest_subtype = 0x1F;
constexpr unsigned long largest_city_type = 0x1000;  // of points; they have no subtypes
constexpr unsigned long largest_line_type = 0x3F;
constexpr unsigned long largest_polygon_type = 0x7F;

std::optional<unsigned long> hexadecimal(std::string_view text) {
  unsigned long value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  if (text.empty() || read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

// As measured with mkgmap: "xx00" counts as "xx".
bool mkgmap_takes(MpKind kind, unsigned long type) {
  const unsigned long low = type & 0xFFU;
  if (type >= first_extended_type) return low <= largest_subtype;
  if (kind == MpKind::point)
    return type <= 0xFFU || low == 0 || (type > largest_city_type + 0xFFU && low <= largest_subtype);
  const unsigned long plain = low == 0 ? type >> 8U : type;
  return plain <= (kind == MpKind::line ? largest_line_type : largest_polygon_type);
}

std::string_view kind_name(MpKind kind) {
  if (kind == MpKind::point) return "point";
  return kind == MpKind::line ? "line" : "polygon";
}

}  // namespace

std::string typed_type(std::string_view text) {
  std::string_view type = trim(text);
  if (type.starts_with("0x") || type.starts_with("0X")) type.remove_prefix(2);
  return std::string(type);
}

bool is_valid_type(std::string_view text) { return hexadecimal(trim(text)).value_or(0) >= 1; }

std::string invalid_type_message(std::string_view text) {
  return "Invalid Type:" + std::string(text) + "Type must be hexadecimal";
}

LineType line_type(std::string_view text) {
  constexpr std::size_t shortened_from = 4;
  std::string_view type = trim(text);
  while (type.starts_with('0'))
    type.remove_prefix(1);
  if (type.size() != shortened_from) return {std::string(type), false};
  return {std::string(type.substr(0, 2)), true};
}

std::string shortened_type_message(std::string_view new_type) {
  return "mkgmap patch:TYPE changed to " + std::string(new_type);
}

std::string refused_type_warning(MpKind kind, std::string_view type) {
  const std::optional<unsigned long> value = hexadecimal(type);
  if (!value || mkgmap_takes(kind, *value)) return "";
  return "mkgmap does not take " + std::string(kind_name(kind)) + " type " + std::string(type) +
         ": it will build no map from the file, and not say why.";
}

const std::vector<NamedType>& named_types(MpKind kind) {
  static const std::vector<NamedType> points = {
      {"2a", "Restaurant"},      {"2a0e", "Cafe"},      {"2b01", "Hotel"},       {"2b02", "Guest house"},
      {"2b03", "Campground"},    {"2c02", "Museum"},    {"2c04", "Attraction"},  {"2c06", "Park"},
      {"2c08", "Sports ground"}, {"2d02", "Bar"},       {"2e02", "Supermarket"}, {"2f", "Service"},
      {"2f01", "Fuel"},          {"2f04", "Airport"},   {"2f06", "Bank"},        {"2f08", "Station"},
      {"2f09", "Marina"},        {"2f0b", "Parking"},   {"2f0c", "Rest area"},   {"3001", "Police"},
      {"3002", "Hospital"},      {"4a", "Picnic area"}, {"4c", "Information"},   {"4e", "Toilets"},
      {"50", "Drinking water"},  {"51", "Telephone"},   {"52", "Viewpoint"},     {"6401", "Bridge"},
      {"6402", "Building"},      {"640b", "Military"},  {"640c", "Mine"},        {"6411", "Tower"},
      {"6412", "Trail head"},    {"6508", "Waterfall"}, {"6511", "Spring"},      {"6616", "Summit"}};
  static const std::vector<NamedType> lines = {
      {"1", "Motorway"},        {"2", "Main road"},         {"3", "Other highway"},
      {"4", "Arterial road"},   {"5", "Collector road"},    {"6", "Street"},
      {"7", "Alley"},           {"8", "Slip road"},         {"a", "Unpaved road"},
      {"c", "Roundabout"},      {"14", "Railway"},          {"15", "Shoreline"},
      {"16", "Trail"},          {"18", "Stream"},           {"1a", "Ferry"},
      {"1c", "State border"},   {"1d", "County border"},    {"1e", "National border"},
      {"1f", "River"},          {"20", "Contour, minor"},   {"21", "Contour, medium"},
      {"22", "Contour, major"}, {"26", "Stream, seasonal"}, {"27", "Runway"},
      {"28", "Pipeline"},       {"29", "Power line"}};
  static const std::vector<NamedType> polygons = {
      {"1", "City"},          {"4", "Military area"},  {"5", "Car park"},   {"7", "Airport"},
      {"8", "Shopping area"}, {"a", "University"},     {"b", "Hospital"},   {"c", "Industrial area"},
      {"13", "Building"},     {"14", "National park"}, {"17", "City park"}, {"18", "Golf course"},
      {"19", "Sports area"},  {"1a", "Cemetery"},      {"28", "Sea"},       {"3c", "Large lake"},
      {"40", "Lake"},         {"46", "River"},         {"4e", "Orchard"},   {"50", "Forest"},
      {"51", "Wetland"},      {"53", "Sand flat"}};
  if (kind == MpKind::point) return points;
  return kind == MpKind::line ? lines : polygons;
}

}  // namespace ferrowen
