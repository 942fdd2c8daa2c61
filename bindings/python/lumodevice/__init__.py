"""Operates multi-channel DC electronic loads of the ZAN family.

    import lumodevice
    from lumodevice import Mode

    with lumodevice.connect("visa") as load:
        ch = load.channel(3)
        ch.mode = Mode.CC_HIGH
        ch.setpoints["A"] = 1.5          # amperes
        with ch.loaded():                # on, and off at the end of the block
            print(ch.voltage, "V")

connect("TCPIP0::192.168.1.7::5025::SOCKET") takes one instrument, connect("serial") searches the
serial ports, connect(simulate=True) needs none. What goes wrong raises a LoadError: NoInstrument,
NoAnswer, InstrumentError (the load's own error queue) and others.

On asyncio's loop:

    async for reading in load.watch(0.2):
        print(reading.channel, reading.voltage)

Below lies the automation layer: ZANCtrl has the members of the automation interface by their exact
names, which never raise for what the instrument does, and the controls of its panel:

    zan = load.automation                # or ZANCtrl(system_host())
    zan.SendCmd(":FETC:VOLT?")
    zan["txtInput", 0].text = "1.5"
    zan["cmdSet", 0].click()
"""

from ._lumodevice import (
    Control,
    FormattedIO488,
    Host,
    Subscription,
    Surface,
    ZANCtrl,
    replayed_host,
    simulated_host,
    system_host,
)
from .channel import Channel, Loaded, Settings, Switches
from .errors import (
    BadAddress,
    BrokenAnswer,
    BrokenOff,
    Fault,
    HeldBack,
    InstrumentError,
    LinkLost,
    LoadError,
    NoAnswer,
    NoInstrument,
    WrongThread,
)
from .load import Load, connect, connect_async
from .reading import Identity, Reading
from .tables import Mode, Setting, Switch

__all__ = [
    "BadAddress",
    "BrokenAnswer",
    "BrokenOff",
    "Channel",
    "Control",
    "Fault",
    "FormattedIO488",
    "HeldBack",
    "Host",
    "Identity",
    "InstrumentError",
    "LinkLost",
    "Load",
    "LoadError",
    "Loaded",
    "Mode",
    "NoAnswer",
    "NoInstrument",
    "Reading",
    "Setting",
    "Settings",
    "Subscription",
    "Surface",
    "Switch",
    "Switches",
    "WrongThread",
    "ZANCtrl",
    "connect",
    "connect_async",
    "replayed_host",
    "simulated_host",
    "system_host",
]
