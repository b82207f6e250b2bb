"""VBF files with every part that the format knows, and what a writer leaves that was killed."""

import copy
import dataclasses
import struct
import zlib

NEUTRAL = ([(0, 1)] * 9, 1.0)
SIZE_OF = {1: 1, 2: 1, 4: 2, 8: 2, 16: 4, 32: 4, 64: 4, 128: 8}


@dataclasses.dataclass
class Stack:
    """What a stack holds; the samples as bytes, in a stream where there is a level."""
    sizes: tuple
    samples: bytes = b""
    data_type: int = 1
    level: int = 0
    block: int = 0
    version: int = 5
    name: bytes = b""
    description: bytes = b""
    lengths: tuple = ()
    offsets: tuple = ()
    labels: tuple = ()
    units: tuple = ()
    data_unit: tuple = NEUTRAL
    column_positions: dict = dataclasses.field(default_factory=dict)
    column_labels: dict = dataclasses.field(default_factory=dict)
    metadata: bytes = b""
    tags: dict = dataclasses.field(default_factory=dict)
    has_data: int = 1


def prefixed(text):
    return struct.pack("<I", len(text)) + text


def dictionary(entries):
    return b"".join(prefixed(key) + prefixed(entries[key]) for key in sorted(entries)) + bytes(4)


def unit_record(unit):
    exponents, factor = unit
    return b"".join(struct.pack("<ii", *pair) for pair in exponents) + struct.pack("<d", factor)


def padded(values, default):
    return list(values) + [default] * (15 - len(values))


def stream(stack):
    """The zlib stream and the offsets of its flush points."""
    if not stack.samples:
        return b"", []
    encoder = zlib.compressobj(stack.level)
    content, points = b"", []
    block = stack.block or len(stack.samples) + 1
    for begin in range(0, len(stack.samples), block):
        piece = stack.samples[begin:begin + block]
        content += encoder.compress(piece)
        if len(piece) == block:
            content += encoder.flush(zlib.Z_FULL_FLUSH)
            points.append(len(content))
    return content + encoder.flush(), points


def data(stack):
    return stream(stack) if stack.level else (stack.samples, [])


def header(stack, data_length, following):
    rank = len(stack.sizes)
    lengths = stack.lengths or [1.0] * rank
    content = b"VREL_BF_STACK\n\xff\xff" + struct.pack("<II", stack.version, rank)
    content += struct.pack("<15I", *padded(stack.sizes, 0)) + struct.pack("<15d", *padded(lengths, 0.0))
    content += struct.pack("<15d", *padded(stack.offsets, 0.0))
    content += struct.pack("<iIiIIIIQQ", stack.data_type, 1 if stack.level else 0, stack.level or 1, len(stack.name),
                           len(stack.description), stack.has_data, 0, data_length, following)
    return content + stack.name + stack.description


def flags(stack, columns):
    return struct.pack("<15I", *padded([int(axis in columns) for axis in range(len(stack.sizes))], 0))


def footer(stack, position, points):
    """Footer and sections at a position."""
    rank = len(stack.sizes)
    sections = b"".join(prefixed(label) for label in stack.labels or [b""] * rank)
    for axis in sorted(stack.column_positions):
        sections += struct.pack(f"<{stack.sizes[axis]}d", *stack.column_positions[axis])
    for axis in sorted(stack.column_labels):
        sections += b"".join(prefixed(label) for label in stack.column_labels[axis])
    sections += stack.metadata + struct.pack(f"<{len(points)}Q", *points) + dictionary(stack.tags)
    content = struct.pack("<I", 1444) + flags(stack, stack.column_positions) + flags(stack, stack.column_labels)
    content += struct.pack("<I", len(stack.metadata)) + unit_record(stack.data_unit)
    content += b"".join(unit_record(unit) for unit in padded(stack.units, NEUTRAL))
    content += struct.pack("<QQQQI", len(points), stack.block, len(dictionary(stack.tags)),
                           position + 1444 + len(sections), 0)
    assert len(content) == 1444
    return content + sections


def stack_bytes(stack, position, last):
    content, points = data(stack)
    start = header(stack, 0, 0)
    tail = footer(stack, position + len(start) + len(content), points) if stack.version else b""
    end = position + len(start) + len(content) + len(tail)
    return header(stack, len(content), 0 if last else end) + content + tail


def file_header(first, description, version, dictionary_position):
    content = b"VREL_BF\n\xff\xff" + struct.pack("<IQI", version, first, len(description)) + description
    return content + (struct.pack("<Q", dictionary_position) if version > 1 else b"")


def file(stacks, description=b"", version=2, entries=None, closed=True):
    start = len(file_header(0, description, version, 0))
    body = b""
    for number, stack in enumerate(stacks):
        body += stack_bytes(stack, start + len(body), number + 1 == len(stacks))
    end = start + len(body)
    content = file_header(start if stacks else 0, description, version, end if closed else 0) + body
    return content + (dictionary(entries or {}) if closed and version > 1 else b"")


def killed(stacks, unfinished, grown=False, **options):
    """A file whose writer died with all samples of a further stack written, but nothing behind them."""
    content = file(stacks, closed=False, **options)
    stack = copy.copy(unfinished)
    if grown:
        stack.sizes = (*stack.sizes[:-1], 0)
    return content + header(stack, 0, 0) + data(stack)[0]
