// Discharges a battery with a constant current down to a voltage, and logs it as CSV.
//
//   cscript //nologo discharge_logger.js FILE [CHANNEL AMPERES VOLTS [SECONDS]]
//
// Without more than a file: channel 3, 20 A down to 10.5 V, a line every 10 seconds. The load is switched off at the
// end, also when an answer stays away.

var given = WScript.Arguments;
if (given.Count() < 1 || given.Count() === 2 || given.Count() === 3) {
    WScript.Echo("usage: discharge_logger.js FILE [CHANNEL AMPERES VOLTS [SECONDS]]");
    WScript.Quit(2);
}
var channel = given.Count() > 3 ? given.Item(1) : "3";
var current = given.Count() > 3 ? given.Item(2) : "20";
var lowest = given.Count() > 3 ? parseFloat(given.Item(3)) : 10.5;
var every = given.Count() > 4 ? parseFloat(given.Item(4)) : 10;

var load = new ActiveXObject("LumoDevice.ZANCtrl");
if (!load.AutoConnect()) {
    WScript.Echo("discharge_logger: no ZAN load found");
    WScript.Quit(1);
}

// NaN when no answer came.
function ask(query) {
    load.SendCmd(query);
    return parseFloat(load.ResultStr);
}

function seconds() {
    return new Date().getTime() / 1000;
}

var log = new ActiveXObject("Scripting.FileSystemObject").CreateTextFile(given.Item(0), true);
log.WriteLine("seconds,volts,amperes,watts,ampere_hours");
load.SendCmd(":CHAN " + channel);
load.SendCmd(":MODE CCH");
load.SendCmd(":CURR:STAT:L1 " + current);
load.SendCmd(":LOAD ON");

var begin = seconds();
var before = 0;
var charge = 0;
var answered = false;
for (;;) {
    var amperes = ask(":FETC:CURR?");
    var volts = isNaN(amperes) ? NaN : ask(":FETC:VOLT?");
    answered = !isNaN(volts);
    if (!answered) {
        break;
    }
    var time = seconds() - begin;
    charge += amperes * (time - before) / 3600;
    before = time;
    log.WriteLine([time, volts, amperes, volts * amperes, charge].join(","));
    if (volts <= lowest) {
        break;
    }
    // The answers have taken time as well.
    var left = every - (seconds() - begin - time);
    if (left > 0) {
        WScript.Sleep(1000 * left);
    }
}
load.SendCmd(":LOAD OFF");
log.Close();
if (!answered) {
    WScript.Echo("discharge_logger: the load did not answer");
    WScript.Quit(1);
}
