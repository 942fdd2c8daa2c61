#!/usr/bin/env python3
"""Every header compiles by itself, with what it includes and nothing else; each that is installed begins with
an example, and the examples compile.

The build has shown it already of a header that its own source includes before all others; the rest is
compiled here, but for what Windows alone can compile: that is left to the builds for it. An example stands in a
comment, four columns further in: "///     code"; the first one of a header has to compile. It may use what a host
has: see AROUND.
"""

import re
import subprocess
import sys

import sources


def shown_by_the_build(name, flags):
    own = name[:-len(".hpp")] + ".cpp"
    if own not in flags or not (sources.TOP / own).exists():
        return False
    text = (sources.TOP / own).read_text()
    first = next((line for line in text.split("\n") if line.startswith("#")), "")
    return first == f'#include "{name}"'


EXAMPLE = re.compile(r"(?:^ *///     .*\n(?:^ *///\n(?=^ *///     ))?)+", re.MULTILINE)
AROUND = """#include <chrono>
#include <functional>
#include <iostream>
#include <vector>
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/system_host.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/zan_ctrl.hpp"
using namespace lumodevice;
using namespace lumodevice::toolkit;
[[maybe_unused]] static void example(ZANCtrl& load, const Host& host, EventLoop& loop, io::BinaryFile& file,
                                     io::SerialDevices& myDevices, std::ostream& log, CommandButton& button,
                                     PictureBox& picture) {
  // Of a window system.
  static struct { EventLoop::Duration elapsed() const { return {}; } } clock;
  static struct { void handleMessages() {} } window;
  static struct { void set(std::optional<EventLoop::Duration>) noexcept {} } alarm;
  void repaintUntil(EventLoop::Duration);
  {
"""


def installed():
    """The headers that an installation has."""
    listed = (sources.DATABASE.parent / "cmake_install.cmake").read_text()
    return [name[len(str(sources.TOP)) + 1:] for name in re.findall(r'"([^"]+\.hpp)"', listed)]


def main():
    flags = sources.flags()
    common = []
    for mine in flags.values():
        for i, word in enumerate(mine):
            taken = mine[i:i + 2] if word == "-isystem" else [word] if word.startswith(("-I", "-std")) else []
            if taken and taken[-1] not in common:
                common += taken
    names = sources.tracked("*.hpp")
    for name in names:
        if "#pragma once" not in (sources.TOP / name).read_text():
            print(f"{name}: without #pragma once", file=sys.stderr)
            return 1
    names = [name for name in names if not sources.of_windows(name)]

    def compiled(text, *switches):
        ran = subprocess.run(["clang++", *common, "-Werror", *switches, "-fsyntax-only", "-x", "c++", "-"],
                             cwd=sources.TOP, capture_output=True, text=True, input=text)
        return ran.stderr if ran.returncode else ""

    def run(name):
        wrong = compiled(f'#include "{name}"\n', "-Wall", "-Wextra", "-Wpedantic")
        return f"{name} does not compile by itself:\n{wrong}" if wrong else ""

    def example(name):
        first = EXAMPLE.search((sources.TOP / name).read_text())
        if not first:
            return f"{name} is installed and has no example"
        lines = [line.strip()[len("///"):] for line in first[0].split("\n")]
        lines = [line for line in lines if not line.strip().startswith(("#include", "..."))]
        wrong = compiled(f'#include "{name}"\n{AROUND}' + "\n".join(lines) + "\n}}\n")
        return f"{name}: the example does not compile:\n{wrong}" if wrong else ""

    def key(name):
        return sources.fingerprint(name, "headers", AROUND, " ".join(common))

    alone = sources.check_all("headers", [name for name in names if not shown_by_the_build(name, flags)], key, run)
    return sources.check_all("examples", installed(), key, example) or alone


sys.exit(main())
