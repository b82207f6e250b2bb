"""Time VStackImp::copy beside numpy's assignment to a touched array, in one process.

Usage: stack_copy_numpy.py path/to/libVrelIo.so [part of a row's name ...]

The stack has 1024 x 1024 x 64 elements of "uint16", the destinations have been written before. Times are those of the
processor, the best of several rounds by turns. The last column compares with memcpy of half the bytes read and written.
"""
import ctypes
import pathlib
import sys
import time

import numpy

SIZES = (1024, 1024, 64)
TYPES = {"uint16": 4, "float32": 64}
# Name, bounds of the region, axes of the stack by axis of the result; axis 0 is the fastest one.
WHOLE = ((0, 0, 0), SIZES)
REGIONS = [("whole", *WHOLE, (0, 1, 2)),
           ("crop", (256, 256, 16), (768, 768, 48), (0, 1, 2)),
           ("crop and pad", (768, 768, 48), (1280, 1280, 80), (0, 1, 2)),
           ("(1,0,2)", *WHOLE, (1, 0, 2)),
           ("(2,1,0)", *WHOLE, (2, 1, 0)),
           ("crop (1,0,2)", (262, 262, 16), (762, 762, 48), (1, 0, 2)),
           ("crop (2,1,0)", (262, 262, 7), (762, 762, 57), (2, 1, 0))]
ROUNDS = 9


def load(path):
    build = pathlib.Path(path).resolve().parent.parent
    entry = ctypes.CDLL(str(build / "bench" / "stack" / "libvrelio_stack_entry.so"))
    for function in (entry.stack_make, entry.stack_data):
        function.restype = ctypes.c_void_p
    for function in (entry.stack_free, entry.stack_data):
        function.argtypes = [ctypes.c_void_p]
    return entry


class Stack:
    """A stack with a view of its elements, the slowest axis first."""

    def __init__(self, entry, element_type, sizes):
        self.entry = entry
        self.pointer = entry.stack_make(TYPES[element_type], (ctypes.c_uint * len(sizes))(*sizes), len(sizes))
        count = int(numpy.prod(sizes)) * numpy.dtype(element_type).itemsize
        buffer = (ctypes.c_ubyte * count).from_address(entry.stack_data(self.pointer))
        self.elements = numpy.frombuffer(buffer, element_type).reshape(sizes[::-1])

    def __del__(self):
        self.entry.stack_free(self.pointer)


def seconds(action):
    start = time.process_time()
    action()
    return time.process_time() - start


def best_of_rounds(actions):
    return [min(times) for times in zip(*([seconds(action) for action in actions] for _ in range(ROUNDS)))]


def numpy_copier(stack, start, end, permutation, destination):
    """What a user of numpy would write: an assignment, with zeros around it where the region reaches out."""
    inside = tuple(slice(low, min(high, size)) for low, high, size in zip(start, end, SIZES))[::-1]
    part = stack[inside].transpose([2 - axis for axis in reversed(permutation)])
    if part.shape == destination.shape:
        return lambda: numpy.copyto(destination, part, casting="unsafe")
    target = destination[tuple(slice(0, size) for size in part.shape)]

    def pad():
        destination.fill(0)
        numpy.copyto(target, part, casting="unsafe")
    return pad


def measure(entry, source, start, end, permutation, element_type):
    sizes = [end[axis] - start[axis] for axis in permutation]
    result = Stack(entry, element_type, sizes)
    arguments = (ctypes.c_void_p(result.pointer), ctypes.c_void_p(source.pointer), (ctypes.c_int * 3)(*start),
                 (ctypes.c_int * 3)(*end), (ctypes.c_uint * 3)(*permutation), 3, TYPES[element_type])
    destination = numpy.ones(sizes[::-1], element_type)
    peer = numpy_copier(source.elements, start, end, permutation, destination)
    entry.stack_copy(*arguments)
    peer()
    assert numpy.array_equal(result.elements, destination)
    size = (destination.size * 2 + destination.nbytes) // 2
    origin, target = numpy.ones(size, numpy.uint8), numpy.zeros(size, numpy.uint8)
    return best_of_rounds([lambda: entry.stack_copy(*arguments), peer,
                           lambda: ctypes.memmove(target.ctypes.data, origin.ctypes.data, size)])


def main():
    entry = load(sys.argv[1])
    source = Stack(entry, "uint16", SIZES)
    numbers = numpy.arange(source.elements.size, dtype=numpy.uint32) * 40503 % 65521
    source.elements[...] = numbers.reshape(source.elements.shape)
    print(f"{'region':<14}{'to':<9}{'ours ms':>9}{'numpy ms':>10}{'numpy/ours':>12}{'memcpy/ours':>13}")
    for name, start, end, permutation in REGIONS:
        for element_type in TYPES:
            row = f"{name} {element_type}"
            if len(sys.argv) > 2 and not any(word in row for word in sys.argv[2:]):
                continue
            ours, peer, moved = measure(entry, source, start, end, permutation, element_type)
            print(f"{name:<14}{element_type:<9}{ours * 1e3:>9.1f}{peer * 1e3:>10.1f}{peer / ours:>12.2f}"
                  f"{moved / ours:>13.2f}", flush=True)


if __name__ == "__main__":
    main()
