"""A bench is kept as a file, and played back."""

import gc

import lumodevice
import pytest


def readings(host):
    with lumodevice.connect(host=host) as load:
        channel = load.channel(1)
        channel.setpoints["A"] = 1.5
        with channel.loaded():
            return [reading[1:] for reading in load.readings(0.5, channels=[1, 2], count=5)]


def test_a_recording_gives_the_same_readings_again(tmp_path):
    file = str(tmp_path / "bench.rec")
    recorded = readings(
        lumodevice.simulated_host(virtual_time=True, drive_c=str(tmp_path), record=file)
    )
    gc.collect()
    mistakes = []
    again = lumodevice.replayed_host(
        file, virtual_time=True, drive_c=str(tmp_path), mistaken=mistakes.append
    )
    assert readings(again) == recorded
    assert mistakes == []


def test_what_the_recording_has_not_is_told(tmp_path):
    file = str(tmp_path / "bench.rec")
    with lumodevice.connect(
        host=lumodevice.simulated_host(virtual_time=True, drive_c=str(tmp_path), record=file)
    ) as load:
        assert load.query(":MODE?") == "CCH"
    mistakes = []
    again = lumodevice.replayed_host(file, virtual_time=True, mistaken=mistakes.append)
    with lumodevice.connect(host=again) as load, pytest.raises(lumodevice.LoadError):
        load.query(":CURR:STAT:FALL?")
        load.query(":NEVER:ASKED?")
    assert any(":NEVER:ASKED?" in mistake or "FALL" in mistake for mistake in mistakes)


def test_a_file_that_is_no_recording_is_refused(tmp_path):
    file = tmp_path / "other"
    file.write_text("nothing of the kind")
    with pytest.raises(RuntimeError):
        lumodevice.replayed_host(str(file))
