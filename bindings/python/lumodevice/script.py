"""Host scripts: the language that all faces of the control share.

    lumodevice.script.run(zan, "examples/scripts/first-contact.zan")

A line is an instruction and its words; docs/terminal-host.md tells of all of them. It does here
what it does in `zanctl run`, to the last byte on the wire.
"""

from __future__ import annotations

import sys
from typing import TYPE_CHECKING

from . import _lumodevice

if TYPE_CHECKING:
    import os
    from collections.abc import Callable

    from ._lumodevice import Control, ZANCtrl

__all__ = ["ScriptMistake", "run"]

_SHORT = {"n": "\n", "r": "\r", "t": "\t", "\\": "\\", '"': '"'}
_ESCAPES = {character: "\\" + letter for letter, character in _SHORT.items() if letter != '"'}
_KINDS: dict[str, dict[str, tuple[str, str]]] = {}
for _name, _kind, _, _type, _result, _ in _lumodevice.MEMBERS:
    _KINDS.setdefault(_name, {})[_kind] = (_type, _result)


class ScriptMistake(Exception):
    """What is wrong in a script; the text begins with the place, "FILE:LINE: "."""


def _escaped(text: str, *, letters: bool = False) -> str:
    """As bytes that can be printed; with letters the characters of a caption stand as they are."""
    out = ""
    for character in text:
        if character in _ESCAPES:
            out += _ESCAPES[character]
        elif " " <= character <= "~" or (letters and character.isprintable()):
            out += character
        else:
            out += "".join(
                f"\\x{byte:02X}" for byte in character.encode("utf-8", "surrogateescape")
            )
    return out


def _words(line: str) -> list[str]:
    words: list[str] = []
    rest = line.lstrip(" \t")
    if rest.startswith("#"):
        return words
    while rest:
        if rest[0] == '"':
            word, rest = _quoted(rest[1:])
        else:
            end = min((at for at in (rest.find(" "), rest.find("\t")) if at >= 0), default=len(rest))
            word, rest = rest[:end], rest[end:]
            if '"' in word:
                raise ScriptMistake(f"a quote inside the word {_escaped(word)}")
        words.append(word)
        rest = rest.lstrip(" \t")
    return words


def _quoted(rest: str) -> tuple[str, str]:
    """The word whose opening quote was just passed, and what follows its closing one."""
    word = bytearray()
    while rest and rest[0] != '"':
        if rest[0] != "\\":
            word += rest[0].encode("utf-8", "surrogateescape")
            rest = rest[1:]
        elif rest[1:2] == "x":
            try:
                word.append(int(rest[2:4], 16))
            except ValueError:
                raise ScriptMistake("\\x needs two hexadecimal digits") from None
            rest = rest[4:]
        elif rest[1:2] in _SHORT and rest[1:2]:
            word += _SHORT[rest[1]].encode()
            rest = rest[2:]
        else:
            raise ScriptMistake(f"unknown escape \\{rest[1:2]}")
    if not rest:
        raise ScriptMistake("the closing quote is missing")
    if rest[1:2] not in ("", " ", "\t"):
        raise ScriptMistake("a blank is missing behind the closing quote")
    return word.decode("utf-8", "surrogateescape"), rest[1:]


def _word_of(value: object) -> str:
    if value is None:
        return "Nothing"
    return "IFormattedIO488" if isinstance(value, _lumodevice.FormattedIO488) else str(value)


def _value_in(word: str, type_name: str) -> object:
    if type_name == "bool":
        if word not in ("True", "False", "-1", "0"):
            raise ScriptMistake(f"True or False is needed, not {_escaped(word)}")
        return word in ("True", "-1")
    if type_name == "FormattedIO488":
        if word != "Nothing":
            raise ScriptMistake(f"Nothing is taken only, not {_escaped(word)}")
        return None
    return word


class _Script:
    def __init__(self, zan: ZANCtrl, line: Callable[[str], object], told: Callable[[str], object]):
        self._zan = zan
        self._line = line
        self._told = told
        self._keys: list[tuple[str, int, int, int, int]] = []

    def perform(self, text: str) -> None:
        words = _words(text)
        if words:
            instruction = getattr(self, "do_" + words[0], None)
            if instruction is None:
                raise ScriptMistake(f"unknown instruction {_escaped(words[0])}")
            try:
                instruction(*words[1:])
            except TypeError:
                if len(words) - 1 == instruction.__code__.co_argcount - 1:
                    raise
                raise ScriptMistake(f"{words[0]} takes other words than these") from None
            except (AttributeError, ValueError) as refused:
                raise ScriptMistake(_escaped(str(refused))) from None

    def _control(self, name: str) -> Control:
        try:
            return self._zan[name]
        except KeyError:
            raise ScriptMistake(f"unknown control {_escaped(name)}") from None

    def _member(self, name: str, kind: str) -> tuple[str, str]:
        try:
            return _KINDS[name][kind]
        except KeyError:
            raise ScriptMistake(f"{_escaped(name)} is no member for that") from None

    def _report(self, taken: bool, control: Control) -> None:
        if not taken:
            self._told(f"[refused] {control.full_name} is disabled")

    def do_get(self, what: str) -> None:
        control, dot, name = what.partition(".")
        if dot:
            self._line(_escaped(self._control(control)[name], letters=name == "Caption"))
        else:
            self._member(what, "get")
            self._line(_escaped(_word_of(getattr(self._zan, what))))

    def do_put(self, member: str, word: str) -> None:
        type_name, _ = self._member(member, "put")
        setattr(self._zan, member, _value_in(word, type_name))

    def do_call(self, member: str, *words: str) -> None:
        type_name, result = self._member(member, "method")
        if bool(type_name) != (len(words) == 1) or len(words) > 1:
            raise ScriptMistake(f"{member} takes {'an' if type_name else 'no'} argument")
        value = getattr(self._zan, member)(*(_value_in(word, type_name) for word in words))
        if result:
            self._line(_escaped(_word_of(value)))

    def do_set(self, what: str, word: str) -> None:
        control, dot, name = what.partition(".")
        if not dot:
            raise ScriptMistake("set takes CONTROL.PROPERTY")
        self._control(control)[name] = word

    def do_click(self, name: str) -> None:
        control = self._control(name)
        self._report(control.click(), control)

    def do_type(self, name: str, text: str) -> None:
        control = self._control(name)
        self._report(control.type(text), control)

    def do_select(self, name: str, index: str) -> None:
        control = self._control(name)
        self._report(control.select(int(index)), control)

    def do_key(self, name: str, key: str) -> None:
        control = self._control(name)
        self._report(control.press(key), control)

    def do_drag(self, name: str, item: str, onto: str) -> None:
        control, target = self._control(name), self._control(onto)
        self._report(control.drag(item, target), target if control.usable else control)

    def do_area(self, title: str, x1: str, y1: str, x2: str, y2: str) -> None:
        areas = [*self._keys, (title, int(x1), int(y1), int(x2), int(y2))]
        self._zan.setKeys(areas)
        self._keys = areas

    def do_press(self, button: str, shift: str, x: str, y: str) -> None:
        self._zan.PressKeyAt(int(button), int(shift), float(x), float(y))

    def do_wait(self, milliseconds: str) -> None:
        self._zan.host.run_for(float(milliseconds) / 1000)

    def do_expect(self, text: str) -> None:
        answer = self._zan.ResultStr.strip(" ")
        if answer != text:
            shown = _escaped(answer) if answer else "none"
            raise ScriptMistake(f"expected {_escaped(text)}, the answer is {shown}")

    def do_print(self, text: str) -> None:
        self._line(_escaped(text))


def run(
    zan: ZANCtrl,
    file: str | os.PathLike[str],
    *,
    line: Callable[[str], object] = print,
    told: Callable[[str], object] = lambda text: print(text, file=sys.stderr),
) -> None:
    """Runs a script. What it prints goes to line, a text each; what is told about it to told.

    Raises ScriptMistake for the first line that is wrong; the lines before it have been run.
    """
    script = _Script(zan, line, told)
    with open(file, encoding="utf-8-sig", errors="surrogateescape", newline="\n") as lines:
        for number, text in enumerate(lines, 1):
            try:
                script.perform(text.removesuffix("\n").removesuffix("\r"))
            except ScriptMistake as mistake:
                raise ScriptMistake(f"{file}:{number}: {mistake}") from None
