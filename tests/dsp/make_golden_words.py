#!/usr/bin/env python3
"""Writes golden_words.inc: filter words worked out from the design formulas with 60 digits (mpmath).

Nothing here is shared with the program. Where the formulas have no finite value (Q = 0, half the sampling
rate, infinite gain) plain doubles decide, as they do in the program.

Usage: python3 make_golden_words.py > golden_words.inc
"""
import math
import struct
import mpmath as mp

mp.mp.dps = 60
KEPT = -7  # what a word holds before the call


def single(x):
    try:
        return struct.unpack("<f", struct.pack("<f", x))[0]
    except OverflowError:
        return math.copysign(math.inf, x)


class Exact:
    """60-digit arithmetic; raises where a value is not finite."""

    num = staticmethod(mp.mpf)
    pi = mp.pi
    sqrt, exp, cos = staticmethod(mp.sqrt), staticmethod(mp.exp), staticmethod(mp.cos)

    @staticmethod
    def div(a, b):
        return a / b

    @staticmethod
    def tan(x):
        if abs(mp.cos(x)) < mp.mpf(10) ** -30:
            raise ZeroDivisionError
        return mp.tan(x)


class Doubles:
    num = float
    pi = math.pi
    tan = staticmethod(math.tan)

    @staticmethod
    def sqrt(x):
        return math.nan if x != x or x < 0 else math.sqrt(x)

    @staticmethod
    def exp(x):
        return math.nan if x != x else (math.inf if x > 709 else math.exp(x))

    @staticmethod
    def cos(x):
        return math.nan if x != x or math.isinf(x) else math.cos(x)

    @staticmethod
    def div(a, b):
        if b != 0:
            return a / b
        return math.nan if a == 0 or a != a else math.copysign(math.inf, a) * math.copysign(1.0, b)


def linear_gain(gain):
    if gain != gain:
        return math.nan
    if math.isinf(gain):
        return math.inf
    v = mp.power(10, abs(mp.mpf(gain)) / 20)
    if v > 3.5e38:
        return math.inf
    return single(float(v))


def bilinear_band(m, kind, f, gain, q, rate):
    v = m.num(linear_gain(gain))
    k = m.tan(m.pi * m.num(f) / m.num(rate))
    kq = m.div(k, m.num(q))
    k2 = k * k
    w = m.sqrt(v)
    plain = (1 + kq + k2, 2 * (k2 - 1), 1 - kq + k2)
    raised = {
        2: (1 + v * kq + k2, 2 * (k2 - 1), 1 - v * kq + k2),
        1: (1 + w * kq + v * k2, 2 * (v * k2 - 1), 1 - w * kq + v * k2),
        0: (v + w * kq + k2, 2 * (k2 - v), v - w * kq + k2),
    }[kind]
    top, bottom = (raised, plain) if gain >= 0 else (plain, raised)
    a1, a2 = m.div(bottom[1], bottom[0]), m.div(bottom[2], bottom[0])
    if kind == 0 and gain < 0:  # the denominator is evaluated with 1/V, which tells at an infinite V
        u = m.div(m.num(1), v)
        d = 1 + m.sqrt(u) * kq + k2 * u
        a1, a2 = m.div(2 * (k2 * u - 1), d), m.div(1 - m.sqrt(u) * kq + k2 * u, d)
    return [m.div(top[0], bottom[0]), m.div(top[1], bottom[0]), m.div(top[2], bottom[0]), a1, a2]


def bilinear_crossover(m, low, f, rate):
    k = m.tan(m.pi * m.num(f) / m.num(rate))
    k2 = k * k
    root2 = m.sqrt(m.num(2))
    d = 1 + root2 * k + k2
    top = (k2, 2 * k2, k2) if low else (m.num(1), m.num(-2), m.num(1))
    return [m.div(t, d) for t in top] + [m.div(2 * (k2 - 1), d), m.div(1 - root2 * k + k2, d)]


def mapped(m, p, q):
    t = m.div(m.num(1), m.num(44100))
    sigma = -p / 2
    d = sigma * sigma - q
    if d < 0:
        r = m.exp(sigma * t)
        return -2 * r * m.cos(m.sqrt(-d) * t), r
    e = m.sqrt(d)
    return -(m.exp((sigma + e) * t) + m.exp((sigma - e) * t)), m.exp(2 * sigma * t)


def matched_band(m, kind, f, gain, q):
    v = m.num(linear_gain(gain))
    w = 2 * m.pi * m.num(f)
    q = m.num(q)
    plain = (m.div(w, q), w * w)
    raised = {
        2: (v * m.div(w, q), w * w),
        1: (m.sqrt(v) * m.div(w, q), v * w * w),
        0: (m.div(w, q * m.sqrt(v)), m.div(w * w, v)),
    }[kind]
    top, bottom = (raised, plain) if gain >= 0 else (plain, raised)
    return [m.num(1), *mapped(m, *top), *mapped(m, *bottom)]


def matched_crossover(m, low, f):
    t = m.div(m.num(1), m.num(44100))
    w = 2 * m.pi * m.num(f)
    sigma = -w / m.num(single(math.sqrt(2)))
    d = sigma * sigma - w * w
    r = m.exp(sigma * t)
    top = (2 * m.exp(-t), m.exp(-2 * t)) if low else (m.num(-2), m.num(1))
    return [m.num(1), *top, -2 * r * m.cos(m.sqrt(-d) * t), r]


SCALE = (8, 8, 8, 2, 2)


def design(m, generator, crossover, kind, f, gain, q):
    if f > 32767:
        f -= 65536
    rate = 49500 if generator == 0 and not crossover else 44100
    sets = []
    if generator != 1:
        sets.append(bilinear_crossover(m, kind, f, rate) if crossover else bilinear_band(m, kind, f, gain, q, rate))
    if generator != 0:
        sets.append(matched_crossover(m, kind, f) if crossover else matched_band(m, kind, f, gain, q))
    if len(sets) == 1:
        return [c / s for c, s in zip(sets[0], SCALE)]
    return [(a / s + b / s) / 2 for a, b, s in zip(sets[0], sets[1], SCALE)]


def words(scaled):
    out = [KEPT] * 5
    for i, x in enumerate(scaled):
        out[i] = 0
        if x != x:
            continue
        if x < -1 or x >= 1:
            return False, out
        magnitude = int(mp.floor(abs(mp.mpf(x)) * 2**31))
        out[i] = -magnitude if x < 0 else magnitude
    return True, out


def response(scaled, angle):
    z = mp.expj(-angle)
    b = [8 * x for x in scaled[:3]]
    a = [2 * x for x in scaled[3:]]
    return abs(b[0] + b[1] * z + b[2] * z * z) / abs(1 + a[0] * z + a[1] * z * z)


def text(x):
    if x != x:
        return "notANumber"
    if math.isinf(x):
        return "infinite" if x > 0 else "-infinite"
    return ("%.9g" % x + (".0" if "%.9g" % x == "%d" % x else "")) + "F"


def row(generator, crossover, kind, f, gain, q, with_gain):
    exact = True
    try:
        if not all(math.isfinite(x) for x in (gain, q)):
            raise ZeroDivisionError
        if math.isinf(linear_gain(gain)):
            raise ZeroDivisionError
        scaled = design(Exact, generator, crossover, kind, f, gain, q)
    except ZeroDivisionError:
        exact = False
        scaled = design(Doubles, generator, crossover, kind, f, gain, q)
    ok, out = words(scaled)
    gains = ""
    if with_gain:
        rate = 49500 if generator == 0 and not crossover else 44100
        corner = 2 * mp.pi * f / rate
        gains = ", " + ", ".join(
            ("%.12g" % float(response(scaled, angle)) if ok else "0") for angle in (mp.mpf(0), corner, mp.pi))
    name = ("Generator::bzt", "Generator::mzt", "Generator::mixed")[generator]
    shape = "%d" % kind
    parameters = "" if crossover else ", %s, %s" % (text(gain), text(q))
    print("{%s, %s, %d%s, %s, {%s}%s}," % (name, shape, f, parameters, "true" if ok else "false",
                                          ", ".join("%d" % w for w in out), gains))
    return exact


GAINS = (12.0, 6.5, 0.0, -6.5, -18.0)
POINTS = ((60, 1.0), (1000, 0.7), (5000, 0.4), (12000, 5.0), (20000, 20.0))
nan, inf = math.nan, math.inf
# frequency, gain, Q: edges of what a record can hold
EDGES = (
    (0, 6.0, 1.0), (0, -6.0, 1.0), (20, 6.0, 0.1), (20, -18.0, 20.0), (1000, 18.0, 1.0), (10000, 18.0, 1.0),
    (10000, 24.0, 1.0), (100, 24.0, 1.0), (1000, 40.0, 1.0), (1000, -40.0, 1.0), (1000, 6.0, 1e-6),
    (1000, -6.0, 1e-6), (1000, 6.0, 1e6), (1000, -6.0, 1e6), (1000, 6.0, 0.45), (1000, 6.0, 0.55), (1000, 6.0, -1.0),
    (30000, 6.0, 1.0), (32767, 6.0, 1.0), (65535, 6.0, 1.0), (65535, -6.0, 1.0), (1000, 6.0, 0.0),
    (1000, -6.0, 0.0), (0, 6.0, 0.0), (1000, 6.0, nan), (1000, 6.0, inf), (1000, -6.0, inf), (1000, nan, 1.0),
    (1000, inf, 1.0), (1000, -inf, 1.0), (1000, 800.0, 1.0),
)
print("// Written by make_golden_words.py; see there.")
print("// clang-format off")
print("inline constexpr GoldenBand goldenBands[] = {")
for g in range(3):
    for kind in range(3):
        for gain in GAINS:
            for f, q in POINTS:
                row(g, False, kind, f, single(gain), single(q), True)
print("};")
print("inline constexpr GoldenEdgeBand goldenEdgeBands[] = {")
for g in range(3):
    for kind in range(3):
        for f, gain, q in EDGES:
            row(g, False, kind, f, single(gain) if gain == gain else gain, single(q) if q == q else q, False)
print("};")
print("inline constexpr GoldenCrossover goldenCrossovers[] = {")
for g in range(3):
    for low in (0, 1):
        for f in (20, 60, 1000, 5000, 12000, 20000):
            row(g, True, low, f, 0.0, 1.0, True)
print("};")
print("inline constexpr GoldenEdgeCrossover goldenEdgeCrossovers[] = {")
for g in range(3):
    for low in (0, 1):
        for f in (0, 1, 24750, 32767, 32768, 65535):
            row(g, True, low, f, 0.0, 1.0, False)
print("};")
