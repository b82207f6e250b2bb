#!/usr/bin/env python3
"""Writes the golden VBF files of this folder: an independent writer, a few lines per record.

Run it in this folder after a change; the files are committed. Samples that are compressed use stored blocks, so that the files
do not depend on a version of zlib.
"""
import struct
import zlib

NEUTRAL = ([(0, 1)] * 9, 1.0)
METRE_MICRO = ([(1, 1)] + [(0, 1)] * 8, 1e-6)
PER_ROOT_SECOND = ([(0, 1), (0, 1), (-1, 2)] + [(0, 1)] * 6, 0.5)
NAN = float("nan")


def text(value):
    return value if isinstance(value, bytes) else value.encode()


def prefixed(value):
    return struct.pack("<I", len(text(value))) + text(value)


def dictionary(entries):
    body = b"".join(prefixed(key) + prefixed(entries[key]) for key in sorted(entries, key=text))
    return body + struct.pack("<I", 0)


def padded(values, form, fill):
    values = list(values) + [fill] * (15 - len(values))
    return struct.pack("<15" + form, *values)


def unit_record(unit):
    exponents, factor = unit
    return b"".join(struct.pack("<ii", *pair) for pair in exponents) + struct.pack("<d", factor)


def stored_zlib(data, block):
    """A zlib stream of stored blocks with an empty stored block, which is a flush point, behind every `block` bytes."""
    stream, positions = b"\x78\x01", []
    for begin in range(0, len(data), block):
        piece = data[begin:begin + block]
        stream += struct.pack("<BHH", 0, len(piece), 0xFFFF ^ len(piece)) + piece
        if len(piece) == block:
            stream += struct.pack("<BHH", 0, 0, 0xFFFF)
            positions.append(len(stream))
    stream += struct.pack("<BHH", 1, 0, 0xFFFF)
    return stream + struct.pack(">I", zlib.adler32(data)), positions


def footer(stack, end):
    rank = len(stack["sizes"])
    has = lambda key: padded([1 if axis in stack.get(key, {}) else 0 for axis in range(rank)], "I", 0)
    metadata, tags = text(stack.get("metadata", "")), dictionary(stack.get("tags", {}))
    units = list(stack.get("units", [])) + [NEUTRAL] * (15 - len(stack.get("units", [])))
    points, block = stack.get("flush", ([], 0))
    fixed = struct.pack("<I", stack.get("footer_size", 1444)) + has("column_positions") + has("column_labels")
    fixed += struct.pack("<I", len(metadata)) + unit_record(stack.get("data_unit", NEUTRAL))
    fixed += b"".join(unit_record(unit) for unit in units)
    fixed += struct.pack("<QQQQI", len(points), block, len(tags), end, stack.get("required_version", 0))
    assert len(fixed) == 1444
    size = stack.get("footer_size", 1444)
    fixed = fixed[:size] + b"\xEE" * max(0, size - 1444)
    labels = stack.get("labels", [""] * rank)
    sections = b"".join(prefixed(label) for label in labels)
    if size >= 64:
        positions = stack.get("column_positions", {})
        sections += b"".join(struct.pack("<%dd" % len(positions[axis]), *positions[axis]) for axis in sorted(positions))
    if size > 124:
        names = stack.get("column_labels", {})
        sections += b"".join(prefixed(name) for axis in sorted(names) for name in names[axis])
    if size > 128:
        sections += metadata
    if size >= 1424:
        sections += struct.pack("<%dQ" % len(points), *points)
    if size >= 1432:
        sections += tags
    return fixed + sections


def stack_bytes(stack, position, last):
    name, description = text(stack.get("name", "")), text(stack.get("description", ""))
    data, version, rank = stack.get("data", b""), stack.get("version", 5), len(stack["sizes"])
    kind, level = stack.get("compression", (0, 1))
    behind = position + 368 + len(name) + len(description) + len(data)
    tail = b"" if version == 0 else footer(stack, 0)
    end = behind + len(tail)
    if tail:
        tail = footer(stack, end)
    header = b"VREL_BF_STACK\n\xFF\xFF" + struct.pack("<II", version, rank) + padded(stack["sizes"], "I", 0)
    header += padded(stack.get("lengths", [1.0] * rank), "d", 0.0) + padded(stack.get("offsets", [0.0] * rank), "d", 0.0)
    header += struct.pack("<iIiII", stack["type"], kind, level, len(name), len(description))
    header += struct.pack("<IIQQ", 1 if data else 0, 0, len(data), 0 if last else end)
    assert len(header) == 368
    return header + name + description + data + tail


def file_bytes(stacks, description="golden", version=2, entries=None):
    start = 26 + len(description) + (8 if version > 1 else 0)
    body = b""
    for index, stack in enumerate(stacks):
        body += stack_bytes(stack, start + len(body), index + 1 == len(stacks))
    header = b"VREL_BF\n\xFF\xFF" + struct.pack("<IQI", version, start if stacks else 0, len(description)) + text(description)
    if version == 1:
        return header + body
    return header + struct.pack("<Q", start + len(body)) + body + dictionary(entries or {"ome_xml": "<OME/>"})


SAMPLES = bytes(range(1, 49))
STREAM, POINTS = stored_zlib(SAMPLES, 16)

FULL = {
    "name": "probe", "description": "a stack", "type": 4, "sizes": [6, 4], "lengths": [6e-6, 2.5], "offsets": [0.0, -1.25],
    "labels": ["X", "Zeit"], "column_positions": {0: [0.0, 0.5, 1.5, 2.0, 4.0, 8.0]}, "column_labels": {1: ["a", "", "ccc", "dd"]},
    "metadata": "<root/>", "data_unit": PER_ROOT_SECOND, "units": [METRE_MICRO, NEUTRAL],
    "tags": {"alpha": "1", "empty": "", b"\xFFbyte": "some words"}, "data": SAMPLES,
}
PLAIN = {"type": 1, "sizes": [3], "data": b"\x07\x08\x09"}


def varied(stack, **changes):
    return {**stack, **changes}


ZIPPED = varied(FULL, compression=(1, 6), data=STREAM, flush=(POINTS, 16))

FILES = {
    "no_stack": file_bytes([]),
    "no_stack_version_1": file_bytes([], version=1),
    "raw": file_bytes([FULL, PLAIN]),
    "zipped": file_bytes([ZIPPED, PLAIN]),
    "version_1": file_bytes([FULL, PLAIN], version=1),
    "rank_0": file_bytes([{"type": 128, "sizes": [], "data": struct.pack("<d", 1.5)}]),
    "rank_15": file_bytes([{"type": 1, "sizes": [1] * 14 + [2], "data": b"\x01\x02"}]),
    "empty_zipped": file_bytes([varied(PLAIN, data=b"", compression=(1, 1))]),
    "not_a_number": file_bytes([varied(PLAIN, sizes=[1, 3], lengths=[NAN, float("inf")], offsets=[NAN, 0.0])]),
    "stack_version_0": file_bytes([varied(FULL, version=0), varied(PLAIN, version=0)]),
    "stack_version_2": file_bytes([varied(FULL, version=2)]),
    "stack_version_3": file_bytes([varied(FULL, version=3)]),
    "footer_64": file_bytes([varied(FULL, footer_size=64), PLAIN]),
    "footer_1000": file_bytes([varied(FULL, footer_size=1000)]),
    "footer_1002": file_bytes([varied(FULL, footer_size=1002, units=[METRE_MICRO] * 15)]),
    "footer_1500": file_bytes([varied(ZIPPED, footer_size=1500), PLAIN]),
    "required_version_1": file_bytes([varied(PLAIN, required_version=1)]),
    "required_version_6": file_bytes([PLAIN, varied(PLAIN, required_version=6)]),
}

for file_name, content in FILES.items():
    with open(file_name + ".vbf", "wb") as target:
        target.write(content)
