#include "app/osm_tag_keys.hpp"

namespace ferrowen {

const std::vector<OsmTagKey>& osm_tag_keys() {
  static const std::vector<OsmTagKey> keys = {
      {"access", "Who may use a way or enter a place.", "yes, no, private, permissive, destination"},
      {"addr:city", "The town or village of an address.", ""},
      {"addr:housenumber", "The house number of an address.", ""},
      {"addr:postcode", "The postal code of an address.", ""},
      {"addr:street", "The street of an address.", ""},
      {"admin_level", "The rank of an administrative boundary, 2 for countries and higher for smaller areas.",
       "2, 4, 6, 8"},
      {"aeroway", "Parts of an airport.", "aerodrome, runway, taxiway, helipad"},
      {"amenity", "Places that people go to for a service.", "parking, restaurant, school, hospital, fuel"},
      {"barrier", "Something that stops or slows movement.", "gate, bollard, fence, wall, cycle_barrier"},
      {"bicycle", "Whether bicycles may use a way.", "yes, no, designated, dismount"},
      {"boundary", "The border of an area that cannot be seen on the ground.",
       "administrative, national_park, protected_area"},
      {"bridge", "The way runs over a bridge.", "yes, viaduct"},
      {"building", "The outline of a building and its kind.", "yes, house, garage, church, industrial"},
      {"contour", "A line of equal height, as the contour tool writes it.", "elevation"},
      {"cycleway", "A lane or track for bicycles that belongs to a road.", "lane, track, opposite"},
      {"ele", "The height above the sea in metres.", ""},
      {"ferry", "The class of road that a ferry line carries on.", "primary, secondary, yes"},
      {"foot", "Whether people on foot may use a way.", "yes, no, designated"},
      {"highway", "Roads, streets and paths of every kind.",
       "motorway, primary, residential, track, footway, path"},
      {"historic", "Places of historical interest.", "castle, ruins, memorial, monument"},
      {"junction", "The shape of a crossing of roads.", "roundabout, circular"},
      {"landuse", "What an area of land is used for.", "forest, residential, farmland, meadow, industrial"},
      {"layer", "Which of several things at a crossing lies above the others.", "-1, 1, 2"},
      {"leisure", "Places for free time and sport.", "park, pitch, playground, swimming_pool"},
      {"man_made", "Structures made by people that are no buildings.", "tower, pier, pipeline, water_tower"},
      {"maxspeed", "The highest speed that is allowed on a road.", "30, 50, 100, none"},
      {"name", "The usual name of a thing, in the local language.", ""},
      {"natural", "Things of nature, from the coastline to single trees.",
       "coastline, water, wood, peak, beach"},
      {"oneway", "The road may be used in one direction only.", "yes, no, -1"},
      {"place", "Settlements and other named places.", "city, town, village, hamlet, island"},
      {"power", "Lines and buildings of the electricity supply.", "line, tower, pole, substation"},
      {"railway", "Railways, trams and their stations.", "rail, tram, station, halt, level_crossing"},
      {"ref", "The number or code of a thing, such as a road number.", ""},
      {"route", "A relation of ways that make a route.", "bus, hiking, bicycle, ferry, road"},
      {"sac_scale", "How difficult a mountain path is.", "hiking, mountain_hiking, alpine_hiking"},
      {"shop", "Places where goods or services are sold.", "supermarket, bakery, convenience, clothes"},
      {"surface", "What the surface of a way is made of.", "asphalt, paved, gravel, ground, grass"},
      {"toll", "A fee must be paid to use the road.", "yes, no"},
      {"tourism", "Places for travellers and sights.", "hotel, camp_site, museum, viewpoint, attraction"},
      {"tracktype", "How firm a track is, from solid to soft.", "grade1, grade2, grade3, grade4, grade5"},
      {"tunnel", "The way runs through a tunnel.", "yes, building_passage, culvert"},
      {"type", "The kind of a relation.", "multipolygon, boundary, route, restriction"},
      {"waterway", "Rivers, streams, canals and what stands in them.", "river, stream, canal, dam, weir"},
      {"wetland", "The kind of a wet area of land.", "bog, marsh, reedbed, tidalflat"},
  };
  return keys;
}

}  // namespace ferrowen
