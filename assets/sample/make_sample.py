#!/usr/bin/env python3
"""Draws the sample map of the Faroe Islands: reads the text files beside this script, writes OSM XML.

    make_sample.py OUTPUT.osm

Needs nothing but Python 3. The same sources give the same bytes. What is read: coastline.txt, islands.txt,
places.txt, roads.txt, water.txt, areas.txt, points.txt; each says its own form in its first lines.
"""
import math
import os
import sys
from xml.sax.saxutils import quoteattr

sys.dont_write_bytecode = True
import geometry  # noqa: E402
from land import Land  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
STAMP = "2024-01-01T00:00:00Z"
SHORE_STEP = 60.0
ROAD_STEP, TUNNEL_STEP, FERRY_STEP, OUTLINE_STEP = 25.0, 60.0, 120.0, 40.0
LONGEST_WAY = 1900  # nodes; other programs refuse ways of more than 2000
BOUNDS = (61.30, -7.80, 62.48, -6.12)
MAX_SPEED = {"primary": "80", "secondary": "80", "tertiary": "60", "unclassified": "50", "residential": "50"}


def lines_of(name):
    with open(os.path.join(HERE, name), encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            line = line.strip()
            if line and not line.startswith("#"):
                yield number, line


def plane_point(text):
    lat, lon = text.split()
    return geometry.to_plane(float(lat), float(lon))


def tags_of(words):
    """Tags from "key=value key=value"; a value runs up to the next key."""
    tags = {}
    for word in words.split():
        if "=" in word:
            key, value = word.split("=", 1)
            tags[key] = value
        else:
            tags[key] += " " + word
    return tags


def sections_of(name):
    """Pairs of header words and lines of the sections "[header]" of a file."""
    header, body = None, []
    for number, line in lines_of(name):
        if line.startswith("["):
            if header:
                yield header, body
            header, body = line.strip("[]"), []
        else:
            body.append((number, line))
    yield header, body


class Drawing:
    """All nodes and ways so far; points that must be one node are asked for by name."""

    def __init__(self):
        self.nodes, self.node_tags, self.ways, self.named = [], {}, [], {}

    def node(self, point, tags=None):
        self.nodes.append(point)
        if tags:
            self.node_tags[len(self.nodes)] = tags
        return len(self.nodes)

    def way(self, refs, tags):
        self.ways.append((refs, tags))

    def line(self, points, tags, closed=False):
        refs = [self.node(point) for point in (points[:-1] if closed else points)]
        self.way(refs + refs[:1] if closed else refs, tags)


def read_rings():
    rings = []
    for _, line in lines_of("coastline.txt"):
        if line.startswith("ring"):
            rings.append([])
        else:
            rings[-1].append(plane_point(line))
    return [smooth_shore(ring) for ring in rings]


def smooth_shore(ring):
    """The data's shores are stairs of straight pieces; a curve through them looks like a shore."""
    softened = geometry.relax(ring[-2:] + ring + ring[:2], 1)[2:-2]
    return geometry.resample(geometry.smooth_curve(softened, True, 6), SHORE_STEP)[:-1]


def draw_coast(drawing, rings):
    """Shores as closed ways, long ones in pieces; islands get their name as a point."""
    for ring in rings:
        refs = [drawing.node(point) for point in ring]
        refs.append(refs[0])
        for first in range(0, len(refs) - 1, LONGEST_WAY):
            drawing.way(refs[first:first + LONGEST_WAY + 1], {"natural": "coastline", "source": "GSHHG"})
    for number, line in lines_of("islands.txt"):
        name, where, population = (part.strip() for part in line.split(";"))
        point = plane_point(where)
        if not any(geometry.inside(ring, point) for ring in rings):
            raise SystemExit("islands.txt:%d: %s is not on land" % (number, name))
        drawing.node(point, {"place": "island", "name": name, "population": population})


def draw_places(drawing, land):
    """Settlements and their built-up areas; gives the point of each where roads meet."""
    centres = {}
    for _, line in lines_of("places.txt"):
        kind, name, where, population = (part.strip() for part in line.split(";"))
        point = land.snapped(plane_point(where), 110.0)
        if name in centres:
            raise SystemExit("places.txt: %s twice" % name)
        centres[name] = point
        tags = {"place": kind, "name": name.replace(" í Kalsoy", "")}
        if population:
            tags["population"] = population
        if name == "Tórshavn":
            tags["capital"] = "yes"
        drawing.node((point[0] + 20, point[1] + 30), tags)
        if population and int(population) >= 10:
            radius = 120 + 7.5 * math.sqrt(int(population))
            drawing.line(built_up(land, point, radius), {"landuse": "residential"}, closed=True)
    return centres


def built_up(land, centre, radius):
    """A rounded outline about the centre that stops short of the shore."""
    rim = []
    for spoke in range(20):
        angle = spoke * math.pi / 10
        along = (math.cos(angle), math.sin(angle))
        reach = radius * (0.75 + 0.5 * land.unevenness(centre[0] + 3000 * along[0], centre[1] + 3000 * along[1]))
        while reach > 30 and not all(
                land.on_land((centre[0] + r * along[0], centre[1] + r * along[1]))
                for r in (reach * 0.5, reach, reach + 40)):
            reach -= 25
        rim.append((centre[0] + reach * along[0], centre[1] + reach * along[1]))
    return geometry.resample(geometry.smooth_curve(rim, True), OUTLINE_STEP)


class Roads:
    def __init__(self, drawing, land, centres):
        self.drawing, self.land, self.centres = drawing, land, centres
        self.junctions, self.defined_at, self.legs, self.roundabouts = {}, {}, [], {}

    def way_point(self, text, number):
        """Node number of a way point; the same name always gives the same node."""
        where, _, name = (part.strip() for part in text.partition("@"))
        key = name or where
        if key in self.junctions:
            if where and name and self.defined_at[key] != number:
                raise SystemExit("roads.txt:%d: @%s has a position already" % (number, name))
            return self.junctions[key]
        if where in self.centres:
            point = self.centres[where]
        elif where and where[0].isdigit():
            point = self.land.snapped(plane_point(where), 60.0)
        else:
            raise SystemExit("roads.txt:%d: %s is not known" % (number, text))
        node = self.drawing.node(point)
        self.junctions[key] = node
        self.defined_at[key] = number
        if name and where in self.centres:
            self.junctions[where] = node
        return node

    def point(self, node):
        return self.drawing.nodes[node - 1]

    def add_leg(self, first, second, guides, how, tags):
        """A leg that ends at a roundabout ends at the ring node that lies towards its other end."""
        rings = [self.roundabouts.get(text.lstrip("@")) for text, _ in (first, second)]
        start, end = (None if ring else self.way_point(*way_point) for ring, way_point in zip(rings, (first, second)))
        if start is None:
            start = self.nearest(rings[0], end)
        if end is None:
            end = self.nearest(rings[1], start)
        self.legs.append((start, end, guides, how, tags))

    def nearest(self, ring, other):
        return min(ring, key=lambda node: geometry.distance(self.point(node), self.point(other)))

    def add_roundabout(self, words, tags):
        name, lat, lon, radius = words.split()
        x, y = geometry.to_plane(float(lat), float(lon))
        angles = [2 * math.pi * k / 16 for k in range(16)]
        ring = [self.drawing.node((x + float(radius) * math.cos(a), y + float(radius) * math.sin(a))) for a in angles]
        self.roundabouts[name] = ring
        self.drawing.way(ring + ring[:1], dict(tags, junction="roundabout", oneway="yes", tunnel="yes", layer="-1"))

    def read(self):
        for header, body in sections_of("roads.txt"):
            kind, _, words = header.partition(" ")
            tags = tags_of(words)
            if kind == "ferry":
                self.draw_ferry(tags, body)
                continue
            tags = dict(tags, highway=kind, maxspeed=MAX_SPEED[kind], surface="asphalt")
            self.read_road(tags, body)

    def read_road(self, tags, body):
        """Legs between named points; points without a name only guide the leg that they lie on."""
        previous, how, guides = None, "shore", []
        for place, (number, line) in enumerate(body):
            word, _, rest = line.partition(" ")
            if word == "roundabout":
                self.add_roundabout(rest, {key: tags[key] for key in ("highway", "ref")})
            elif word in ("valley", "tunnel", "bridge"):
                how = line
            elif self.only_guides(body, place, how):
                guides.append((self.land.snapped(plane_point(line), 60.0), how))
                how = "shore"
            else:
                if previous is not None:
                    self.add_leg(previous, (line, number), guides, how, tags)
                previous, how, guides = (line, number), "shore", []

    def only_guides(self, body, place, how):
        line = body[place][1]
        after = body[place + 1][1].split(" ")[0] if place + 1 < len(body) else "tunnel"
        return (line[0].isdigit() and "@" not in line and place > 0 and how in ("shore", "valley")
                and after not in ("tunnel", "bridge"))

    def draw(self):
        """Draws all legs, joins the roads that cross, and adds the ways."""
        drawn = []
        for start, end, guides, how, tags in self.legs:
            a, b = self.point(start), self.point(end)
            word, _, name = how.partition(" ")
            if word in ("tunnel", "bridge"):
                line = geometry.resample([a, b], TUNNEL_STEP)
                tags = dict(tags, name=name, **{word: "yes", "layer": "-1" if word == "tunnel" else "1"})
            else:
                line = self.land.leg(a, guides + [(b, word)], ROAD_STEP)
            refs = [start] + [self.drawing.node(point) for point in line[1:-1]] + [end]
            drawn.append([refs, tags, word in ("tunnel", "bridge")])
        self.crossings = join_crossings(self.drawing, [refs for refs, _, apart in drawn if not apart])
        for refs, tags, _ in drawn:
            self.drawing.way(refs, tags)

    def draw_ferry(self, tags, body):
        """A ferry starts and ends at road nodes; everything between lies at sea."""
        on_road = [i for i, (_, line) in enumerate(body) if not line[0].isdigit()]
        stops = {i: self.way_point(body[i][1], body[i][0]) for i in on_road}
        points = [self.point(stops[i]) if i in stops else plane_point(line) for i, (_, line) in enumerate(body)]
        for first, last in zip(on_road, on_road[1:]):
            line = geometry.relax(geometry.resample(points[first:last + 1], FERRY_STEP), 20)
            self.check_at_sea(line, tags["name"])
            refs = [stops[first]] + [self.drawing.node(point) for point in line[1:-1]] + [stops[last]]
            self.drawing.way(refs, dict(tags, route="ferry"))

    def check_at_sea(self, line, name):
        for point in line:
            from_ends = min(geometry.distance(point, line[0]), geometry.distance(point, line[-1]))
            if from_ends > 500 and self.land.on_land(point):
                where = geometry.to_degrees(point)
                raise SystemExit("roads.txt: ferry %s goes over land at %.4f %.4f" % ((name,) + where))


def join_crossings(drawing, roads):
    """Where two roads cross without a common node they get one."""
    segments = {}
    for road, refs in enumerate(roads):
        for index, (a, b) in enumerate(zip(refs, refs[1:])):
            for end in (a, b):
                x, y = drawing.nodes[end - 1]
                segments.setdefault((int(x // 50), int(y // 50)), set()).add((road, index))
    found = {}
    for group in segments.values():
        for first in group:
            for second in group:
                if first < second:
                    note_crossing(drawing, roads, first, second, found)
    inserts = {}
    for (first, second), (share, other_share) in sorted(found.items()):
        a, b = (drawing.nodes[node - 1] for node in roads[first[0]][first[1]:first[1] + 2])
        node = drawing.node(geometry.blend(a, b, share))
        inserts.setdefault(first[0], []).append((first[1], share, node))
        inserts.setdefault(second[0], []).append((second[1], other_share, node))
    for road, places in inserts.items():
        for index, _, node in sorted(places, reverse=True):
            roads[road].insert(index + 1, node)
    return len(found)


def note_crossing(drawing, roads, first, second, found):
    a, b = roads[first[0]][first[1]:first[1] + 2]
    c, d = roads[second[0]][second[1]:second[1] + 2]
    if len({a, b, c, d}) == 4:
        shares = geometry.crossing(*(drawing.nodes[node - 1] for node in (a, b, c, d)))
        if shares:
            found[(first, second)] = shares


def read_lakes():
    for header, body in sections_of("water.txt"):
        kind, _, words = header.partition(" ")
        yield kind, tags_of(words), [plane_point(line) for _, line in body]


def draw_water(drawing, water):
    for kind, tags, points in water:
        closed = kind == "lake"
        line = geometry.resample(geometry.smooth_curve(points, closed), OUTLINE_STEP)
        drawing.line(line, dict(tags, natural="water", water="lake") if closed else dict(tags, waterway=kind), closed)


def draw_areas(drawing):
    for header, body in sections_of("areas.txt"):
        kind, _, words = header.partition(" ")
        points = [plane_point(line) for _, line in body]
        closed = kind == "area"
        line = geometry.resample(geometry.smooth_curve(points, True), OUTLINE_STEP) if closed else points
        drawing.line(line, tags_of(words), closed)


def draw_points(drawing, land):
    for number, line in lines_of("points.txt"):
        where, *words = (part.strip() for part in line.split(";"))
        point = plane_point(where)
        if not land.on_land(point):
            point = land.snapped(point, 30.0)
        drawing.node(point, dict(word.split("=", 1) for word in words))


def write_xml(drawing, path):
    south, west, north, east = BOUNDS
    stamp = 'version="1" timestamp="%s"' % STAMP
    with open(path, "w", encoding="utf-8", newline="\n") as file:
        file.write('<?xml version="1.0" encoding="UTF-8"?>\n<osm version="0.6" generator="make_sample.py">\n')
        file.write('<bounds minlat="%.2f" minlon="%.2f" maxlat="%.2f" maxlon="%.2f"/>\n' % (south, west, north, east))
        for number, point in enumerate(drawing.nodes, 1):
            lat, lon = geometry.to_degrees(point)
            file.write('<node id="%d" %s lat="%.7f" lon="%.7f"' % (number, stamp, lat, lon))
            write_tags(file, drawing.node_tags.get(number, {}), "/>\n", ">\n", "</node>\n")
        for number, (refs, tags) in enumerate(drawing.ways, 1):
            file.write('<way id="%d" %s>\n' % (number, stamp))
            file.writelines('<nd ref="%d"/>\n' % ref for ref in refs)
            write_tags(file, tags, "", "", "")
            file.write("</way>\n")
        file.write("</osm>\n")


def write_tags(file, tags, without, opening, closing):
    if not tags:
        file.write(without)
        return
    file.write(opening)
    file.writelines("<tag k=%s v=%s/>\n" % (quoteattr(k), quoteattr(v)) for k, v in sorted(tags.items()))
    file.write(closing)


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: make_sample.py OUTPUT.osm")
    rings, water = read_rings(), list(read_lakes())
    land = Land(rings, [geometry.smooth_curve(points, True) for kind, _, points in water if kind == "lake"])
    drawing = Drawing()
    draw_coast(drawing, rings)
    centres = draw_places(drawing, land)
    roads = Roads(drawing, land, centres)
    roads.read()
    roads.draw()
    draw_water(drawing, water)
    draw_areas(drawing)
    draw_points(drawing, land)
    write_xml(drawing, sys.argv[1])
    print("%s: %d nodes, %d ways, %d road crossings joined"
          % (sys.argv[1], len(drawing.nodes), len(drawing.ways), roads.crossings))


main()
