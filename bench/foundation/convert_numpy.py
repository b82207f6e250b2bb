"""Time vrel_dt_convert beside numpy's copyto on the same touched arrays, in one process.

Usage: convert_numpy.py path/to/libVrelIo.so [part of a row's name ...]
"""
import ctypes
import sys
import time

import numpy

IDS = {"uint8": 1, "int8": 2, "uint16": 4, "int16": 8, "uint32": 16, "int32": 32, "float32": 64, "float64": 128,
       "uint64": 4096, "int64": 8192, "complex64": 0x40000040, "complex128": 0x40000080}
PAIRS = [("uint8", "uint16"), ("uint16", "float32"), ("float32", "uint16"), ("int32", "float64"),
         ("float64", "complex64"), ("uint8", "uint8"), ("uint16", "uint16"), ("float32", "float32"),
         ("float64", "float64")]
SIZES = [("in cache", 256 << 10), ("beyond", 256 << 20)]
ROUNDS = 15


def load(path):
    convert = ctypes.CDLL(path).__getattr__("_Z15vrel_dt_convertiiPKvPviS0_S1_")
    convert.restype = ctypes.c_int
    convert.argtypes = [ctypes.c_int, ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_int, ctypes.c_void_p,
                        ctypes.c_void_p]
    return convert


def seconds(action, repeats):
    start = time.perf_counter()
    for _ in range(repeats):
        action()
    return (time.perf_counter() - start) / repeats


def best_of_rounds(actions, repeats):
    best = [float("inf")] * len(actions)
    for _ in range(ROUNDS):
        for i, action in enumerate(actions):
            best[i] = min(best[i], seconds(action, repeats))
    return best


def arrays(source_type, destination_type, destination_bytes):
    count = destination_bytes // numpy.dtype(destination_type).itemsize
    source = (numpy.arange(count, dtype=numpy.uint32) % 251).astype(source_type)
    return source, numpy.zeros(count, destination_type)


def measure(convert, source_type, destination_type, destination_bytes):
    source, destination = arrays(source_type, destination_type, destination_bytes)
    arguments = (IDS[source_type], IDS[destination_type], source.ctypes.data, destination.ctypes.data, source.size, None,
                 None)
    assert convert(*arguments) == 0
    assert numpy.array_equal(destination, source.astype(destination_type))
    moved = ctypes.memmove
    bytes_moved = (source.nbytes + destination.nbytes) // 2
    target = numpy.zeros(bytes_moved, numpy.uint8)
    origin = numpy.ones(bytes_moved, numpy.uint8)
    actions = [lambda: convert(*arguments), lambda: numpy.copyto(destination, source, casting="unsafe"),
               lambda: moved(target.ctypes.data, origin.ctypes.data, bytes_moved)]
    return best_of_rounds(actions, 400 if destination_bytes < 1 << 20 else 1), source.nbytes + destination.nbytes


def main():
    convert = load(sys.argv[1])
    print(f"{'row':<22}{'size':<10}{'ours GB/s':>10}{'numpy GB/s':>11}{'numpy/ours':>11}{'memcpy/ours':>12}")
    for label, size in SIZES:
        for source_type, destination_type in PAIRS:
            row = f"{source_type}->{destination_type}"
            if len(sys.argv) > 2 and not any(word in row for word in sys.argv[2:]):
                continue
            (ours, peer, copy), traffic = measure(convert, source_type, destination_type, size)
            print(f"{row:<22}{label:<10}{traffic / ours / 1e9:>10.1f}{traffic / peer / 1e9:>11.1f}{peer / ours:>11.2f}"
                  f"{copy / ours:>12.2f}", flush=True)


if __name__ == "__main__":
    main()
