#!/usr/bin/python3
"""Writes expected_units.txt: what GNU units makes of the expressions below.

A line holds an expression, its magnitude in base units and the exponents of the nine base units, separated by tabs.
Needs the program `units`; the tests read the file alone.
"""

import pathlib
import re
import subprocess

DIMENSIONS = ("m", "kg", "s", "A", "K", "mol", "cd", "radian", "sr")
# What the other side calls otherwise; constants that were measured anew since are left out of the expressions.
SPELLINGS = {"rad": "radian", "mrad": "milliradian", "h": "hour", "G": "gauss", "mG": "milligauss", "Tm": "terameter"}
UNITS = ("m", "kg", "s", "A", "K", "mol", "cd", "rad", "sr", "Hz", "N", "Pa", "J", "W", "C", "V", "F", "ohm", "S", "Wb",
         "T", "H", "lm", "lux", "Bq", "Gy", "g", "t", "deg", "angstrom", "fermi", "barn", "h", "bar", "G", "Ci")
PREFIXED = ("ym", "zm", "fm", "pm", "nm", "um", "mm", "cm", "dm", "hm", "km", "Mm", "Gm", "Tm", "Pm", "Em", "Zm", "Ym",
            "mg", "ug", "ng", "kt", "Mt", "ms", "us", "ns", "ps", "fs", "mK", "nK", "mmol", "umol", "nA", "kA", "kHz",
            "MHz", "GHz", "THz", "kN", "mN", "hPa", "kPa", "MPa", "mJ", "kJ", "MJ", "GW", "mW", "nC", "kV", "mV", "pF",
            "nF", "kohm", "Mohm", "mS", "mWb", "mT", "uT", "uH", "mH", "klux", "klm", "MBq", "GBq", "mGy", "kbar", "mbar",
            "kCi", "mCi", "mG", "mrad")
PRODUCTS = (
    "kg*m/s^2", "kg*m^2/s^2", "N*m", "N/m^2", "J/s", "V*A", "V/A", "A/V", "C/V", "W/m^2", "J/kg", "lm/m^2", "cd*sr",
    "m/s", "m/s^2", "km/h", "m^3/kg/s^2", "J/K", "J/mol/K", "J/(mol*K)", "C/mol", "V/m", "F/m", "H/m", "N/A^2", "kg/m^3",
    "g/cm^3", "mol/dm^3", "um^2", "nm^3", "mm^2*um", "um^2/ms", "nm/us", "1/um", "1/cm^3", "m^-1",
    "s^-2", "ms^-1", "kg^-1*m^3", "1/(ms*um^2)", "W/(m^2*sr)", "W/(m^2*sr*nm)", "rad/s", "mrad/us", "deg/ms", "Hz/V",
    "pA/mV", "nS/uF", "J/(kg*K)", "T*m^2", "Wb/s", "ohm*m", "ohm*F", "H/ohm", "S*ohm", "bar*dm^3", "kPa*m^3/K", "m*m*m",
    "m/m", "m*m/m/m", "s/s^3", "(m*s)^2", "(kg*m/s)^2/kg", "A*s/C", "lux*m^2", "barn*Hz",
    "angstrom^3", "fermi^2/barn", "Ci/Bq", "G/T", "bar/Pa", "t/kg", "h/s", "deg/rad")
NUMBERS = (
    "1", "-1", "0.5", ".25", "7.", "1e3", "1E-3", "2.5e+4", "6.02214076e23", "-1.5e-9", "2*3", "2/3", "1/3/7",
    "2*3/4*5", "2^10", "10^-3", "(1/2)", "3*(4/5)", "(2*3)^2", "2.5*nm", "10 nm", "0.532 um", "488 nm", "5.5e14 Hz",
    "37 GBq", "1013.25 hPa", "100 km/h", "2 m*3 m", "5 um/ms", "12 V/(3 A)", "6.5*um^2", "1e-30 m", "1e30 m", "4.2e3 J/K",
    "0.1 mm*0.2 mm*0.3 mm", "25 mm/(180 mm)", "1.33*500 nm", "2*1.4*sr", "90 deg", "3.5 rad/s", "0.02 bar", "8 t/m^3",
    "1 angstrom", "1 fermi", "3 barn", "1 h", "2 G", "40 Ci")


def expressions():
    return [*UNITS, *PREFIXED, *PRODUCTS, *NUMBERS]


def spelled(expression):
    return re.sub(r"[A-Za-z]+", lambda word: SPELLINGS.get(word[0], word[0]), expression)


def answer(expression):
    """The reduced form, such as "2 kg m^2 / s^2"; a definition may stand in front of it."""
    command = ["units", "--terse", "-o", "%.17g", "--", spelled(expression)]
    text = subprocess.run(command, capture_output=True, check=True, text=True).stdout
    return text.strip().splitlines()[-1].split(" = ")[-1]


def exponents_of(words, sign):
    found = dict.fromkeys(DIMENSIONS, 0)
    for word in words:
        name, _, power = word.partition("^")
        found[name] += sign * int(power or 1)
    return found


def reduced(text):
    """Magnitude and exponents of "2 kg m^2 / s^2"."""
    numerator, _, denominator = text.partition("/")
    magnitude, *words = numerator.split()
    above, below = exponents_of(words, 1), exponents_of(denominator.split(), -1)
    return magnitude, [above[name] + below[name] for name in DIMENSIONS]


def main():
    lines = []
    for expression in expressions():
        magnitude, exponents = reduced(answer(expression))
        lines.append("\t".join([expression, magnitude, *map(str, exponents)]))
    path = pathlib.Path(__file__).with_name("expected_units.txt")
    path.write_text("\n".join(lines) + "\n", encoding="ascii")
    print(f"{len(lines)} expressions")


if __name__ == "__main__":
    main()
