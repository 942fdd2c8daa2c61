"""What a test at the screen needs: an X server with a window manager, the simulated load as a process, the window,
and hands on its widgets (xdotool)."""

import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import time

SKIPPED = 77


def need(*programs):
    missing = [each for each in programs if not shutil.which(each)]
    if missing:
        print("skipped: not installed:", ", ".join(missing))
        sys.exit(SKIPPED)


def wait_for(what, condition, seconds=20):
    """What the condition gave when it was first true; ends the test when it never was."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.05)
    raise AssertionError(f"never came: {what}")


class Screen:
    """An X server of its own with a window manager."""

    def __init__(self, size="1400x900", dpi=96):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", size + "x24", "-dpi", str(dpi), "-nolisten", "tcp"],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            self.display = ":" + pipe.readline().strip()
        self.environment = dict(os.environ, DISPLAY=self.display, QT_QPA_PLATFORM="xcb")
        self.manager = subprocess.Popen(["openbox", "--sm-disable"], env=self.environment, stderr=subprocess.DEVNULL)

    def run(self, *words):
        subprocess.run(words, env=self.environment, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def picture(self, file):
        self.run("import", "-window", "root", str(file))

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()


class Load:
    """The simulated load on a pseudo-terminal and on a socket, through which the test looks at it."""

    def __init__(self, program, folder, *options):
        self.pty = str(folder / "tty")
        self.words = [program, "--pty", self.pty, "--tcp", "0", *options]
        self.start()

    def start(self):
        self.process = subprocess.Popen(self.words, stdout=subprocess.PIPE, text=True)
        self.port = None
        while self.port is None:
            line = self.process.stdout.readline()
            if not line:
                raise AssertionError("zansim did not start")
            if "127.0.0.1" in line:
                self.port = int(line.rsplit(":", 1)[1].split()[0].strip("./"))

    def ask(self, query):
        with socket.create_connection(("127.0.0.1", self.port), timeout=5) as link:
            link.sendall(query.encode() + b"\n")
            answer = b""
            while not answer.endswith(b"\n"):
                piece = link.recv(4096)
                if not piece:
                    break
                answer += piece
        return answer.decode().strip()

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait()


class Window:
    """The window, with hands."""

    def __init__(self, program, screen, folder, *options, environment=None):
        self.screen = screen
        self.places = folder / "places"
        self.places.unlink(missing_ok=True)
        self.process = subprocess.Popen(
            [program, "--drive-c", str(folder / "c"), *options],
            env=dict(screen.environment, ZANPANEL_WITNESS=str(self.places), HOME=str(folder),
                     XDG_CONFIG_HOME=str(folder / "config"), XDG_RUNTIME_DIR=str(folder), **(environment or {})))
        wait_for("the window", self.places.exists)
        wait_for("the keyboard", self.has_keyboard)

    def has_keyboard(self):
        """The window manager gives it to a window that is clicked, once it has seen the window."""
        self.click("readOuts")
        active = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], env=self.screen.environment,
                                capture_output=True, text=True)
        return "ZAN Load Control" in active.stdout

    def widgets(self):
        found = []
        for line in self.places.read_text().splitlines():
            name, x, y, width, height, text = line.split("\t", 5)
            found.append((name, int(x), int(y), int(width), int(height), text))
        return found

    def find(self, name, text=None):
        for widget in self.widgets():
            if widget[0] == name and (text is None or text in widget[5]):
                return widget
        return None

    def text(self, name):
        widget = self.find(name)
        return widget[5] if widget else None

    def await_widget(self, name, text=None, seconds=20):
        return wait_for(f"{name} {text or ''}", lambda: self.find(name, text), seconds)

    def point(self, widget, down=None):
        """The middle of a widget, or `down` pixels below its upper edge."""
        _, x, y, width, height, _ = widget
        self.screen.run("xdotool", "mousemove", str(x + min(width // 2, 40)),
                        str(y + (height // 2 if down is None else down)))

    def click(self, name, text=None):
        self.point(self.await_widget(name, text))
        self.screen.run("xdotool", "click", "1")
        time.sleep(0.15)

    def keys(self, *keys):
        self.screen.run("xdotool", "key", "--delay", "40", *keys)
        time.sleep(0.15)

    def type(self, text):
        self.screen.run("xdotool", "type", "--delay", "15", text)
        time.sleep(0.15)

    def drag(self, begin, end):
        """From one (widget, down) to another, in steps as a hand does it."""
        self.point(*begin)
        self.screen.run("xdotool", "mousedown", "1")
        for dx in (6, 12, 24):
            self.screen.run("xdotool", "mousemove_relative", "--", str(dx), "2")
            time.sleep(0.05)
        self.point(*end)
        time.sleep(0.1)
        self.screen.run("xdotool", "mousemove_relative", "--", "2", "2")
        time.sleep(0.1)
        self.screen.run("xdotool", "mouseup", "1")
        time.sleep(0.3)

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    def close(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait()


def folder_of(name):
    """An empty folder for what the test leaves behind: its pictures are build artefacts."""
    folder = pathlib.Path(name).resolve()
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder
