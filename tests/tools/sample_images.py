"""The images of the sample data, as their sources tell of them."""

import os

from vrel_program import DATA

IMAGES = os.path.join(DATA, "images")

# Name, sizes with the fastest axis first, type, labels, lengths (None where nobody has set one).
SAMPLE_IMAGES = [
    ("nucleus_confocal_widefield_zc_uint16.ome.tif", [133, 130, 2, 45], "uint16", ["X", "Y", "C", "Z"],
     [133 * 0.5118778700352326, 130 * 0.5118778700352326, None, 45 * 0.4994126016284111]),
    ("golgi_timeseries_float32.tif", [147, 137, 30], "single", ["X", "Y", "T"],
     [147 / 2.845474, 137 / 2.845474, 30 * 59.86]),
    ("golgi_zstack_uint16.tif", [147, 137, 25], "uint16", ["X", "Y", "Z"],
     [147 / 2.845474, 137 / 2.845474, 25 * 0.3876]),
    ("mitotic_plate_zstack_uint8.tif", [263, 263, 6], "uint8", ["X", "Y", "Z"],
     [263 / 11.737581, 263 / 11.737581, 18.0]),
    ("cell_3channel_uint16.tif", [350, 350, 3], "uint16", ["X", "Y", "C"],
     [350 / 7.547649, 350 / 7.547649, None]),
    ("cancer_cells_timeseries_uint16.tif", [130, 130, 48], "uint16", ["X", "Y", ""], [None] * 3),
    ("cells_spectral_uint8.ome.tif", [256, 256, 28], "uint8", ["X", "Y", "C"],
     [256 * 0.13178822554981573, 256 * 0.13178822554981573, None]),
    ("nucleus_flim_phasor_float32.ome.tif", [256, 256, 5], "single", ["X", "Y", "C"], [None] * 3),
]
