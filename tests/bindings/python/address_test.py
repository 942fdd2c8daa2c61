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


@pytest.fixture
def socket_of_a_load(tmp_path):
    with subprocess.Popen(
        [os.environ["ZANSIM"], "--tcp", "0"], stdout=subprocess.PIPE, text=True
    ) as server:
        yield server.stdout.readline().split()[-1]
        server.terminate()


def test_a_load_on_a_socket_answers(socket_of_a_load):
    port = socket_of_a_load.rpartition(":")[2]
    with lumodevice.connect(f"TCPIP0::127.0.0.1::{port}::SOCKET", wait_unit=20) as load:
        assert load.identity.serial_number == "SIM00001"
        channel = load.channel(2)
        channel.setpoints["A"] = 0.5
        channel.on()
        assert channel.read().load
        channel.off()
