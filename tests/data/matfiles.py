"""Writes scipy4.mat and scipy5.mat: python3 matfiles.py"""
import numpy as np
from scipy.io import savemat
from scipy.sparse import csc_matrix

plain = {
    "m": np.array([[10.0, 1, 2, 3], [20, 4, 5, 6], [30, 7, 8, 9]]),
    "times": np.array([[1.0, 2, 4]]),
    "values": np.array([[5.0], [-3], [300]]),
    "odd": np.array([[0.0], [np.nan], [np.inf], [-np.inf], [1.25]]),
    "cx": np.array([[1 + 2j], [3 - 4j]]),
}
elements = np.zeros((2, 2), dtype=[("v", "O")])
for row in range(2):
    for column in range(2):
        elements[row, column]["v"] = 10.0 * (row + 1) + column + 1
other = {
    "s": {"f": plain["m"], "t": {"v": 7.0}},
    "sa": elements,
    "n3": np.arange(1.0, 9).reshape((2, 2, 2), order="F"),
    "e": np.zeros((0, 3)),
    "i8": np.array([[1, 2]], dtype=np.int8),
    "u64": np.array([[3]], dtype=np.uint64),
    "sg": np.array([[1.5]], dtype=np.float32),
    "txt": "text",
    "lg": np.array([[True, False]]),
    "sp": csc_matrix([[0.0, 1], [2, 0]]),
    "ce": np.array([[1.0, "two"]], dtype=object),
}
savemat("scipy4.mat", plain, format="4")
savemat("scipy5.mat", {**plain, **other}, format="5", do_compression=True)
