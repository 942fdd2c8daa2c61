"""A host script does here what it does in the terminal host, to the last byte on the wire."""

import os
import pathlib
import subprocess

import lumodevice
import pytest
from lumodevice import script

SOURCE = pathlib.Path(os.environ["SOURCE"])
SCRIPTS = [SOURCE / "tests/views/qt/everything.zan"] + sorted(
    file for file in (SOURCE / "examples/scripts").glob("*.zan") if file.name != "socket.zan"
)


@pytest.mark.parametrize("file", SCRIPTS, ids=lambda file: file.stem)
def test_the_same_bytes_go_over_the_wire(file, tmp_path):
    terminal = subprocess.run(
        [
            os.environ["ZANCTL"],
            "--simulate",
            "--virtual-time",
            "--drive-c",
            str(tmp_path / "terminal"),
            "--trace",
            str(tmp_path / "terminal.trace"),
            "run",
            str(file),
        ],
        capture_output=True,
        text=True,
        check=True,
    )
    host = lumodevice.simulated_host(
        virtual_time=True,
        drive_c=str(tmp_path / "python"),
        information_box=lambda text: None,
        trace=str(tmp_path / "python.trace"),
    )
    printed = []
    with lumodevice.ZANCtrl(host) as zan:
        script.run(zan, file, line=printed.append, told=printed.append)
    wire = (tmp_path / "python.trace").read_text()
    assert len(wire) > 500
    assert wire == (tmp_path / "terminal.trace").read_text()
    assert "\n".join(printed) == terminal.stdout.rstrip("\n")


@pytest.mark.parametrize(
    ("line", "wrong"),
    [
        ("gett IDN", "unknown instruction"),
        ("get nothing", "is no member"),
        ("put isConnected True", "is no member for that"),
        ("click nothing", "unknown control"),
        ("get Text5.Caption", "has no property"),
        ('print "open', "closing quote"),
        ('print "\\q"', "unknown escape"),
        ("expect 5", "the answer is none"),
        ("click", "other words"),
        ("call SendCmd", "takes an argument"),
        ("put AutoQuery maybe", "True or False"),
        ("wait soon", "could not convert"),
    ],
)
def test_what_is_wrong_in_a_script_is_told_with_its_place(zan, tmp_path, line, wrong):
    file = tmp_path / "wrong.zan"
    file.write_text(f"# first\n{line}\n")
    with pytest.raises(script.ScriptMistake, match="wrong.zan:2: ") as raised:
        script.run(zan, file)
    assert wrong in str(raised.value)


def test_words_are_escaped_as_in_the_terminal(zan, tmp_path):
    file = tmp_path / "words.zan"
    file.write_bytes(b'\xef\xbb\xbfprint "a\\tb \\xFF \\" \\\\"\r\nget lblInput(14).Caption\n')
    printed = []
    script.run(zan, file, line=printed.append)
    assert printed == ['a\\tb \\xFF " \\\\', "A Value(Ω)"]
