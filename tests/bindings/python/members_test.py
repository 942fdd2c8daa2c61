"""The automation members by their exact names, on each link, connected and not."""

import inspect
import pathlib

import lumodevice
import pytest
from conftest import LINKS, choose
from lumodevice import _lumodevice

TYPES = {"bool": bool, "int": int, "str": str}
GETTERS = [row for row in _lumodevice.MEMBERS if row[1] == "get"]
PUTTERS = [row for row in _lumodevice.MEMBERS if row[1] == "put"]
METHODS = [row for row in _lumodevice.MEMBERS if row[1] == "method"]

# What a control without a link gives; a search is no matter of the link that there is.
UNCONNECTED = {
    "bDevAvaliable": False,
    "devZAN": None,
    "IDN": "",
    "AutoQuery": False,
    "isConnected": False,
    "ChCount": 0,
    "ConnStyle": 0,
    "ErrMessage": "",
    "ResultStr": "",
    "SendCmd": None,
    "nextCmd": ":CHAN ",
    "ShowControl": None,
    "ShowConnect": None,
    "AutoConnect": True,
    "NotConnect": None,
    "GetSeqFile": True,
    "GetSysFile": True,
    "SendSysFile": False,
    "GetBMPFile": False,
    "GetPresetFile": False,
    "SetPresetFile": False,
}
# What differs with a link; a tuple has one value for each.
CONNECTED = {
    "bDevAvaliable": True,
    "isConnected": True,
    "ChCount": 7,
    "ConnStyle": tuple(style for _, style in LINKS.values()),
    "ErrMessage": '0,"No error"',
    "GetBMPFile": (False, True, True),
    "GetPresetFile": (False, True, True),
}


def call(zan, name, argument):
    return getattr(zan, name)(*([":FETC:VOLT?"] if argument else []))


def names(rows):
    return [row[0] for row in rows]


def test_the_class_has_every_member_of_the_table_and_its_help():
    for name, kind, _, _, _, text in _lumodevice.MEMBERS:
        member = getattr(lumodevice.ZANCtrl, name)
        assert text[1:] in inspect.getdoc(member), name
        assert isinstance(member, property) == (kind != "method")
    assert len(set(names(_lumodevice.MEMBERS))) == 22


@pytest.mark.parametrize("row", GETTERS + METHODS, ids=lambda row: row[0])
def test_without_a_link_a_member_gives_nothing_and_raises_nothing(zan, row):
    name, kind, argument, *_ = row
    value = getattr(zan, name) if kind == "get" else call(zan, name, argument)
    assert value == UNCONNECTED[name]


@pytest.mark.parametrize("row", GETTERS + METHODS, ids=lambda row: row[0])
def test_each_member_over_each_link(connected, row):
    name, kind, argument, _, result, _ = row
    value = getattr(connected, name) if kind == "get" else call(connected, name, argument)
    expected = CONNECTED.get(name, UNCONNECTED[name])
    if isinstance(expected, tuple):
        expected = expected[list(LINKS).index(connected.link)]
    if name == "devZAN":
        assert (value is None) == (connected.link != "visa-com")
    elif name == "IDN":
        assert value.startswith("Ostbrook Instruments,ZAN63200,") or connected.link == "serial"
    elif name == "ResultStr":
        assert isinstance(value, str)
    else:
        assert value == expected
        if result:
            assert type(value) is TYPES[result]


@pytest.mark.parametrize("link", LINKS)
def test_what_is_written_is_read_again(zan, link):
    choose(zan, link)
    for _ in range(2):
        zan.bDevAvaliable = True
        assert zan.bDevAvaliable is True
        zan.IDN = "somebody else"
        assert zan.IDN == "somebody else"
        zan.AutoQuery = True
        assert zan.AutoQuery is True
        zan.AutoQuery = False
        zan.DisplayCmd = True
        assert zan["TXT"].visible
        zan.DisplayCmd = False
        assert not zan["TXT"].visible
        zan.devZAN = None
        assert zan.devZAN is None
        assert zan.AutoConnect()


def test_a_property_that_can_only_be_written_or_read_says_so(zan):
    with pytest.raises(AttributeError):
        zan.DisplayCmd  # noqa: B018
    with pytest.raises(AttributeError):
        zan.ResultStr = "1.5"
    with pytest.raises(AttributeError):
        zan.isConnected = True


def test_a_value_of_another_type_is_refused(zan):
    with pytest.raises(TypeError):
        zan.AutoQuery = "yes"
    with pytest.raises(TypeError):
        zan.SendCmd(5)
    with pytest.raises(TypeError):
        lumodevice.ZANCtrl(None)


def test_a_query_has_its_own_answer_over_each_link(connected):
    for query, beginning in ((":FETC:VOLT?", "12."), ("*IDN?", "Ostbrook"), (":MODE?", "CCH")):
        connected.SendCmd(query)
        assert connected.ResultStr.startswith(beginning)
        assert connected.failure() == ("none", "nothing failed")


def test_bytes_that_are_no_text_survive(zan):
    zan.IDN = b"\xff\xfe\xc3".decode("utf-8", "surrogateescape")
    assert zan.IDN.encode("utf-8", "surrogateescape") == b"\xff\xfe\xc3"


def test_the_formatted_io_object_can_be_used_and_handed_on(host, zan):
    choose(zan, "visa-com")
    assert zan.AutoConnect()
    device = zan.devZAN
    device.WriteString("*IDN?\n")
    assert "ZAN63200" in device.ReadString()
    device.WriteString(":MEM:FILE:PRES?\n")
    assert len(device.ReadIEEEBlock()) == 892
    with lumodevice.ZANCtrl(host) as other:
        other.devZAN = device
        assert other.devZAN is not None
    with pytest.raises(lumodevice.Fault):
        device.ReadString()


def test_files_are_saved_on_drive_c(zan, tmp_path):
    choose(zan, "visa-com")
    assert zan.AutoConnect()
    assert zan.GetBMPFile()
    picture = pathlib.Path(tmp_path, "c", "temp", "ZAN.bmp").read_bytes()
    assert picture[:2] == b"BM"
    assert zan.GetPresetFile("anything")
    pathlib.Path(tmp_path, "c", "temp", "test.dev").touch()
    assert zan.SetPresetFile()


def test_a_connect_that_fails_says_why(zan):
    assert not zan.connectTo("COM7")
    kind, sentence = zan.failure()
    assert kind == "nothing-found"
    assert "COM7" in sentence or sentence
    assert not zan.connectTo("what is this")
    assert zan.failure()[0] == "bad-address"


def test_connects_by_address_and_again(zan):
    assert zan.connectTo("SIM00001")
    assert zan.ConnStyle == 2
    assert zan.reconnect()
    assert zan.connectTo("COM3", read_back=False)
    assert zan.ConnStyle == 1


def test_information_boxes_go_to_the_host_s_callable(zan, boxes):
    zan["Command1"].click()
    assert boxes == ["Pleace Connect to Deivce first!"]


def test_an_observing_control_holds_back_what_would_change_the_load(zan):
    zan.observing = True
    assert zan.AutoConnect()
    held = []
    watching = zan.observeHeldBack(held.append)
    zan.SendCmd(":LOAD ON")
    assert held == [":LOAD ON"]
    assert zan.failure()[0] == "held-back"
    watching.end()
    zan.SendCmd(":LOAD ON")
    assert held == [":LOAD ON"]


def test_the_readings_of_the_auto_query_are_told(zan):
    assert zan.AutoConnect()
    told = []
    with zan.observeReadings(lambda query, answer: told.append((query, answer))):
        zan.AutoQuery = True
        zan.host.run_for(2.1)
    zan.host.run_for(2)
    assert [query for query, _ in told[:5]] == list(_lumodevice.READINGS)
    assert len(told) == 10
    assert float(told[0][1]) > 12


def test_the_loss_of_a_link_is_told_once(tmp_path):
    host = lumodevice.simulated_host(
        virtual_time=True, drive_c=str(tmp_path), latencies=[":FETC:VOLT?=60000", ":LOAD?=60000"]
    )
    zan = lumodevice.ZANCtrl(host)
    lost = []
    watching = zan.observeLinkLost(lambda kind, sentence: lost.append(kind))
    assert zan.connectTo("SIM00001")
    zan.AutoQuery = True
    host.run_for(120)
    watching.end()
    assert lost in ([], ["no-answer"])


def test_keys_of_the_front_panel(zan):
    assert zan.AutoConnect()
    zan.setKeys([("LOAD", 0, 0, 10, 10)])
    zan.PressKeyAt(1, 0, 5, 5)
    zan.SendCmd(":LOAD?")
    assert zan.ResultStr == "1"
    with pytest.raises(ValueError):
        zan.setKeys([("F1", 0, 0, 1, 1)] * 52)


def test_the_wait_unit_has_its_range(zan):
    assert zan.waitUnit == 200
    zan.waitUnit = 50
    assert zan["Text5"].text == "50"
    for wrong in (0, 65536):
        with pytest.raises((ValueError, IndexError)):
            zan.waitUnit = wrong


def test_help_reads_well():
    text = inspect.getdoc(lumodevice.ZANCtrl)
    assert "zan.SendCmd" in text
    assert str(inspect.signature(lumodevice.ZANCtrl.SendCmd)) == "(sVar, /)"
    assert inspect.getdoc(lumodevice.ZANCtrl.SendCmd).startswith("Sends a command and waits")
