#!/usr/bin/env python3
"""Writes golden_volume.inc (mpmath, 40 digits) and golden_md5.inc (hashlib) into this folder."""
import hashlib
import pathlib
import mpmath as mp

mp.mp.dps = 40
here = pathlib.Path(__file__).parent
lines = ["// Written by make_golden_tables.py: round(10^(level / 20) 2^24) for 42.0, 41.5, ... -108.5 dB.",
         "// clang-format off"]
words = [int(mp.nint(mp.power(10, (mp.mpf(42) - mp.mpf(j) / 2) / 20) * 2**24)) for j in range(302)]
for i in range(0, len(words), 10):
    lines.append(" ".join("%dU," % w for w in words[i:i + 10]))
(here / "golden_volume.inc").write_text("\n".join(lines) + "\n")

lines = ["// Written by make_golden_tables.py: MD5 of n bytes with the values (7 i + 3) mod 256, for n = 0 to 200.",
         "// clang-format off"]
for n in range(201):
    lines.append('"%s",' % hashlib.md5(bytes((7 * i + 3) % 256 for i in range(n))).hexdigest())
(here / "golden_md5.inc").write_text("\n".join(lines) + "\n")
