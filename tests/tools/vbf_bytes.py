"""VBF files byte by byte, for tests that start the program: a writer that shares nothing with it."""

import struct

NEUTRAL_UNIT = struct.pack("<18id", *[0, 1] * 9, 1.0)


def padded(values, default):
    values = list(values)
    return values + [default] * (15 - len(values))


def prefixed(text):
    return struct.pack("<I", len(text)) + text


def dictionary(entries):
    return b"".join(prefixed(key) + prefixed(entries[key]) for key in sorted(entries)) + bytes(4)


def stack(position, samples, data_type=4, sizes=(), name=b"", description=b"", tags=None, last=True):
    """A raw stack at `position` of the file; the next one follows unless it is the last."""
    sections = b"".join(prefixed(b"") for _ in sizes)
    tag_block = dictionary(tags or {})
    length = 368 + len(name) + len(description) + len(samples) + 1444 + len(sections) + len(tag_block)
    end = position + length
    header = b"VREL_BF_STACK\n\xff\xff" + struct.pack("<II", 5, len(sizes))
    header += struct.pack("<15I", *padded(sizes, 0))
    header += struct.pack("<30d", *padded([1.0] * len(sizes), 0.0), *padded([], 0.0))
    header += struct.pack("<iIiIIIIQQ", data_type, 0, 0, len(name), len(description), 1, 0,
                          len(samples), 0 if last else end)
    footer = struct.pack("<31I", 1444, *padded([], 0), *padded([], 0)) + struct.pack("<I", 0)
    footer += NEUTRAL_UNIT * 16 + struct.pack("<QQQQI", 0, 0, len(tag_block), end, 0)
    assert len(header) == 368 and len(footer) == 1444
    return header + name + description + samples + footer + sections + tag_block


def file(stacks, description=b""):
    """A file of format version 1 with stacks given as keyword arguments of `stack`."""
    start = 26 + len(description)
    content = b"VREL_BF\n\xff\xff" + struct.pack("<IQI", 1, start if stacks else 0, len(description))
    content += description
    for number, arguments in enumerate(stacks):
        last = number == len(stacks) - 1
        content += stack(len(content), last=last, **arguments)
    return content
