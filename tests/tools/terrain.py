"""Height cells that look like nature, always the same for the same number: fractal hills over an uneven base that sinks
below the sea in the west, islands, a lake, a hole of voids and single voids. The standard library alone."""

import array
import math
import random

VOID = -32768
ROUGHNESS = 0.46  # of one octave to the one before: about that of mountains in cells of one second


def _octave(rng, size, cells):
    """Random values on a coarse lattice, read between its points along smooth curves."""
    lattice = [[rng.uniform(-1, 1) for _ in range(cells + 2)] for _ in range(cells + 2)]

    def split(place):
        whole = int(place)
        share = place - whole
        return whole, share * share * (3 - 2 * share)

    places = [split(at * cells / (size - 1)) for at in range(size)]
    for row, down in places:
        upper, lower = lattice[row], lattice[row + 1]
        mixed = [a + (b - a) * down for a, b in zip(upper, lower)]
        yield [mixed[column] + (mixed[column + 1] - mixed[column]) * right for column, right in places]


def _coarse(rng, size):
    field = [[column / size - 0.5 for column in range(size)] for _ in range(size)]
    cells, weight = 3, 1.0
    while cells < size // 2:
        field = [[value + weight * more for value, more in zip(row, octave)]
                 for row, octave in zip(field, _octave(rng, size, cells))]
        cells, weight = cells * 2, weight * ROUGHNESS
    return field, weight


def _between(a, b, c, d, noise):
    """Halfway between the rows (or columns) b and c, along a cubic curve, with noise."""
    return [(9 * (q + r) - p - s) * 0.0625 + x for p, q, r, s, x in zip(a, b, c, d, noise)]


def _double(field, noise):
    """Twice as fine: 2n - 1 samples a side."""
    size = len(field)
    wide = []
    for row in field:
        longer = [row[0], *row, row[-1]]
        out = [0.0] * (2 * size - 1)
        out[0::2] = row
        out[1::2] = _between(longer, longer[1:], longer[2:], longer[3:], noise(size - 1))
        wide.append(out)
    fine = []
    for at in range(size - 1):
        fine.append(wide[at])
        fine.append(_between(wide[max(at - 1, 0)], wide[at], wide[at + 1], wide[min(at + 2, size - 1)],
                             noise(2 * size - 1)))
    fine.append(wide[-1])
    return fine


def heights(size, seed, low=-300, high=2900, voids=True):
    """Rows of whole metres, 1201 or 3601 a side; what would lie below the sea is sea."""
    rng = random.Random(seed)
    field, weight = _coarse(rng, (size - 1) // 16 + 1)
    pool = [rng.uniform(-1, 1) for _ in range(200003)]
    while len(field) < size:
        weight *= ROUGHNESS
        scaled = [weight * value for value in pool]

        def noise(count):
            begin = rng.randrange(len(scaled) - count)
            return scaled[begin:begin + count]

        field = _double(field, noise)
    bottom, top = min(map(min, field)), max(map(max, field))
    scale = (high - low) / (top - bottom)
    offset = low - bottom * scale + 0.5
    rows = [array.array("h", [max(math.floor(value * scale + offset), 0) for value in row]) for row in field]
    _add_lake(rows)
    if voids:
        _add_voids(rows, rng)
    return rows


def _add_lake(rows):
    """A level surface that lies exactly on a contour line."""
    size = len(rows)
    level = rows[size // 2][size // 2] // 20 * 20
    for row in rows[size // 2:size // 2 + size // 9]:
        for column in range(size // 2, size // 2 + size // 7):
            if row[column] < level + 40:
                row[column] = level


def _add_voids(rows, rng):
    size = len(rows)
    for row in rows[size // 8:size // 8 + size // 40]:
        for column in range(size // 3, size // 3 + size // 15):
            row[column] = VOID
    for _ in range(size // 6):
        rows[rng.randrange(size)][rng.randrange(size)] = VOID


def write_cell(path, rows):
    with open(path, "wb") as file:
        for row in rows:
            swapped = array.array("h", row)
            swapped.byteswap()
            file.write(swapped.tobytes())
