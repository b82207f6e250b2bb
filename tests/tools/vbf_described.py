"""Stacks with labels, physical sizes, units and columns, byte by byte; goes with vbf_bytes."""

import dataclasses
import struct
import zlib

import vbf_bytes
from vbf_bytes import padded, prefixed

METRE, SECOND = 0, 2


def unit(dimension=None, factor=1.0):
    exponents = [value for number in range(9) for value in (int(number == dimension), 1)]
    return struct.pack("<18id", *exponents, factor)


@dataclasses.dataclass
class Axis:
    size: int
    label: str = ""
    length: float = 1.0
    offset: float = 0.0
    unit: bytes = vbf_bytes.NEUTRAL_UNIT
    positions: tuple = ()
    names: tuple = ()


def compressed(samples, block_size):
    """A zlib stream with a full flush at every multiple of a size, and the places of these."""
    stream, flush_points = b"", []
    packer = zlib.compressobj(6)
    for begin in range(0, len(samples), block_size):
        piece = samples[begin:begin + block_size]
        stream += packer.compress(piece)
        if len(piece) == block_size:
            stream += packer.flush(zlib.Z_FULL_FLUSH)
            flush_points.append(len(stream))
    return stream + packer.flush(), flush_points


def stack(axes, samples, data_type=4, name="", description="", block_size=0, entries=None):
    """A file of one stack; compressed where a block size is given, of format version 2 where a file
    dictionary is given. The fastest axis comes first."""
    start = 26 if entries is None else 34
    flush_points = []
    if block_size:
        samples, flush_points = compressed(samples, block_size)
    name, description = name.encode(), description.encode()
    sections = b"".join(prefixed(axis.label.encode()) for axis in axes)
    sections += b"".join(struct.pack(f"<{len(axis.positions)}d", *axis.positions) for axis in axes)
    sections += b"".join(prefixed(text.encode()) for axis in axes for text in axis.names)
    sections += struct.pack(f"<{len(flush_points)}Q", *flush_points)
    tags = vbf_bytes.dictionary({})
    end = start + 368 + len(name) + len(description) + len(samples) + 1444 + len(sections) + len(tags)
    header = b"VREL_BF\n\xff\xff" + struct.pack("<IQI", 1 if entries is None else 2, start, 0)
    header += b"" if entries is None else struct.pack("<Q", end)
    header += b"VREL_BF_STACK\n\xff\xff" + struct.pack("<II", 5, len(axes))
    header += struct.pack("<15I", *padded([axis.size for axis in axes], 0))
    header += struct.pack("<15d", *padded([axis.length for axis in axes], 0.0))
    header += struct.pack("<15d", *padded([axis.offset for axis in axes], 0.0))
    header += struct.pack("<iIiIIIIQQ", data_type, int(block_size > 0), 6, len(name), len(description), 1, 0,
                          len(samples), 0)
    footer = struct.pack("<I", 1444)
    footer += struct.pack("<15I", *padded([int(bool(axis.positions)) for axis in axes], 0))
    footer += struct.pack("<15I", *padded([int(bool(axis.names)) for axis in axes], 0))
    footer += struct.pack("<I", 0) + unit() + b"".join(padded([axis.unit for axis in axes], unit()))
    footer += struct.pack("<QQQQI", len(flush_points), block_size, len(tags), end, 0)
    assert len(header) == start + 368 and len(footer) == 1444
    file_dictionary = b"" if entries is None else vbf_bytes.dictionary(entries)
    return header + name + description + samples + footer + sections + tags + file_dictionary
