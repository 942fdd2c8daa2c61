#!/usr/bin/env python3
"""Works the panel of the control by mouse and keyboard in a container that is not ours: the ATL library's.

Usage: panel_test.py UNDER_WINE CONTAINER.exe LumoDevice.ocx VISA.dll EXAMPLE.exe FOLDER

The instrument is the simulated one behind VISA.dll. Windows are drawn on a screen of this test's own (Xvfb); pictures
of it, and the Wine prefix, are kept in FOLDER.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

UNDER_WINE, CONTAINER, OCX, VISA, EXAMPLE, FOLDER = sys.argv[1:]
STRIP = 820
SETTLED = 2  # seconds, after which what an act sends has been answered
MAKE, RELEASE, TELL, LIST, MAKE_BY_NAME, QUIT = 20, 60, 100, 140, 180, 300


def windows_path(path):
    return "Z:" + str(pathlib.Path(path).resolve()).replace("/", "\\")


class Screen:
    def __init__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1000x700x24"],
                                       pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as chosen:
            self.display = ":" + chosen.readline().strip()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()


class Panel:
    def __init__(self, environment, container=CONTAINER, ready="ready"):
        self.environment = environment
        self.program = subprocess.Popen([UNDER_WINE, container], stdout=subprocess.PIPE, text=True, env=environment)
        self.until(ready)
        time.sleep(1)  # it is drawn

    def until(self, word):
        """What the container says up to the line that begins with the word."""
        lines = []
        for line in self.program.stdout:
            lines.append(line.rstrip("\r\n"))
            if lines[-1].startswith(word):
                return lines
        raise AssertionError(f"the container ended before it said {word}: {lines}")

    def hand(self, *acts):
        subprocess.run(["xdotool", *map(str, acts)], check=True, env=self.environment)

    def click_at(self, x, y):
        self.hand("mousemove", x, y, "sleep", 0.1, "click", 1)

    def strip(self, act, word):
        self.click_at(STRIP, act)
        return self.until(word)

    def make(self, how=MAKE):
        assert self.strip(how, "made")[-1] == "made 1", "the control is not made"
        time.sleep(1)

    def windows(self):
        found = []
        for line in self.strip(LIST, "listed"):
            parts = line.split("\t")
            if parts[0] == "window":
                found.append({"kind": parts[1].lower(), "enabled": parts[2] == "1", "text": parts[7].replace("&", ""),
                              "place": tuple(map(int, parts[3:7]))})
        return found

    def find(self, text, kind=None, wait=5):
        end = time.monotonic() + wait
        while True:
            all_there = self.windows()
            found = [each for each in all_there if re.fullmatch(text, each["text"]) and each["enabled"]
                     and (kind is None or each["kind"] == kind)]
            if found:
                return found[0]
            assert time.monotonic() < end, f"no {text!r} among {[each['text'] for each in all_there]}"
            time.sleep(0.2)

    @staticmethod
    def middle(window):
        left, top, right, bottom = window["place"]
        return (left + right) // 2, (top + bottom) // 2

    def right_of(self, label, kind):
        """The first window of the kind to the right of a text."""
        text = self.find(label)
        _, y = self.middle(text)
        beside = [each for each in self.windows() if each["kind"] == kind and each["place"][0] >= text["place"][2] - 2
                  and each["place"][1] <= y < each["place"][3]]
        return min(beside, key=lambda each: each["place"][0])

    def click(self, text, kind=None):
        self.click_at(*self.middle(self.find(text, kind)))

    def tell(self):
        told = dict(line.split(" ", 1) for line in self.strip(TELL, "told") if " " in line)
        print(told)
        return told

    def picture_shown(self):
        """The window that is as the instrument's screen is, 4 by 3."""
        for each in self.windows():
            left, top, right, bottom = each["place"]
            if (right - left) * 3 == (bottom - top) * 4:
                return each
        raise AssertionError("no picture is shown")

    def picture(self, name):
        subprocess.run(["import", "-window", "root", f"{FOLDER}/{name}.png"], check=True, env=self.environment)


def work(panel, when):
    """All that a person does at the panel, from the connect to the picture of the instrument's screen."""
    temp = pathlib.Path(FOLDER, "wine/prefix/drive_c/temp")
    shutil.rmtree(temp, ignore_errors=True)
    panel.make()
    panel.click("VISA COM3.0 Type Library")
    panel.click("Auto Connect")
    panel.find("Send Command", wait=30)
    time.sleep(3 * SETTLED)
    panel.picture(f"{when}-connected")
    panel.click("Return")

    # A channel, by keys: the list opens, its third entry is taken.
    panel.click_at(*panel.middle(panel.right_of("Channel:", "combobox")))
    panel.hand("key", "--delay", 200, "Home", "Down", "Down", "Return")
    time.sleep(3 * SETTLED)
    panel.picture(f"{when}-channel")
    channel = panel.tell()[":CHAN?"]
    assert channel == "3", f"channel {channel}"

    panel.click("CC-High")
    time.sleep(SETTLED)
    panel.click_at(*panel.middle(panel.right_of(r"A Value\(A\)", "edit")))
    panel.hand("key", "ctrl+a", "type", "--delay", 100, "1.5")
    panel.click_at(*panel.middle(panel.right_of(r"A Value\(A\)", "button")))
    time.sleep(SETTLED)
    panel.click(r"CHAN LOAD OFF")
    panel.find("CHAN LOAD ON")
    time.sleep(SETTLED)
    panel.picture(f"{when}-load-on")
    told = panel.tell()
    assert float(told[":CURR:STAT:L1?"]) == 1.5, told
    assert told[":LOAD?"] in ("1", "ON"), told

    panel.click("Set Group")
    lists = sorted((each for each in panel.windows() if each["kind"] == "listbox"), key=lambda each: each["place"])
    begin = panel.middle(panel.find(r"CH3.*", "item"))
    end = panel.middle(lists[1])
    panel.hand("mousemove", *begin, "sleep", 0.3, "mousedown", 1)
    for step in range(1, 11):
        panel.hand("mousemove", *(begin[i] + (end[i] - begin[i]) * step // 10 for i in (0, 1)), "sleep", 0.05)
    panel.picture(f"{when}-dragging")
    panel.hand("sleep", 0.3, "mouseup", 1)
    time.sleep(0.5)
    item = panel.find(r"CH3.*", "item")
    assert lists[1]["place"][0] <= item["place"][0] < lists[1]["place"][2], f"CH3 is not in Group1: {item}"
    panel.picture(f"{when}-grouped")
    panel.click("EXIT")

    panel.click("Connect", "button")
    panel.click("Get BMP Screen")
    end = time.monotonic() + 60
    while not any(file.stat().st_size > 1000 for file in temp.glob("*.bmp")):
        assert time.monotonic() < end, f"no picture in {list(temp.glob('*'))}"
        time.sleep(0.5)
    time.sleep(1)
    panel.picture(f"{when}-captured")
    # The picture stands in the image and in the box under it; each goes with a click.
    for _ in range(2):
        panel.click_at(*panel.middle(panel.picture_shown()))
        time.sleep(0.5)
    panel.find("Identity")


def main():
    pathlib.Path(FOLDER).mkdir(parents=True, exist_ok=True)
    with Screen() as screen:
        environment = dict(os.environ, DISPLAY=screen.display, LUMODEVICE_WINE=f"{FOLDER}/wine",
                           LUMODEVICE_VISA_LIBRARY=windows_path(VISA))
        subprocess.run([UNDER_WINE, "regsvr32", "/s", windows_path(OCX)], check=True, env=environment)
        panel = Panel(environment)
        work(panel, "first")
        # A question is under way when the control is let go; a whole search is.
        panel.click("Identity")
        panel.strip(RELEASE, "released")
        panel.make(MAKE_BY_NAME)
        panel.click("Auto Connect")
        panel.strip(RELEASE, "released")
        time.sleep(SETTLED)
        work(panel, "again")
        panel.strip(RELEASE, "released")
        panel.strip(QUIT, "over")
        assert panel.program.wait(30) == 0, f"the container ended with {panel.program.returncode}"

        # The example shows it too.
        example = Panel(environment, EXAMPLE, "shown: 00000000")
        example.picture("example")
        example.program.terminate()
        example.program.wait()
    print("all of it worked")


main()
