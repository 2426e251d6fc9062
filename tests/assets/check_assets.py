"""The parts of check_assets.sh that look inside a file: check_assets.py CHECK FILE..."""
import os
import re
import sys
import xml.etree.ElementTree as ElementTree

STREYMOY_AND_EYSTUROY = (
    "Tórshavn", "Kollafjørður", "Hvalvík", "Vestmanna", "Saksun", "Tjørnuvík", "Kirkjubøur", "Norðskáli", "Eiði",
    "Gjógv", "Skálabotnur", "Strendur", "Runavík", "Toftir", "Selatrað", "Fuglafjørður", "Oyndarfjørður", "Elduvík",
    "Leirvík")


def need(truth, message):
    if not truth:
        sys.exit(message)


def lines_of(path):
    with open(path, encoding="utf-8", newline="") as file:
        return file.read().split("\r\n")


class Sample:
    def __init__(self, path):
        try:
            root = ElementTree.parse(path).getroot()
        except (OSError, ElementTree.ParseError) as error:
            sys.exit("cannot be read: %s" % error)
        self.at, self.tags, self.ways = {}, {}, []
        for node in root.iter("node"):
            number = node.get("id")
            self.at[number] = (float(node.get("lon")), float(node.get("lat")))
            tags = {tag.get("k"): tag.get("v") for tag in node.iter("tag")}
            if tags:
                self.tags[number] = tags
        for way in root.iter("way"):
            tags = {tag.get("k"): tag.get("v") for tag in way.iter("tag")}
            self.ways.append(([nd.get("ref") for nd in way.iter("nd")], tags))

    def places(self):
        return {tags["name"]: self.at[n] for n, tags in self.tags.items() if tags.get("place") not in (None, "island")}


def check_places(path):
    sample = Sample(path)
    names = sample.places()
    need(len(names) >= 25, "only %d named places" % len(names))
    missing = [name for name in STREYMOY_AND_EYSTUROY if name not in names]
    need(not missing, "missing: %s" % ", ".join(missing))
    peaks = sum(tags.get("natural") == "peak" and tags["ele"].isdigit() for tags in sample.tags.values())
    lakes = sum(tags.get("natural") == "water" for _, tags in sample.ways)
    ferries = sum(tags.get("route") == "ferry" for _, tags in sample.ways)
    need(min(peaks, lakes, ferries) >= 5, "peaks %d, lakes %d, ferries %d" % (peaks, lakes, ferries))
    print("%d places, %d peaks, %d lakes, %d ferry lines" % (len(names), peaks, lakes, ferries))


def components(ways):
    """For every node of the ways, the first node of the piece of network that it belongs to."""
    leader = {}

    def find(node):
        while leader.setdefault(node, node) != node:
            leader[node] = leader[leader[node]]
            node = leader[node]
        return node

    for refs in ways:
        for ref in refs[1:]:
            leader[find(ref)] = find(refs[0])
    return {node: find(node) for node in leader}


def check_roads(path):
    """All villages of the two main islands lie at one connected net of roads."""
    sample = Sample(path)
    roads = [refs for refs, tags in sample.ways if "highway" in tags]
    piece = components(roads)
    found = set()
    for name in STREYMOY_AND_EYSTUROY:
        x, y = sample.places()[name]
        gap, nearest = min((((sample.at[n][0] - x) * 0.47) ** 2 + (sample.at[n][1] - y) ** 2, n) for n in piece)
        need(gap < 0.002 ** 2, "no road near %s" % name)
        found.add(piece[nearest])
    need(len(found) == 1, "%d separate nets of roads" % len(found))
    share = sum(leader in found for leader in piece.values()) / len(piece)
    print("%d roads, %.0f %% of their nodes in the main net" % (len(roads), 100 * share))


def inside(edges, point):
    x, y = point
    hit = False
    for (ax, ay), (bx, by) in edges:
        if (ay > y) != (by > y) and x < ax + (bx - ax) * (y - ay) / (by - ay):
            hit = not hit
    return hit


def check_land(path):
    """Coastlines close with the land on their left; roads but bridges and tunnels lie on land."""
    sample = Sample(path)
    shores = [refs for refs, tags in sample.ways if tags.get("natural") == "coastline"]
    starts, ends = sorted(refs[0] for refs in shores), sorted(refs[-1] for refs in shores)
    need(shores and starts == ends, "coastlines do not close")
    edges, area = {}, 0.0
    for refs in shores:
        for a, b in zip(refs, refs[1:]):
            a, b = sample.at[a], sample.at[b]
            area += a[0] * b[1] - b[0] * a[1]
            for row in range(int(min(a[1], b[1]) * 500), int(max(a[1], b[1]) * 500) + 1):
                edges.setdefault(row, []).append((a, b))
    need(area > 0, "the coastlines have the land on their right")
    checked = 0
    for refs, tags in sample.ways:
        if "highway" in tags and "tunnel" not in tags and "bridge" not in tags:
            for ref in refs:
                point = sample.at[ref]
                need(inside(edges.get(int(point[1] * 500), ()), point), "%s in the sea at %s" % (tags, point))
                checked += 1
    need(checked > 1000, "only %d road nodes" % checked)
    print("%d road nodes on land" % checked)


def check_shape(path):
    """Enough nodes for several tiles, none without use, no way too long."""
    sample = Sample(path)
    used = {ref for refs, _ in sample.ways for ref in refs}
    need(len(sample.at) >= 25000, "only %d nodes" % len(sample.at))
    need(used <= set(sample.at), "ways with missing nodes")
    stray = set(sample.at) - used - set(sample.tags)
    need(not stray, "%d nodes without use" % len(stray))
    need(all(2 <= len(refs) <= 2000 for refs, _ in sample.ways), "a way is too short or too long")
    need(all(a != b for refs, _ in sample.ways for a, b in zip(refs, refs[1:])), "a way repeats a node")
    print("%d nodes, %d ways" % (len(sample.at), len(sample.ways)))


def types_in_style(folder, name):
    """Types of the rules of a style file and of the files that it includes."""
    found = set()
    with open(os.path.join(folder, name), encoding="utf-8") as file:
        for line in file:
            line = line.split("#")[0]
            found.update(int(code, 16) for code in re.findall(r"\[\s*(0x[0-9a-fA-F]+)", line))
            included = re.match(r"\s*include\s+['\"]([^'\"]+)['\"]", line)
            if included:
                found |= types_in_style(folder, included.group(1))
    return found


def check_typ(path, style):
    sections = re.findall(r"\[_(\w+)\]\s(.*?)\[end\]", "\n".join(lines_of(path)), re.DOTALL)
    total = 0
    for kind, name in (("point", "points"), ("line", "lines"), ("polygon", "polygons")):
        wanted = types_in_style(style, name)
        need(len(wanted) > 30, "the style file %s holds only %d types" % (name, len(wanted)))
        bodies = [body for section, body in sections if section == kind]
        drawn = [int(re.search(r"^Type=(0x\w+)", body, re.MULTILINE).group(1), 16) for body in bodies]
        need(len(drawn) == len(set(drawn)), "%s: a type is drawn twice" % name)
        missing = wanted - set(drawn)
        need(not missing, "%s not drawn: %s" % (name, " ".join("0x%02x" % code for code in sorted(missing))))
        for body in bodies:
            need("String1=0x04," in body and "String2=0x02," in body, "%s: labels missing:\n%s" % (name, body[:80]))
        total += len(drawn)
        if kind == "polygon":
            order = dict(sections)["drawOrder"]
            ordered = [int(code, 16) for code in re.findall(r"Type=(0x\w+),[1-8]$", order, re.MULTILINE)]
            need(sorted(ordered) == sorted(drawn), "draw order and areas differ")
            need(0x4B in drawn, "no background 0x4b")
    print("%d types" % total)


def check_hgt_land(path):
    lines = lines_of(path)
    need(lines.pop() == "", "no line end at the end")
    cells = set(lines)
    need(lines == sorted(cells), "not sorted, or a name twice")
    bad = [line for line in lines if not re.fullmatch(r"[NS]\d\d[EW]\d\d\d", line)]
    need(not bad, "not a cell: %s" % bad[:3])
    need(20000 <= len(lines) <= 28000, "%d cells" % len(lines))
    for name in ("N62W007", "N61W007", "N46E009", "N47E009", "S55W037", "N57W014", "N71E025", "S16W006", "S78E166"):
        need(name in cells, "%s is missing" % name)
    for name in ("N30W040", "S00W001", "N00E000", "N60W020", "S50E090", "S60W120", "N89E000"):
        need(name not in cells, "%s is sea" % name)
    need(sum(line.startswith("S90") for line in lines) == 360, "the South Pole is not whole")
    print("%d cells" % len(lines))


OWN_OPTIONS = """mapname family-id country-name index series-name family-name overview-mapname remove-short-arcs
style-file style generate-sea unicode latin1 code-page keep-going check-roundabouts drive-on max-jobs output-dir
transparent route nsis add-pois-to-areas add-pois-to-lines merge-lines tdbfile description draw-priority gmapsupp
mapid max-nodes max-areas polygon-file precomp-sea dem dem-poly input-file read-config""".split()


def check_options(mkopts, splopts):
    total = 0
    for path in (mkopts, splopts):
        active = [line for line in lines_of(path) if line and not line.startswith(("#", "<"))]
        for line in active:
            match = re.fullmatch(r"--([a-z0-9-]+)(=\S+)?", line)
            need(match, "not an option: %s" % line)
            need(match.group(1) not in OWN_OPTIONS, "the program sets this itself: %s" % line)
        for line in lines_of(path):
            need(not re.search(r"\.mp|\.o5m|\.osm|\.pbf|polygon-file|##", line), "taken for something else: %s" % line)
        total += len(active)
    marks = [line for line in lines_of(mkopts) if "dem>" in line]
    need(marks in ([], ["<dem>", "</dem>"]), "the block of elevation options is not closed")
    need("--output=o5m" in lines_of(splopts), "splopts: no --output=o5m")
    print("%d active options" % total)


def check_crlf(path):
    with open(path, "rb") as file:
        data = file.read()
    need(data.endswith(b"\r\n"), "%s: no line end at the end" % path)
    need(data.count(b"\n") == data.count(b"\r\n") == data.count(b"\r"), "%s: mixed line ends" % path)
    data.decode("utf-8")


CHECKS = {"places": check_places, "roads": check_roads, "land": check_land, "shape": check_shape, "typ": check_typ,
          "hgt_land": check_hgt_land, "options": check_options, "crlf": check_crlf}
CHECKS[sys.argv[1]](*sys.argv[2:])
