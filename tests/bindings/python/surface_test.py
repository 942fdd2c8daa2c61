"""The panel's controls by name: as program code sets them, and as an operator uses them."""

import lumodevice
import pytest


def test_a_control_is_found_by_its_name_and_index(zan):
    assert zan["Text5"].text == "200"
    assert zan["cmdSet", 3] == zan["cmdSet(3)"]
    assert zan["cmdSet", 3].full_name == "cmdSet(3)"
    assert (zan["cmdSet", 3].name, zan["cmdSet", 3].index) == ("cmdSet", 3)
    assert zan["Text5"].index is None
    for missing in ("nothing", "cmdSet", "cmdSet(99)", ("cmdSet", 99)):
        with pytest.raises(KeyError):
            zan[missing]
    with pytest.raises(TypeError):
        zan[5]


def test_the_surface_is_a_mapping_of_all_controls(zan):
    surface = zan.surface()
    assert len(surface) == len(list(surface)) == len(surface.keys())
    assert "txtInput(28)" in surface
    assert ("txtInput", 28) in surface
    assert ("txtInput", 29) not in surface
    for name in surface:
        assert surface[name].full_name == name
        assert surface[name].kind


def test_properties_have_the_types_of_python(zan):
    assert zan["chkAutoQuery"].value == 0
    assert zan["optVISA"].value is True
    assert zan["Timer1"].interval == 200
    assert zan["cmbVolRange"].items == ["LOW", "HIGH"]
    assert zan["cmbVolRange"].list_count == 2
    assert zan["cmdSendCmd"].enabled is False
    assert zan["lblInput", 14].caption == "A Value(Ω)"
    assert zan["Text5"]["Text"] == "200"
    assert zan["Text5"]["TabIndex"].isdigit()
    assert zan["Text5"].container.name == "fraConsole"
    assert zan["ZANCtrl"].container is None
    assert "unit of all waits" in zan["Text5"].tool_tip


def test_setting_a_property_does_what_program_code_does(zan):
    assert zan.AutoConnect()
    zan["txtInput", 0].text = "1.5"
    assert zan["cmdSet", 0].click()
    zan.SendCmd(":CURR:STAT:L1?")
    assert float(zan.ResultStr) == 1.5
    zan["chkLoad"].value = 1
    zan.SendCmd(":LOAD?")
    assert zan.ResultStr == "1"


def test_what_a_control_has_not_is_an_attribute_error(zan):
    with pytest.raises(AttributeError):
        zan["Text5"].caption  # noqa: B018
    with pytest.raises(AttributeError):
        zan["cmbVolRange"]["ListCount"] = "5"
    with pytest.raises(AttributeError):
        zan["Text5"].items  # noqa: B018
    with pytest.raises(ValueError):
        zan["chkLoad"].value = 7
    with pytest.raises(AttributeError):
        zan["lblVoltage"].type("1")


def test_an_operator_cannot_use_what_is_disabled(zan):
    assert not zan["cmdSendCmd"].click()
    assert not zan["cmdSendCmd"].usable
    assert zan["Text2"].type(":FETC:VOLT?")
    assert zan["Text2"].text == ":FETC:VOLT?"
    assert zan["cmbVolRange"].select(1)
    assert zan["cmbVolRange"].text == "HIGH"
    assert zan["Text2"].press("Down")
    with pytest.raises(ValueError):
        zan["Text2"].press("Escape")


def test_a_channel_is_dragged_into_a_group(zan):
    assert zan.AutoConnect()
    zan["cmdParalle"].click()
    assert zan["List1"].drag("CH3", zan["List2"])
    assert zan["List2"].items == ["CH3"]
    with pytest.raises(TypeError):
        zan["Text2"].drag("CH3", zan["List2"])


def test_changes_are_told_while_the_subscription_is_kept(zan):
    told = []
    watching = zan.surface().observe(lambda control, what: told.append((control.full_name, what)))
    zan["Text5"].text = "150"
    assert told == [("Text5", "Text")]
    del watching
    zan["Text5"].text = "100"
    assert len(told) == 1
    with zan["Text5"].observe(lambda control, what: told.append(control.text)):
        zan["Text6"].text = "50"
        zan["Text5"].text = "90"
    assert told[1:] == ["90"]


def test_events_are_told_after_the_handler(zan):
    told = []
    kept = [
        zan["chkAutoQuery"].on("click", lambda: told.append(zan.AutoQuery)),
        zan["Text2"].on("change", lambda: told.append(zan["Text2"].text)),
        zan["Text2"].on("key", told.append),
        zan["Timer2"].on("tick", lambda: told.append("tick")),
    ]
    zan["chkAutoQuery"].click()
    zan["Text2"].type("x")
    zan["Text2"].press("Up")
    zan.host.run_for(0.04)
    assert told[:3] == [True, "x", "Up"] or told[0] is True
    assert "tick" in told
    with pytest.raises(ValueError):
        zan["Text2"].on("click", print)
    assert len(kept) == 4


def test_what_an_observer_raises_passes_through_and_the_control_goes_on(zan):
    def fail(control, what):
        raise ZeroDivisionError("mine")

    watching = zan["Text5"].observe(fail)
    with pytest.raises(ZeroDivisionError, match="mine"):
        zan["Text5"].text = "120"
    assert zan["Text5"].text == "120"
    watching.end()
    zan["Text5"].text = "130"
    assert zan.AutoConnect()


def test_what_a_callback_raises_in_the_midst_of_a_member_passes_through_it(zan):
    def fail(control, what):
        raise LookupError("in the midst")

    with zan["cmbChannel"].observe(fail), pytest.raises(LookupError):
        zan.AutoConnect()
    assert zan.AutoConnect()
    zan.SendCmd("*IDN?")
    assert "ZAN" in zan.ResultStr


def test_an_information_box_that_raises_passes_through(tmp_path):
    def box(text):
        raise RuntimeError(text)

    zan = lumodevice.ZANCtrl(lumodevice.simulated_host(virtual_time=True, information_box=box))
    with pytest.raises(RuntimeError, match="Pleace"):
        zan["Command1"].click()


def test_a_control_of_a_closed_component_says_so(zan):
    box = zan["Text5"]
    surface = zan.surface()
    zan.close()
    zan.close()
    assert zan.closed
    for use in (lambda: box.text, lambda: surface["Text5"], lambda: zan.ResultStr, box.click):
        with pytest.raises(RuntimeError, match="closed"):
            use()
    assert "closed" in repr(zan)
