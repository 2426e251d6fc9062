"""Land and sea of the sample map, and the legs of roads that keep to the land.

A grid of small cells says where land is and how far the shore is. A leg is the cheapest way through the grid:
near the shore, not at its edge, out of lakes and off other roads, with a little unevenness for bends.
"""
import heapq

import geometry

CELL = 80.0
SHORE_COUNTS_TO = 1600.0  # metres inland where the shore no longer matters
FAR = 1e9


def noise(u, v):
    """Values of a lattice of pseudo-random numbers from 0 to 1, smoothly blended."""
    def corner(i, j):
        value = (i * 374761393 + j * 668265263) & 0xFFFFFFFF
        value = ((value ^ (value >> 13)) * 1274126177) & 0xFFFFFFFF
        return (value >> 8 & 0xFFFF) / 65535.0

    i, j = int(u // 1), int(v // 1)
    s, t = u - i, v - j
    s, t = s * s * (3 - 2 * s), t * t * (3 - 2 * t)
    low = corner(i, j) * (1 - s) + corner(i + 1, j) * s
    high = corner(i, j + 1) * (1 - s) + corner(i + 1, j + 1) * s
    return low * (1 - t) + high * t


class Land:
    def __init__(self, rings, lakes):
        xs = [x for ring in rings for x, _ in ring]
        ys = [y for ring in rings for _, y in ring]
        self.west, self.south = min(xs) - 10 * CELL, min(ys) - 10 * CELL
        self.columns = int((max(xs) - self.west) / CELL) + 10
        self.rows = int((max(ys) - self.south) / CELL) + 10
        self.edges = self.edges_by_row(rings)
        self.shore = self.distance_to_shore(self.filled(rings))
        self.lake = self.filled(lakes)
        self.road = {}

    def centre(self, cell):
        row, column = divmod(cell, self.columns)
        return self.west + (column + 0.5) * CELL, self.south + (row + 0.5) * CELL

    def cell_of(self, point):
        return int((point[1] - self.south) / CELL) * self.columns + int((point[0] - self.west) / CELL)

    def filled(self, rings):
        """Which cells have their centre inside one of the rings: scan lines through the middles of the rows."""
        crossings = [[] for _ in range(self.rows)]
        for ring in rings:
            for a, b in zip(ring, ring[1:] + ring[:1]):
                (ax, ay), (bx, by) = (a, b) if a[1] < b[1] else (b, a)
                first = int((ay - self.south) / CELL + 0.5)
                last = int((by - self.south) / CELL + 0.5)
                for row in range(first, last):
                    y = self.south + (row + 0.5) * CELL
                    crossings[row].append(ax + (bx - ax) * (y - ay) / (by - ay))
        grid = bytearray(self.rows * self.columns)
        for row, line in enumerate(crossings):
            line.sort()
            for start, end in zip(line[::2], line[1::2]):
                for column in range(int((start - self.west) / CELL + 0.5), int((end - self.west) / CELL + 0.5)):
                    grid[row * self.columns + column] = 1
        return grid

    def neighbours(self, cell):
        w = self.columns
        return ((cell + 1, 1.0), (cell - 1, 1.0), (cell + w, 1.0), (cell - w, 1.0),
                (cell + w + 1, 1.4142), (cell + w - 1, 1.4142), (cell - w + 1, 1.4142), (cell - w - 1, 1.4142))

    def distance_to_shore(self, land):
        """Metres from each land cell to the nearest sea cell; missing cells are sea."""
        shore = {}
        heap = []
        for cell, is_land in enumerate(land):
            if is_land and not all(land[near] for near, _ in self.neighbours(cell)):
                shore[cell] = CELL / 2
                heap.append((CELL / 2, cell))
        heapq.heapify(heap)
        while heap:
            far, cell = heapq.heappop(heap)
            if far > shore[cell]:
                continue
            for near, step in self.neighbours(cell):
                reach = far + step * CELL
                if land[near] and reach < shore.get(near, FAR):
                    shore[near] = reach
                    heapq.heappush(heap, (reach, near))
        return shore

    def edges_by_row(self, rings):
        rows = {}
        for ring in rings:
            for a, b in zip(ring, ring[1:] + ring[:1]):
                first, last = sorted(int((y - self.south) / CELL) for y in (a[1], b[1]))
                for row in range(first, last + 1):
                    rows.setdefault(row, []).append((a, b))
        return rows

    def on_land(self, point):
        """Exact, by the shore itself and not by the grid."""
        return geometry.inside_edges(self.edges.get(int((point[1] - self.south) / CELL), ()), point)

    def snapped(self, point, from_shore, reach=900.0):
        """The point, moved to the nearest place on land that is `from_shore` metres from the shore."""
        best = None
        span = int(reach / CELL) + 1
        middle = self.cell_of(point)
        for row in range(-span, span + 1):
            for column in range(-span, span + 1):
                cell = middle + row * self.columns + column
                if self.shore.get(cell, 0.0) < from_shore or self.lake[cell]:
                    continue
                gap = geometry.distance(self.centre(cell), point)
                if best is None or gap < best[0]:
                    best = (gap, cell)
        if best is None or best[0] > reach:
            lat, lon = geometry.to_degrees(point)
            raise SystemExit("sample: no land near %.4f %.4f" % (lat, lon))
        return point if best[0] < CELL * 0.75 else self.centre(best[1])

    def unevenness(self, x, y):
        """Smooth noise from 0 to 1, hills of about 900 m and knolls of about 300 m, the same in every run."""
        return 0.6 * noise(x / 900.0, y / 900.0) + 0.4 * noise(x / 300.0, y / 300.0)

    def cost(self, cell, keep_to_shore, ends):
        shore = self.shore[cell]
        here = self.centre(cell)
        cost = 1.0 + 4.0 * self.unevenness(*here)
        if keep_to_shore:
            cost += 1.5 * min(shore, SHORE_COUNTS_TO) / SHORE_COUNTS_TO
        if shore < 2 * CELL:
            cost += 1.0
        if shore < CELL:
            cost += 4.0
        if self.lake[cell]:
            cost += 100.0
        if cell in self.road and min(geometry.distance(here, end) for end in ends) > 300.0:
            cost += 6.0
        return cost

    def cheapest_way(self, a, b, keep_to_shore):
        start, goal = self.cell_of(a), self.cell_of(b)
        target = self.centre(goal)
        best, before, cost_of = {start: 0.0}, {}, {}
        heap = [(0.0, start)]
        done = set()
        while heap:
            _, cell = heapq.heappop(heap)
            if cell == goal:
                way = [cell]
                while way[-1] != start:
                    way.append(before[way[-1]])
                return way[::-1]
            if cell in done:
                continue
            done.add(cell)
            for near, step in self.neighbours(cell):
                if near not in self.shore and near != goal:
                    continue
                if near not in cost_of:
                    cost_of[near] = self.cost(near, keep_to_shore, (a, b)) if near in self.shore else 5.0
                total = best[cell] + step * cost_of[near]
                if total < best.get(near, FAR):
                    best[near], before[near] = total, cell
                    heapq.heappush(heap, (total + geometry.distance(self.centre(near), target) / CELL, near))
        raise SystemExit("sample: no way over land from %.4f %.4f to %.4f %.4f"
                         % (geometry.to_degrees(a) + geometry.to_degrees(b)))

    def leg(self, start, stops, step):
        """A smooth line over land with a point every `step` metres. `stops` are pairs of a point and how it is
        reached ("shore": along the shore); the last is the end, the others are passed nearby."""
        way, here = [self.cell_of(start)], start
        for point, how in stops:
            way += self.cheapest_way(here, point, how == "shore")[1:]
            here = point
        rough = [start] + [self.centre(cell) for cell in way[1:-1]] + [here]
        for cell in way:
            self.road.update((near, True) for near, _ in self.neighbours(cell))
        for rounds in (12, 6, 3, 2, 1, 0):
            fewer = [rough[0]] + geometry.relax(rough, rounds)[2:-2:2] + [rough[-1]]
            line = geometry.resample(geometry.smooth_curve(fewer, False), step)
            if all(self.on_land(point) for point in line):
                return line
        raise SystemExit("sample: the road from %.4f %.4f to %.4f %.4f leaves the land"
                         % (geometry.to_degrees(start) + geometry.to_degrees(here)))
