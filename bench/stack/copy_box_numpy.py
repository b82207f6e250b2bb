"""Time the copying of boxes of a stack beside numpy's assignment to the same touched array, in one process.

Usage: copy_box_numpy.py path/to/libVrelIo.so [part of a row's name ...]

The stack has 1024 x 1024 x 64 elements of "uint16". What copies it is hidden in the library; it is called by way of
libvrelio_copy_box.so from the same build. The last column compares with memcpy of half the bytes read and written.
"""
import ctypes
import pathlib
import sys
import time

import numpy

SHAPE = (64, 1024, 1024)
IDS = {"uint16": 4, "float32": 64}
# Name, part of the stack, axes of the source by axis of the destination; axis 0 is the fastest one.
BOXES = [("whole", SHAPE, (0, 1, 2)), ("crop", (32, 512, 512), (0, 1, 2)), ("(1,0,2)", SHAPE, (1, 0, 2)),
         ("(2,1,0)", SHAPE, (2, 1, 0)), ("(2,0,1)", SHAPE, (2, 0, 1)), ("(0,2,1)", SHAPE, (0, 2, 1)),
         ("crop (1,0,2)", (32, 500, 500), (1, 0, 2)), ("crop (2,1,0)", (50, 500, 500), (2, 1, 0)),
         ("slice (1,2)", (64, 1024, 1), (1, 2, 0))]
ROUNDS = 9


def load(path):
    build = pathlib.Path(path).resolve().parent.parent
    return ctypes.CDLL(str(build / "bench" / "stack" / "libvrelio_copy_box.so")).copy_box_entry


def seconds(action):
    start = time.process_time()
    action()
    return time.process_time() - start


def best_of_rounds(actions):
    return [min(times) for times in zip(*([seconds(action) for action in actions] for _ in range(ROUNDS)))]


def part_of(stack, shape):
    """The middle of a stack, of a given shape."""
    return stack[tuple(slice((size - part) // 2, (size - part) // 2 + part) for size, part in zip(stack.shape, shape))]


def copier(copy, source, destination):
    """A call that copies between two views of the same shape."""
    numbers = [number for axis in zip(source.shape, source.strides, destination.strides) for number in axis]
    axes = (ctypes.c_longlong * len(numbers))(*numbers)
    arguments = (IDS[str(source.dtype)], IDS[str(destination.dtype)], ctypes.c_void_p(source.ctypes.data),
                 ctypes.c_void_p(destination.ctypes.data), axes, source.ndim)
    return lambda: copy(*arguments)


def measure(copy, stack, shape, permutation, destination_type):
    part = part_of(stack, shape)
    # Axes of numpy are counted from the slowest one.
    source = part.transpose([2 - axis for axis in reversed(permutation)])
    destination = numpy.zeros(source.shape, destination_type)
    ours = copier(copy, source, destination)
    assert ours() == 0
    assert numpy.array_equal(destination, source.astype(destination_type))
    size = (source.size * source.itemsize + destination.nbytes) // 2
    origin, target = numpy.ones(size, numpy.uint8), numpy.zeros(size, numpy.uint8)
    actions = [ours, lambda: numpy.copyto(destination, source, casting="unsafe"),
               lambda: ctypes.memmove(target.ctypes.data, origin.ctypes.data, size)]
    return best_of_rounds(actions)


def main():
    copy = load(sys.argv[1])
    stack = (numpy.arange(numpy.prod(SHAPE), dtype=numpy.uint32) * 40503 % 65521).astype(numpy.uint16).reshape(SHAPE)
    print(f"{'box':<14}{'to':<9}{'ours ms':>9}{'numpy ms':>10}{'numpy/ours':>12}{'memcpy/ours':>13}")
    for name, shape, permutation in BOXES:
        for destination_type in IDS:
            row = f"{name} {destination_type}"
            if len(sys.argv) > 2 and not any(word in row for word in sys.argv[2:]):
                continue
            ours, peer, moved = measure(copy, stack, shape, permutation, destination_type)
            print(f"{name:<14}{destination_type:<9}{ours * 1e3:>9.1f}{peer * 1e3:>10.1f}{peer / ours:>12.2f}"
                  f"{moved / ours:>13.2f}", flush=True)


if __name__ == "__main__":
    main()
