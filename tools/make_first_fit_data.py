#!/usr/bin/env python3
"""Writes examples/first_fit.dat: broods whose eggs and young die at random, at rates that are stated here.

Every egg dies at a rate of EGG_RATE a day. Every juvenile dies at a rate of JUVENILE_RATE x exp(X) a day, with
X the sum of the covariates of its brood times their coefficients. Brood survival is followed by visits
some days apart, from a clutch's first days to the age of fledging.
"""
import math
import pathlib
import random

SEED = 19950601
EGG_RATE = 0.015
JUVENILE_RATE = 0.03
COEFFICIENTS = {"Year1995": 0.5, "Year1996": -0.4, "Lake_Prod": -0.6}
YEARS = (1995, 1996, 1997)
BROODS_A_YEAR = 12
FLEDGING = 36  # days of age


def survivors(count, rate, days, rng):
    return sum(rng.random() < math.exp(-rate * days) for _ in range(count))


def brood(year, number, rng):
    """The records of one brood, as lines of the file."""
    covariates = {
        "Year1995": 1 if year == 1995 else 0,
        "Year1996": 1 if year == 1996 else 0,
        "Lake_Prod": round(rng.uniform(0.2, 2.0), 4),
    }
    juvenile_rate = JUVENILE_RATE * math.exp(sum(COEFFICIENTS[name] * x for name, x in covariates.items()))
    hatch_day = rng.randint(150, 185)
    age = -rng.randint(12, 24)
    count = rng.randint(5, 11)
    lines = []
    while True:
        fields = [year, f"L{year % 100:02}B{number:02}", hatch_day + age, hatch_day, age, count]
        values = [covariates["Year1995"], covariates["Year1996"], f"{covariates['Lake_Prod']:.4f}"]
        lines.append(",".join([f"{field:>8}" for field in fields] + [f"{value:>12}" for value in values]))
        next_age = age + rng.randint(3, 7)
        if count == 0 or next_age >= FLEDGING:
            return lines
        days_as_egg = max(0, min(0, next_age) - age)
        days_as_juvenile = max(0, next_age - max(0, age))
        count = survivors(count, EGG_RATE, days_as_egg, rng)
        count = survivors(count, juvenile_rate, days_as_juvenile, rng)
        age = next_age


def main():
    rng = random.Random(SEED)
    heading = [f"{name:>8}" for name in ("Year", "Code", "DofY", "HatchDay", "BroodAge", "#EorJ")]
    lines = [",".join(heading + [f"{name:>12}" for name in COEFFICIENTS])]
    for year in YEARS:
        for number in range(1, BROODS_A_YEAR + 1):
            lines += brood(year, number, rng)
    path = pathlib.Path(__file__).resolve().parent.parent / "examples" / "first_fit.dat"
    path.write_text("".join(line + "\r\n" for line in lines), encoding="ascii", newline="")


if __name__ == "__main__":
    main()
