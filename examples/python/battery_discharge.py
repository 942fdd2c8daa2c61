#!/usr/bin/env python3
"""Discharges a battery with constant current down to a voltage, and plots it.

    battery_discharge.py TCPIP0::192.168.1.7::5025::SOCKET --amperes 2 --until 10.5
    battery_discharge.py --simulate

Each reading is a line of discharge.csv; with matplotlib there is a picture beside it.
"""

import argparse
import csv

import lumodevice
from lumodevice import Mode


def discharge(load, channel, amperes, volts, period):
    """Yields readings until the battery is down to the voltage. Whatever happens, the load goes
    off."""
    channel.mode = Mode.CC_HIGH
    channel.setpoints["A"] = amperes
    with channel.loaded():
        for reading in load.readings(period, channels=[channel.number]):
            yield reading
            if reading.voltage < volts or not reading.load:
                return


def plot(hours, rows, charge, picture):
    import matplotlib

    matplotlib.use("Agg")
    from matplotlib import pyplot

    pyplot.plot(hours, [row.voltage for row in rows])
    pyplot.xlabel("h")
    pyplot.ylabel("V")
    pyplot.title(f"{charge:.3f} Ah")
    pyplot.savefig(picture)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("address", nargs="?", default="visa")
    parser.add_argument("--simulate", action="store_true", help="a battery of 0.5 Ah, in no time")
    parser.add_argument("--channel", type=int, default=1)
    parser.add_argument("--amperes", type=float, default=2.0)
    parser.add_argument("--until", type=float, default=10.5, metavar="VOLTS")
    parser.add_argument("--period", type=float, default=5.0, metavar="SECONDS")
    parser.add_argument("--csv", default="discharge.csv")
    parser.add_argument("--plot", default="discharge.png")
    chosen = parser.parse_args()

    host = None
    if chosen.simulate:
        host = lumodevice.simulated_host(
            virtual_time=True, sources=[f"{chosen.channel}=12.6,0.05,0.5"]
        )
    rows = []
    with lumodevice.connect(chosen.address, host=host) as load, open(chosen.csv, "w") as file:
        print(load.identity.model, load.identity.serial_number)
        writer = csv.writer(file)
        writer.writerow(lumodevice.Reading._fields)
        channel = load.channel(chosen.channel)
        for reading in discharge(load, channel, chosen.amperes, chosen.until, chosen.period):
            writer.writerow(reading)
            file.flush()
            rows.append(reading)

    hours = [(row.time - rows[0].time) / 3600 for row in rows]
    pairs = zip(rows, rows[1:], hours, hours[1:])
    charge = sum((a.current + b.current) / 2 * (end - begin) for a, b, begin, end in pairs)
    print(f"{charge:.3f} Ah in {hours[-1] * 60:.1f} minutes, {rows[-1].voltage:.2f} V at the end")
    try:
        plot(hours, rows, charge, chosen.plot)
    except ImportError:
        print("no picture: there is no matplotlib")


if __name__ == "__main__":
    main()
