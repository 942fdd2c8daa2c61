#!/usr/bin/env python3
"""The cable is pulled in the middle of each thing that an operator does at the window: the window says so, stays
usable, and shows the instrument again when it is back. On an X server with a window manager, with real keys and a
real mouse. Usage: unplug.py WITNESSED_PANEL ZANSIM FOLDER"""

import sys
import time

from hands import Load, Screen, Window, folder_of, need, wait_for

# Transfers take long enough for a hand at the cable: one is cut in the midst of its bytes, one before the first.
SLOW = ("--fault", "pieces=1000 gap=400 on=:SYST:SET?", "--latency", ":DISP:OUTP?=1500", "--latency", ":DISP:COL?=1500")

BOXES = ("QMessageBox", "qt_msgbox_label")


def reading(window):
    try:
        return float(window.text("digitsV"))
    except (TypeError, ValueError):
        return None


def put_boxes_away(window):
    """What the window has to say of a lost link."""
    while any(window.find(name) for name in BOXES):
        window.keys("Return")
        time.sleep(0.2)


def read(_):
    """Nothing but the readings go on."""


def choose(window):
    window.keys("alt+h", "Home", "Down")


def capture(window):
    window.click("QToolButton", "Instrument")
    window.keys("Down", "Return")


def fetch_settings(window):
    window.click("QToolButton", "Instrument")
    window.keys("Down", "Down", "Down", "Down", "Down", "Return")


def send_group(window):
    window.click("cmdParalle")
    item = window.await_widget("List1:CH3")
    window.drag((item, None), (window.find("List2"), 8))
    window.await_widget("List2", "CH3")
    window.click("cmdParaOK")


def set_value(window):
    window.keys("alt+a", "ctrl+a")
    window.type("1.25")
    window.click("cmdSet(0)")


def usable(window):
    """The curves go and come when they are told to."""
    window.keys("ctrl+2")
    wait_for("a window without curves", lambda: not window.find("curves"))
    window.keys("ctrl+2")
    window.await_widget("curves")


def pull_in(window, load, screen, folder, act):
    name = act.__name__
    act(window)
    time.sleep(0.6)
    load.stop()
    wait_for(f"{name}: a window that says what happened",
             lambda: window.find("alarm", "LINK") or any(window.find(box) for box in BOXES), 60)
    screen.picture(folder / f"{name}.png")
    put_boxes_away(window)
    wait_for(f"{name}: the link lost", lambda: window.find("alarm", "LINK"), 60)
    put_boxes_away(window)
    if window.find("cmdParaCancel"):
        window.click("cmdParaCancel")
    usable(window)
    load.start()
    wait_for(f"{name}: the instrument back", lambda: not window.find("alarm", "LINK") and reading(window), 90)
    put_boxes_away(window)
    assert window.process.poll() is None
    print(name, "done", flush=True)


def main():
    need("Xvfb", "xdotool", "openbox", "import")
    program, simulator, folder = sys.argv[1], sys.argv[2], folder_of(sys.argv[3])
    screen = Screen()
    load = Load(simulator, folder, *SLOW)
    window = None
    try:
        window = Window(program, screen, folder, "--port", "COM2=" + load.pty, "--link", "serial")
        window.keys("ctrl+w")
        window.click("Command2")
        window.await_widget("QMainWindow", "SIM00001", 60)
        window.click("cmdConnectOK")
        wait_for("readings", lambda: reading(window), 60)
        for act in (read, set_value, choose, capture, fetch_settings, send_group):
            pull_in(window, load, screen, folder, act)
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
