#!/usr/bin/env python3
"""What a query costs from Python, and what the package costs to import.

A query over the package against the same query by PyVISA with its own socket layer (PyVISA-py), and against a plain
loop of send and recv, all on one simulated load's socket, in turns of 300 queries; medians of 15 turns. The import is
the time of a Python that does nothing but that, less that of one that does nothing; medians of 15.

Usage: python_bench.py ZANSIM     (PYTHONPATH has the package; run with the python3 that has PyVISA-py)
"""

import pathlib
import socket
import statistics
import subprocess
import sys
import time

import lumodevice

QUERY = ":FETC:VOLT?"
TURNS, QUERIES = 15, 300


def seconds(act, times):
    begin = time.perf_counter()
    for _ in range(times):
        act()
    return (time.perf_counter() - begin) / times


def plain(port):
    link = socket.create_connection(("127.0.0.1", port))
    link.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

    def query():
        link.sendall(QUERY.encode() + b"\n")
        answer = b""
        while not answer.endswith(b"\n"):
            answer += link.recv(4096)
        return float(answer)

    return query


def by_pyvisa(port):
    import pyvisa

    manager = pyvisa.ResourceManager("@py")
    link = manager.open_resource(f"TCPIP0::127.0.0.1::{port}::SOCKET")
    link.read_termination = link.write_termination = "\n"
    return lambda: float(link.query(QUERY))


def by_package(port):
    load = lumodevice.connect(f"TCPIP0::127.0.0.1::{port}::SOCKET", wait_unit=20)
    return lambda: float(load.query(QUERY))


def row(name, figure, limit, aim, unit):
    print(f"{name:<62}{figure:>9.2f} {limit:>12.2f} {figure / limit:>8.2f} {aim:>8.2f}  {unit}")


def queries(zansim):
    made = {"plain": plain, "package": by_package, "pyvisa": by_pyvisa}
    servers = [
        subprocess.Popen([zansim, "--tcp", "0"], stdout=subprocess.PIPE, text=True) for _ in made
    ]
    try:
        acts = {
            name: make(int(server.stdout.readline().rpartition(":")[2]))
            for (name, make), server in zip(made.items(), servers)
        }
        taken = {name: [] for name in made}
        for _ in range(TURNS):
            for name, act in acts.items():
                taken[name].append(seconds(act, QUERIES))
        return {name: statistics.median(each) * 1e6 for name, each in taken.items()}
    finally:
        for server in servers:
            server.terminate()


def start(statement):
    begin = time.perf_counter()
    subprocess.run([sys.executable, "-S", "-c", statement], check=True)
    return time.perf_counter() - begin


def imports():
    # Without site, which may import much by itself on some machines.
    folders = [str(pathlib.Path(lumodevice.__file__).parents[1]), *sys.path]
    path = f"import sys; sys.path[:] = {folders!r}; "
    taken = {"": [], "import lumodevice": [], "import pyvisa": []}
    for _ in range(TURNS):
        for statement, each in taken.items():
            each.append(start(path + statement))
    empty = statistics.median(taken[""])
    return {name: (statistics.median(each) - empty) * 1000 for name, each in taken.items()}


def main():
    took = queries(sys.argv[1])
    print(f"{'':<62}{'':>9} {'limit':>12} {'ratio':>8} {'aim':>8}")
    row("query from Python, against PyVISA-py, loopback socket", took["package"], took["pyvisa"], 0.5, "us")
    row("the same against send and recv in Python", took["package"], took["plain"], 1.5, "us")
    cost = imports()
    row("import lumodevice, above an empty Python", cost["import lumodevice"], 30, 1, "ms")
    row("  (import pyvisa)", cost["import pyvisa"], 30, 1, "ms")


if __name__ == "__main__":
    main()
