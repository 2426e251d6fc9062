"""Plane geometry for the sample map: points are (x, y) in metres east and north of 62 N 7 W."""
import math

LAT0, LON0 = 62.0, -7.0
METRES_PER_DEGREE_LAT = 111412.0
METRES_PER_DEGREE_LON = 52397.0  # at 62 degrees north; the map is small enough for one value


def to_plane(lat, lon):
    return (lon - LON0) * METRES_PER_DEGREE_LON, (lat - LAT0) * METRES_PER_DEGREE_LAT


def to_degrees(point):
    return LAT0 + point[1] / METRES_PER_DEGREE_LAT, LON0 + point[0] / METRES_PER_DEGREE_LON


def distance(a, b):
    return math.sqrt((a[0] - b[0]) ** 2 + (a[1] - b[1]) ** 2)


def length(line):
    return sum(distance(a, b) for a, b in zip(line, line[1:]))


def blend(a, b, share):
    return a[0] + (b[0] - a[0]) * share, a[1] + (b[1] - a[1]) * share


def resample(line, step):
    """Points at equal distances of about `step` along the line, both ends kept."""
    pieces = max(1, round(length(line) / step))
    gap = length(line) / pieces
    result, walked, due = [line[0]], 0.0, gap
    for a, b in zip(line, line[1:]):
        edge = distance(a, b)
        while edge > 0 and walked + edge >= due - 1e-9 and len(result) < pieces:
            result.append(blend(a, b, (due - walked) / edge))
            due += gap
        walked += edge
    return result + [line[-1]]


def smooth_curve(points, closed, per_edge=12):
    """A Catmull-Rom curve through the points."""
    count = len(points)
    edges = count if closed else count - 1
    result = []
    for i in range(edges):
        around = [(i + k) % count if closed else min(max(i + k, 0), count - 1) for k in (-1, 0, 1, 2)]
        p0, p1, p2, p3 = (points[k] for k in around)
        for step in range(per_edge):
            t = step / per_edge
            result.append(tuple(
                0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t ** 2 + (3 * b - a - 3 * c + d) * t ** 3)
                for a, b, c, d in zip(p0, p1, p2, p3)))
    return result + [points[0] if closed else points[-1]]


def relax(line, rounds):
    """Takes the corners off a line by averaging neighbours; the ends stay."""
    for _ in range(rounds):
        line = [line[0]] + [((a[0] + 2 * b[0] + c[0]) / 4, (a[1] + 2 * b[1] + c[1]) / 4)
                            for a, b, c in zip(line, line[1:], line[2:])] + [line[-1]]
    return line


def inside(ring, point):
    return inside_edges(zip(ring, ring[1:] + ring[:1]), point)


def inside_edges(edges, point):
    x, y = point
    hit = False
    for (ax, ay), (bx, by) in edges:
        if (ay > y) != (by > y) and x < ax + (bx - ax) * (y - ay) / (by - ay):
            hit = not hit
    return hit


def crossing(a, b, c, d):
    """Where the segments a-b and c-d cross inside both, as shares of their lengths; None when they do not."""
    rx, ry, sx, sy = b[0] - a[0], b[1] - a[1], d[0] - c[0], d[1] - c[1]
    turn = rx * sy - ry * sx
    if turn == 0:
        return None
    t = ((c[0] - a[0]) * sy - (c[1] - a[1]) * sx) / turn
    u = ((c[0] - a[0]) * ry - (c[1] - a[1]) * rx) / turn
    return (t, u) if 0 < t < 1 and 0 < u < 1 else None
