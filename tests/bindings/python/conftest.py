"""What all tests of the Python package share: a control on a simulated bench in virtual time."""

import lumodevice
import pytest

# How each link is chosen by the operator, and what ConnStyle says of it.
LINKS = {"visa": (None, 2), "visa-com": ("optVisa2", 2), "serial": ("optConnRS232", 1)}


class Boxes(list):
    """The texts of the information boxes."""


@pytest.fixture
def boxes():
    return Boxes()


@pytest.fixture
def host(tmp_path, boxes):
    return lumodevice.simulated_host(
        virtual_time=True, drive_c=str(tmp_path / "c"), information_box=boxes.append
    )


class Linked(lumodevice.ZANCtrl):
    """A control that knows how it was connected."""

    link = None


@pytest.fixture
def zan(host):
    with Linked(host) as made:
        yield made


def choose(zan, link):
    option, _ = LINKS[link]
    if option is not None:
        assert zan[option].click()


@pytest.fixture(params=LINKS)
def connected(request, zan):
    """The control, connected over each link in turn."""
    choose(zan, request.param)
    assert zan.AutoConnect()
    zan.link = request.param
    return zan


@pytest.fixture
def load(tmp_path):
    bench = lumodevice.simulated_host(virtual_time=True, drive_c=str(tmp_path / "c"))
    with lumodevice.connect(host=bench) as made:
        yield made
