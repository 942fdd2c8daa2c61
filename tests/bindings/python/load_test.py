"""A load and its channels, as people know them from instrument libraries."""

import math

import lumodevice
import pytest
from lumodevice import Mode


def test_a_load_is_connected_used_and_left():
    with lumodevice.connect(simulate=True, virtual_time=True) as load:
        ch = load.channel(3)
        ch.mode = Mode.CC_HIGH
        ch.setpoints["A"] = 1.5
        ch.on()
        assert ch.is_on
        assert ch.voltage == pytest.approx(12.5, abs=0.1)
        assert ch.current == pytest.approx(1.5, abs=0.01)
        assert ch.power == pytest.approx(ch.voltage * ch.current, rel=0.01)
        ch.off()
        assert not ch.is_on
        assert load.connected
    assert not load.connected


@pytest.mark.parametrize("address", ["visa", "visa-com", "serial", "SIM00001", "COM3"])
def test_each_link_is_chosen_by_its_name_or_an_address(address):
    with lumodevice.connect(address, virtual_time=True) as load:
        assert load.identity.model == "ZAN63200"
        assert load.identity.serial_number == "SIM00001"
        assert load.channel(1).voltage > 12
        assert [channel.number for channel in load.channels] == list(range(1, 8))
        load.channel(2).setpoints_of(Mode.CV)["A"] = 4
        assert load.channel(2).setpoints_of(Mode.CV)["A"] == 4


def test_a_reading_is_always_that_of_its_channel(load):
    first, second = load.channel(1), load.channel(2)
    for _ in range(3):
        assert first.voltage > 12
        assert second.voltage < 6
    # Somebody turns to another channel at the instrument.
    load.automation.setKeys([("CHAN", 0, 0, 10, 10)])
    load.automation.PressKeyAt(1, 0, 5, 5)
    assert second.voltage < 6
    assert [reading.voltage > 12 for reading in (first.read(), second.read())] == [True, False]


def test_no_answer_is_that_of_another_query():
    """Numbered readings tell what was asked: voltages from 10, currents from 20, powers from 30."""
    host = lumodevice.simulated_host(
        virtual_time=True,
        numbered_readings=True,
        latencies=[":FETC:VOLT?=60-900", ":FETC:CURR?=300", ":FETC:POW?=150"],
        information_box=lambda text: None,
    )
    with lumodevice.connect(host=host) as load:
        channel = load.channel(1)
        for _ in range(20):
            reading = channel.read()
            assert 10 < reading.voltage < 11
            assert 20 < reading.current < 21
            assert 30 < reading.power < 31


def test_what_asks_nothing_has_no_answer_and_gets_no_older_one(load):
    assert load.query("*IDN?")
    for nothing in ("", "  ", ":LOAD ON"):
        with pytest.raises(ValueError, match="asks nothing"):
            load.query(nothing)
    with pytest.raises(ValueError, match="asks something"):
        load.write(":LOAD?")


def test_late_answers_are_nobody_s():
    host = lumodevice.simulated_host(
        virtual_time=True, numbered_readings=True, latencies=[":FETC:VOLT?=2000"]
    )
    with lumodevice.connect(host=host) as load:
        channel = load.channel(1)
        for _ in range(3):
            with pytest.raises(lumodevice.NoAnswer) as raised:
                channel.voltage  # noqa: B018
            assert raised.value.kind == "no-answer"
            assert isinstance(raised.value, TimeoutError)
            assert 20 < channel.current < 21


def test_every_mode_is_set_and_read_back(load):
    assert [mode.name for mode in Mode] == [
        "CC_HIGH",
        "CC_LOW",
        "CV",
        "CR_HIGH",
        "CR_LOW",
        "CC_DYNAMIC_HIGH",
        "CC_DYNAMIC_LOW",
        "CR_DYNAMIC_HIGH",
        "CR_DYNAMIC_LOW",
    ]
    channel = load.channel(3)
    for mode in Mode:
        channel.mode = mode
        assert channel.mode is mode


def test_every_setting_of_every_mode_has_a_unit_a_range_and_a_value(load):
    channel = load.channel(3)
    for mode in Mode:
        settings = channel.setpoints_of(mode)
        assert len(settings) in (3, 4, 6)
        for name in settings:
            assert settings.unit(name) in ("A", "V", "Ω", "ms", "A/uS")
            least, greatest = settings.range(name)
            assert least < greatest
            settings[name] = least
            assert settings[name] == pytest.approx(least, rel=1e-3)
            settings[name] = "MAX"
            assert settings[name] == pytest.approx(greatest, rel=1e-3)


def test_settings_are_named_as_on_the_panel(load):
    channel = load.channel(3)
    channel.mode = Mode.CC_HIGH
    assert list(channel.setpoints) == ["A", "B", "Slew1", "Slew2"]
    assert list(channel.setpoints_of(Mode.CC_DYNAMIC_HIGH)) == [
        "Level 1",
        "Level 2",
        "Slew1",
        "Slew2",
        "Timer1",
        "Timer2",
    ]
    assert list(channel.limits) == ["VON", "OCP", "OVP", "UVP", "GoNogo High", "GoNogo Low"]
    channel.setpoints_of(Mode.CC_DYNAMIC_HIGH)["level_1"] = 2
    assert channel.setpoints_of(Mode.CC_DYNAMIC_HIGH)["LEVEL1"] == 2
    with pytest.raises(KeyError, match="there are A, B"):
        channel.setpoints["C"] = 1
    with pytest.raises(TypeError):
        del channel.setpoints["A"]


def test_a_setting_is_a_number_min_or_max(load):
    settings = load.channel(3).setpoints_of(Mode.CC_HIGH)
    settings["A"] = 0.025
    assert settings["A"] == 0.025
    settings["A"] = 20
    assert settings["A"] == 20
    for wrong in (math.inf, math.nan, "1;:LOAD ON", "much"):
        with pytest.raises(ValueError, match="is no setting"):
            settings["A"] = wrong
    assert settings["A"] == 20
    assert not load.channel(3).is_on


def test_go_nogo_limits_are_amperes_in_cv(load):
    channel = load.channel(3)
    channel.mode = Mode.CV
    channel.limits["GoNogo High"] = 3
    assert channel.limits.unit("GoNogo High") == "A"
    assert channel.limits.unit("OVP") == "V"
    assert channel.limits.unit("OCP") == "A"
    channel.mode = Mode.CC_HIGH
    assert channel.limits.unit("GoNogo High") == "V"
    assert channel.limits["GoNogo High"] != 3
    assert float(load.query(":SPEC:CURR:H?")) == 3


def test_switches_and_words(load):
    channel = load.channel(3)
    assert list(channel.switches) == ["VON Latch", "OCP", "OVP", "GoNogo"]
    for name in channel.switches:
        channel.switches[name] = True
        assert channel.switches[name] is True
        channel.switches[name] = False
        assert channel.switches[name] is False
    channel.voltage_range = "low"
    assert channel.voltage_range == 16
    channel.cv_response = "FAST"
    assert channel.cv_response == "FAST"
    with pytest.raises(ValueError, match="LOW, HIGH"):
        channel.voltage_range = "MIDDLE"


def test_the_load_s_own_errors_are_exceptions(load):
    with pytest.raises(lumodevice.InstrumentError) as raised:
        load.channel(3).setpoints["A"] = 5000
    assert raised.value.number == -222
    assert raised.value.others == ()
    with pytest.raises(lumodevice.InstrumentError, match="-113"):
        load.write(":NO:SUCH:COMMAND")
    load.write(":NO:SUCH:COMMAND", check=False)
    load.write(":NO:SUCH:COMMAND", check=False)
    assert [error.number for error in load.errors()] == [-113, -113]
    assert load.errors() == []


def test_errors_from_before_the_connect_are_nobody_s(tmp_path):
    host = lumodevice.simulated_host(virtual_time=True)
    with lumodevice.connect(host=host) as first:
        first.write(":NO:SUCH:COMMAND", check=False)
    with lumodevice.connect(host=host) as load:
        load.channel(3).setpoints["A"] = 1


def test_no_instrument_says_why():
    with pytest.raises(lumodevice.NoInstrument) as raised:
        lumodevice.connect("COM7", virtual_time=True)
    assert raised.value.kind == "nothing-found"
    with pytest.raises(lumodevice.BadAddress):
        lumodevice.connect("what is this", virtual_time=True)
    silent = lumodevice.simulated_host(virtual_time=True, latencies=["60000"])
    with pytest.raises(lumodevice.NoInstrument) as raised:
        lumodevice.connect(host=silent)
    assert raised.value.kind == "no-answer"
    with pytest.raises(lumodevice.NoInstrument, match="refused"):
        lumodevice.connect("TCPIP0::127.0.0.1::1::SOCKET")


def test_every_kind_of_failure_has_an_exception():
    from lumodevice import _lumodevice, errors

    for kind, sentence in _lumodevice.FAILURES:
        raised = errors.of_kind(kind, "asked")
        assert isinstance(raised, lumodevice.LoadError)
        assert str(raised) == f"asked: {sentence}"
        assert raised.kind == kind


def test_observing_holds_commands_back():
    host = lumodevice.simulated_host(virtual_time=True, observing=True)
    with lumodevice.connect(host=host) as load:
        assert load.channel(2).voltage < 6
        with pytest.raises(lumodevice.HeldBack):
            load.channel(2).on()
        assert not load.channel(2).is_on


def test_without_a_link_there_is_an_exception_and_no_value(load):
    channel = load.channel(1)
    load.close()
    with pytest.raises(RuntimeError):
        channel.voltage  # noqa: B018


@pytest.mark.parametrize("answer", ["", "x", "12.5 V", "1,2", "nan", "1_0", "١٢", "inf", "--1"])
def test_what_is_no_number_is_no_reading(answer):
    from lumodevice.reading import number_in

    with pytest.raises(lumodevice.BrokenAnswer):
        number_in(answer, ":FETC:VOLT?")


def test_more_than_the_range_is_infinite(load):
    channel = load.channel(1)
    channel.voltage_range = "HIGH"
    from lumodevice.reading import number_in

    assert number_in("9.9E37", "") == math.inf
    assert math.isnan(number_in("9.91E37", ""))
    assert number_in(" -1.25e1\r", "") == -12.5


def test_readings_are_rows(load):
    load.channel(1).on()
    rows = list(load.readings(0.5, channels=[1, 2], count=3))
    assert [row.channel for row in rows] == [1, 2] * 3
    assert rows[0].load and not rows[1].load
    assert rows[2].time - rows[0].time == pytest.approx(0.5, abs=0.01) or rows[2].time > rows[0].time
    assert list(rows[0].as_row()) == ["time", "channel", "voltage_V", "current_A", "power_W", "load"]
    assert rows[0].when.timestamp() == pytest.approx(rows[0].time)
    assert rows[0]._fields == ("time", "channel", "voltage", "current", "power", "load")


def test_a_block_of_load_ends_with_the_load_off_whatever_ends_it(load):
    channel = load.channel(2)
    with pytest.raises(KeyboardInterrupt), channel.loaded() as loaded:
        assert loaded.is_on
        raise KeyboardInterrupt
    assert not channel.is_on


def test_all_channels_go_off(load):
    for channel in load.channels:
        channel.on()
    load.off()
    assert not any(channel.is_on for channel in load.channels)


def test_the_auto_query_keeps_its_channel(load):
    load.automation.AutoQuery = True
    shown = load.automation["cmbChannel"].text
    other = next(channel for channel in load.channels if channel.name != shown)
    with pytest.raises(lumodevice.LoadError, match="auto query"):
        other.voltage  # noqa: B018


def test_a_host_of_the_interleaved_way_is_refused():
    with pytest.raises(ValueError, match="in turn"):
        lumodevice.connect(host=lumodevice.simulated_host(virtual_time=True, interleaved=True))
