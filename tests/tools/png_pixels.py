"""Decodes PNG files in 8 bits of gray, by what the format says alone."""

import struct
import zlib

import numpy


def chunks(content):
    assert content[:8] == b"\x89PNG\r\n\x1a\n"
    place = 8
    while place < len(content):
        size, name = struct.unpack(">I4s", content[place:place + 8])
        data = content[place + 8:place + 8 + size]
        checksum, = struct.unpack(">I", content[place + 8 + size:place + 12 + size])
        assert zlib.crc32(name + data) == checksum
        yield name, data
        place += 12 + size


def paeth(left, above, corner):
    distances = [(abs(above - corner), 0, left), (abs(left - corner), 1, above),
                 (abs(left + above - 2 * corner), 2, corner)]
    return min(distances)[2]


def predicted(kind, left, above, corner):
    return (0, left, above, (left + above) // 2, paeth(left, above, corner))[kind]


def read(path):
    """The pixels as an array of rows."""
    with open(path, "rb") as file:
        parts = list(chunks(file.read()))
    width, height, *form = struct.unpack(">IIBBBBB", dict(parts)[b"IHDR"])
    assert form == [8, 0, 0, 0, 0]
    assert parts[-1] == (b"IEND", b"")
    rows = zlib.decompress(b"".join(data for name, data in parts if name == b"IDAT"))
    assert len(rows) == height * (width + 1)
    pixels = numpy.zeros((height + 1, width + 1), int)
    for y in range(height):
        kind, *row = rows[y * (width + 1):(y + 1) * (width + 1)]
        for x, value in enumerate(row):
            guess = predicted(kind, *(int(pixels[place]) for place in ((y + 1, x), (y, x + 1), (y, x))))
            pixels[y + 1, x + 1] = (value + guess) % 256
    return pixels[1:, 1:].astype("u1")
