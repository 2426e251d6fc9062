#!/usr/bin/env python3
"""The picture of a screen without a display as PNG: screen_picture.py FRAME PNG

FRAME is the file that "Xvfb -fbdir FOLDER" keeps in its folder."""
import pathlib
import struct
import sys
import zlib


def keep_picture(frame, target):
    """Saves what is seen and returns the number of its colours, at most 256 looked for."""
    data = pathlib.Path(frame).read_bytes()
    head = struct.unpack(">25I", data[:100])
    header_size, width, height, line_bytes, colours = head[0], head[4], head[5], head[12], head[19]
    start = header_size + colours * 12
    rows, seen = [], set()
    for y in range(height):
        line = data[start + y * line_bytes:start + y * line_bytes + width * 4]
        row = bytearray(width * 3)
        row[0::3], row[1::3], row[2::3] = line[2::4], line[1::4], line[0::4]
        rows.append(b"\0" + bytes(row))
        if len(seen) < 256:
            seen.update(zip(line[0::4], line[1::4], line[2::4]))
    pathlib.Path(target).write_bytes(png(width, height, b"".join(rows)))
    return len(seen)


def png(width, height, rows):
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 6)) +
            chunk(b"IEND", b""))


if __name__ == "__main__":
    print(keep_picture(sys.argv[1], sys.argv[2]), "colours")
