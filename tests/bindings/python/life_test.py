"""Components come and go: nothing is left behind."""

import gc
import os
import resource
import sys
import weakref

import lumodevice


def peak():
    """kB that the process has had at most."""
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss


def cycles():
    """Ten thousand take most of a minute, and with the sanitizers ten."""
    if "LUMODEVICE_LONG_TESTS" in os.environ:
        return 10_000
    return 200 if "SANITIZED" in os.environ else 1000


def test_components_come_and_go_without_growth(tmp_path):
    def cycle():
        host = lumodevice.simulated_host(
            virtual_time=True, drive_c=str(tmp_path), information_box=lambda text: None
        )
        zan = lumodevice.ZANCtrl(host)
        told = []
        # A cycle through C++: the subscription's observer knows who keeps it.
        zan_kept = [zan["Text5"].observe(lambda control, what: told.append((zan_kept, control)))]
        zan["Text5"].text = "10"
        assert told

    for _ in range(200):
        cycle()
    gc.collect()
    before, objects = peak(), len(gc.get_objects())
    for _ in range(cycles()):
        cycle()
    gc.collect()
    assert abs(len(gc.get_objects()) - objects) < 100
    # The sanitizers keep a record of each place that asks for memory.
    assert peak() - before < (10_000 if "SANITIZED" in os.environ else 2000)


def test_a_cycle_of_a_component_and_its_observers_is_collected():
    class Host:
        def __init__(self):
            self.host = lumodevice.simulated_host(virtual_time=True, information_box=self.show)
            self.zan = lumodevice.ZANCtrl(self.host)
            self.watching = self.zan.surface().observe(self.changed)

        def show(self, text):
            pass

        def changed(self, control, what):
            pass

    made = Host()
    gone = weakref.ref(made)
    del made
    gc.collect()
    assert gone() is None


def test_a_subscription_may_outlive_its_component(zan):
    watching = zan["Text5"].observe(print)
    zan.close()
    watching.end()
    watching.end()


def test_a_failed_construction_leaves_nothing(tmp_path):
    for _ in range(100):
        try:
            lumodevice.simulated_host(sources=["nonsense"])
        except ValueError:
            pass
    gc.collect()
    assert not [one for one in gc.get_objects() if type(one) is lumodevice.Host]


def test_a_control_keeps_its_component(host):
    control = lumodevice.ZANCtrl(host)["Text5"]
    gc.collect()
    assert control.text == "200"
    assert sys.getrefcount(control) == 2
