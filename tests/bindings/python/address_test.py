"""Addresses that need what is not here say so, and those of real links work."""

import os
import subprocess

import lumodevice
import pytest

NEEDS = "needs a VISA library; sockets, USB and serial ports work without"


@pytest.mark.parametrize(
    "address",
    [
        "TCPIP0::192.0.2.1::hislip0::INSTR",
        "TCPIP0::192.0.2.1::inst0::INSTR",
        "TCPIP::192.0.2.1::INSTR",
        "GPIB0::7::INSTR",
    ],
)
def test_hislip_and_vxi_11_say_what_they_need(address):
    with pytest.raises(lumodevice.BadAddress) as raised:
        lumodevice.connect(address)
    assert f"{address} {NEEDS}" in str(raised.value)


def test_the_terminal_host_says_so_too(tmp_path):
    ran = subprocess.run(
        [os.environ["ZANCTL"], "--resource", "TCPIP0::192.0.2.1::hislip0::INSTR", "connect"],
        capture_output=True,
        text=True,
        env={**os.environ, "LUMODEVICE_DRIVE_C": str(tmp_path)},
    )
    assert ran.returncode == 1
    assert NEEDS in ran.stderr


class Simulator:
    """A load as a process, on a socket of this machine."""

    def __init__(self, port=0):
        self.process = subprocess.Popen(
            [os.environ["ZANSIM"], "--tcp", str(port)], stdout=subprocess.PIPE, text=True
        )
        self.port = int(self.process.stdout.readline().rpartition(":")[2])
        self.address = f"TCPIP0::127.0.0.1::{self.port}::SOCKET"

    def __enter__(self):
        return self

    def __exit__(self, *raised):
        self.process.terminate()
        self.process.communicate()


def test_a_load_on_a_socket_answers():
    with Simulator() as there, lumodevice.connect(there.address, wait_unit=20) as load:
        assert load.identity.serial_number == "SIM00001"
        channel = load.channel(2)
        channel.setpoints["A"] = 0.5
        with channel.loaded():
            assert channel.read().load
        assert not channel.is_on


def test_a_load_behind_a_serial_device_answers(tmp_path):
    link = str(tmp_path / "zan")
    with subprocess.Popen(
        [os.environ["ZANSIM"], "--pty", link], stdout=subprocess.PIPE, text=True
    ) as server:
        server.stdout.readline()
        host = lumodevice.system_host(ports={3: link}, drive_c=str(tmp_path))
        with lumodevice.connect("COM3", host=host, wait_unit=50) as load:
            assert load.automation.ConnStyle == 1
            assert load.identity.model == "ZAN63200"
            assert load.channel(1).read().voltage > 12
        server.terminate()


def test_a_load_that_has_gone_is_an_exception_and_can_come_back():
    with Simulator() as there:
        load = lumodevice.connect(there.address, wait_unit=20)
        port = there.port
    with pytest.raises(lumodevice.LinkLost) as raised:
        for _ in range(2):
            load.query("*IDN?")
    assert isinstance(raised.value, ConnectionError)
    assert not load.connected
    for ask in (lambda: load.channel(1).voltage, lambda: load.identity, load.errors):
        with pytest.raises(lumodevice.LinkLost):
            ask()
    with pytest.raises(lumodevice.NoInstrument):
        load.reconnect()
    with Simulator(port):
        load.reconnect()
        assert load.channel(1).voltage > 12
    load.close()


def test_two_loads_of_one_program_keep_their_own_links():
    with Simulator() as there, lumodevice.connect(there.address, wait_unit=20) as load:
        assert load.query(":MODE?") == "CCH"
        with lumodevice.connect(there.address, wait_unit=20) as other:
            assert other.query(":MODE?") == "CCH"
        assert load.query(":MODE?") == "CCH"
