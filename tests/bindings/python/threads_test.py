"""Waits: other threads run, Ctrl-C ends them, and one thread alone has a component."""

import os
import signal
import threading
import time

import lumodevice
import pytest


def real_time(**options):
    return lumodevice.ZANCtrl(
        lumodevice.simulated_host(information_box=lambda text: None, **options)
    )


class Counting(threading.Thread):
    """Counts as long as the lock of the interpreter is free for it."""

    def __init__(self):
        super().__init__(daemon=True)
        self.count = 0
        self.end = False

    def run(self):
        while not self.end:
            self.count += 1
            time.sleep(0.001)

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *raised):
        self.end = True
        self.join()




@pytest.fixture
def silent():
    """A control whose instrument has fallen silent."""
    zan = real_time(latencies=["*IDN?=0", ":SYST:ERR?=60000"])
    assert zan.connectTo("SIM00001", read_back=False)
    zan["Text2"].text = ":SYST:ERR?"
    yield zan
    zan.close()


ACTS = {
    "a member": lambda zan: zan.SendCmd(":SYST:ERR?"),
    "an act of the operator": lambda zan: zan["cmdSendCmd"].click(),
    "a property": lambda zan: zan.ErrMessage,
    "a change of a control": lambda zan: setattr(zan["TXT"], "text", ":SYST:ERR?"),
    "a pause": lambda zan: zan.host.run_for(60 if zan.waitUnit > 1000 else 1),
}
# A machine that is busy with other things takes its time, too.
SOON = 10


@pytest.mark.parametrize("act", ACTS.values(), ids=ACTS)
def test_other_threads_run_during_each_wait(silent, act):
    with Counting() as other:
        begin = time.monotonic()
        act(silent)
        took = time.monotonic() - begin
        assert took > 0.5
        # Held, the lock would let it through once or twice.
        assert other.count > 10


@pytest.mark.parametrize("act", ACTS.values(), ids=ACTS)
def test_ctrl_c_ends_each_wait(silent, act):
    # The answer would be waited for half a minute.
    silent.waitUnit = 5000
    threading.Timer(0.2, os.kill, (os.getpid(), signal.SIGINT)).start()
    begin = time.monotonic()
    with pytest.raises(KeyboardInterrupt):
        act(silent)
    assert time.monotonic() - begin < SOON


def test_after_ctrl_c_the_next_exchange_has_its_own_answer(silent):
    threading.Timer(0.1, os.kill, (os.getpid(), signal.SIGINT)).start()
    with pytest.raises(KeyboardInterrupt):
        silent.SendCmd(":SYST:ERR?")
    silent.SendCmd("*IDN?")
    assert "ZAN" in silent.ResultStr


def test_ctrl_c_ends_a_search():
    zan = real_time()
    zan["optConnRS232"].click()
    threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT)).start()
    begin = time.monotonic()
    with pytest.raises(KeyboardInterrupt):
        zan.AutoConnect()
    assert time.monotonic() - begin < SOON
    assert not zan.isConnected


def elsewhere(function):
    """What the function returns or raises on another thread."""
    outcome = []

    def run():
        try:
            outcome.append(function())
        except Exception as raised:  # noqa: BLE001 - handed on
            outcome.append(raised)

    thread = threading.Thread(target=run)
    thread.start()
    thread.join()
    return outcome[0]


def test_another_thread_is_refused_with_a_clear_error(zan):
    control = zan["Text5"]
    for use in (
        lambda: zan.isConnected,
        lambda: zan.SendCmd("*IDN?"),
        lambda: zan["Text5"],
        lambda: control.text,
        control.click,
        lambda: zan.host.run_for(1),
        lambda: lumodevice.ZANCtrl(zan.host),
    ):
        raised = elsewhere(use)
        assert isinstance(raised, lumodevice.WrongThread)
        assert "belongs to the thread" in str(raised)
    assert zan.AutoConnect()


def test_another_thread_has_a_component_of_its_own():
    def run():
        with lumodevice.ZANCtrl(lumodevice.simulated_host(virtual_time=True)) as zan:
            return zan.AutoConnect()

    assert elsewhere(run) is True


def test_the_last_reference_may_go_on_another_thread(host):
    kept = [lumodevice.ZANCtrl(host)]
    assert kept[0].AutoConnect()
    elsewhere(kept.clear)
    with lumodevice.ZANCtrl(host) as next_one:
        assert next_one.AutoConnect()


def test_callbacks_run_on_the_thread_of_the_control(zan):
    threads = set()
    with zan.surface().observe(lambda control, what: threads.add(threading.get_ident())):
        assert zan.AutoConnect()
    assert threads == {threading.get_ident()}


def test_a_callback_may_use_and_close_the_control(zan):
    assert zan.AutoConnect()

    def use():
        zan.SendCmd(":FETC:VOLT?")
        zan.close()

    watching = zan["Command1"].on("click", use)
    zan["Command1"].click()
    assert zan.closed
    watching.end()
