#!/usr/bin/env python3
"""A working day at the window: real keys and a real mouse on an X server with a window manager, the simulated load
behind a serial port. After each act the load is asked, over a link of its own, whether it is as the window shows it.
Usage: operate.py WITNESSED_PANEL ZANSIM FOLDER"""

import sys
import time

from hands import Load, Screen, Window, folder_of, need, wait_for


def number(text):
    try:
        return float(text)
    except (TypeError, ValueError):
        return None


def connect(window):
    """The way an operator does it on a real link: it is only watched at first."""
    window.keys("ctrl+shift+c")
    window.await_widget("cmbChannel", "CH", 60)
    assert window.find("QToolButton", "* Watch only"), "a real link starts as watched"
    window.keys("ctrl+w")
    window.await_widget("QToolButton", "Watch only")


def choose_channel_three(window):
    window.keys("alt+h")
    window.keys("Home", "Down", "Down")
    window.await_widget("cmbChannel", "CH3-2040")
    wait_for("readings of channel 3", lambda: number(window.text("digitsV")))


def set_current(window, load):
    window.keys("alt+a")
    window.keys("ctrl+a")
    window.type("1.5")
    window.click("cmdSet(0)")
    wait_for("1.5 A at the load", lambda: number(load.ask(":CURR:STAT:L1?")) == 1.5)


def switch_on(window, load):
    window.click("chkLoad")
    window.await_widget("loadState", "LOAD ON")
    assert load.ask(":LOAD?") == "1"
    wait_for("the current", lambda: abs((number(window.text("digitsA")) or 0) - 1.5) < 0.05)


def see_the_reading_change(window, load):
    window.keys("alt+a")
    window.keys("ctrl+a")
    window.type("2.5")
    window.click("cmdSet(0)")
    wait_for("2.5 A in the window", lambda: abs((number(window.text("digitsA")) or 0) - 2.5) < 0.05)
    assert number(load.ask(":CURR:STAT:L1?")) == 2.5


def trip(window, load, screen, folder):
    window.click("txtInput(26)")
    window.keys("ctrl+a")
    window.type("70")
    window.click("cmdSet(26)")
    window.await_widget("loadState", "TRIPPED")
    window.await_widget("alarm", "went off by itself")
    assert load.ask(":LOAD?") == "0"
    screen.picture(folder / "tripped.png")


def record(window, folder, file):
    window.keys("ctrl+r")
    window.await_widget("fileNameEdit")
    window.keys("ctrl+a")
    window.type(str(file))
    window.keys("Return")
    wait_for("three rows", lambda: file.exists() and len(whole_rows(file)) >= 3)


def whole_rows(file):
    """The rows of a recording; none of them is cut."""
    text = file.read_text()
    assert text.endswith("\n"), "the last row is whole"
    rows = [line for line in text.splitlines() if not line.startswith("#")]
    assert all(row.count(",") >= 9 for row in rows), rows[-3:]
    return rows[1:]


def connect_by_hand(window):
    """Through the connection panel, which tells the identity, too; the instrument has been operated before."""
    window.click("Command2")
    window.await_widget("QMainWindow", "SIM00001", 60)
    window.click("cmdConnectOK")
    wait_for("readings", lambda: number(window.text("digitsV")))
    wait_for("an instrument that is operated", lambda: (window.find("QToolButton", "Watch only") or [""] * 6)[5]
             == "Watch only")


def group(window, load, screen, folder):
    window.click("cmdParalle")
    for channel in ("CH3", "CH4"):
        item = window.await_widget("List1:" + channel)
        below = window.find("List2:CH3")
        window.drag((item, None), (window.find("List2"), below[4] * 3 // 2 if below else 8))
        window.await_widget("List2", channel)
    screen.picture(folder / "groups.png")
    window.click("cmdParaOK")
    wait_for("the group at the load", lambda: load.ask(":CONF:PAR:UNIT?") == "2", 60)


def capture(window, screen, folder):
    file = folder / "screen.png"
    window.click("QToolButton", "Instrument")
    window.keys("Down", "Return")
    window.await_widget("fileNameEdit", None, 120)
    window.keys("ctrl+a")
    window.type(str(file))
    window.keys("Return")
    wait_for("the picture", lambda: file.exists() and file.stat().st_size > 1000)


def switch_on_again(window, load):
    """While the protection that tripped would still trip, the load refuses."""
    window.await_widget("cmbChannel", "CH3-2040-G1")
    time.sleep(4)  # the channel's settings are read back, with its switches
    window.click("chkUVP")
    wait_for("no protection at the load", lambda: number(load.ask(":CONF:PROT:UVP:LEV?")) == 0)
    window.click("chkLoad")
    window.await_widget("loadState", "LOAD ON")


def leave(window, load):
    """The load is on: the window asks, stays, asks again, and switches off."""
    window.keys("ctrl+q")
    window.click("stay")
    time.sleep(0.3)
    assert window.process.poll() is None and load.ask(":LOAD?") == "1"
    window.keys("ctrl+q")
    window.click("switchOff")
    wait_for("the end of the program", lambda: window.process.poll() is not None)
    assert load.ask(":LOAD?") == "0"


def unplug(window, load, screen, folder):
    load.stop()
    window.await_widget("alarm", "LINK", 30)
    screen.picture(folder / "unplugged.png")


def main():
    need("Xvfb", "xdotool", "openbox", "import")
    program, simulator, folder = sys.argv[1], sys.argv[2], folder_of(sys.argv[3])
    screen = Screen()
    load = Load(simulator, folder)
    window = None
    try:
        words = ["--port", "COM2=" + load.pty, "--link", "serial"]
        window = Window(program, screen, folder, *words)
        connect(window)
        choose_channel_three(window)
        screen.picture(folder / "connected.png")
        set_current(window, load)
        first = folder / "first.csv"
        record(window, folder, first)
        switch_on(window, load)
        see_the_reading_change(window, load)
        screen.picture(folder / "load-on.png")
        trip(window, load, screen, folder)
        window.keys("ctrl+r")
        time.sleep(1.5)
        ended = first.read_text()
        time.sleep(1.5)
        assert first.read_text() == ended, "a stopped recording does not go on"
        assert any(",trip," in row for row in whole_rows(first))

        second = folder / "second.csv"
        record(window, folder, second)
        window.kill()
        assert len(whole_rows(second)) >= 1

        window = Window(program, screen, folder, *words)
        connect_by_hand(window)
        choose_channel_three(window)
        capture(window, screen, folder)
        group(window, load, screen, folder)
        switch_on_again(window, load)
        leave(window, load)

        # Nothing is named: the instrument of the last time comes back, and only when it is asked for.
        window = Window(program, screen, folder)
        time.sleep(1)
        assert not window.find("cmbChannel", "CH"), "nothing connects by itself"
        window.keys("ctrl+shift+c")
        window.await_widget("QMainWindow", "SIM00001", 60)
        wait_for("readings", lambda: number(window.text("digitsV")), 60)
        third = folder / "third.csv"
        record(window, folder, third)
        unplug(window, load, screen, folder)
        assert any(",link lost," in row for row in whole_rows(third))
        load.start()
        wait_for("the link back", lambda: any(",link back," in row for row in whole_rows(third)), 60)
        assert window.process.poll() is None
        print("all acts done; pictures in", folder)
    except Exception:
        screen.picture(folder / "failed.png")
        raise
    finally:
        if window:
            window.close()
        load.stop()
        screen.close()


main()
