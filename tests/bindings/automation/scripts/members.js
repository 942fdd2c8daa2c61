// Every member by its name, as JScript passes arguments.
//
//   cscript members.js OUTPUT

var files = new ActiveXObject("Scripting.FileSystemObject");
var output = files.CreateTextFile(WScript.Arguments.Item(0), true);
var load = new ActiveXObject("LumoDevice.ZANCtrl");

function tell(name, value) {
    output.WriteLine(name + " " + (value === true ? "yes" : value === false ? "no" : value));
}

function isError(act) {
    try {
        act();
        return false;
    } catch (error) {
        return true;
    }
}

// The data members.
tell("bDevAvaliable", load.bDevAvaliable);
var flag = true;
load.bDevAvaliable = flag;
tell("bDevAvaliable", load.bDevAvaliable);
load.bDevAvaliable = 0;
tell("bDevAvaliable", load.bDevAvaliable);
var text = "by reference";
load.IDN = text;
tell("IDN", load.IDN);
load.IDN = "by" + " value";
tell("IDN", load.IDN);
tell("devZAN is nothing", load.devZAN === null);
load.devZAN = null_object();
tell("devZAN is nothing", load.devZAN === null);

// What the control gives for nothing is nothing for the control.
function null_object() {
    return load.devZAN;
}

// Without an instrument.
tell("isConnected", load.isConnected);
tell("ChCount", load.ChCount);
tell("ConnStyle", load.ConnStyle);
tell("ErrMessage", load.ErrMessage);
tell("AutoQuery", load.AutoQuery);

// With one.
tell("AutoConnect", load.AutoConnect());
tell("IDN", load.IDN.substr(0, 29));
tell("isConnected", load.isConnected);
tell("ChCount", load.ChCount);
tell("ConnStyle", load.ConnStyle);
load.ShowControl();
text = ":CHAN 2";
load.SendCmd(text);
tell("text", text);
load.SendCmd(":CHAN" + "?");
tell("ResultStr", load.ResultStr.substr(0, 1));
load.SendCmd(text);
tell("ErrMessage", load.ErrMessage.substr(0, 1));
load.AutoQuery = true;
tell("AutoQuery", load.AutoQuery);
load.AutoQuery = false;
tell("AutoQuery", load.AutoQuery);
load.DisplayCmd = false;
load.DisplayCmd = true;
tell("nextCmd", load.nextCmd());
tell("GetSeqFile", load.GetSeqFile());
tell("GetSysFile", load.GetSysFile());
tell("SendSysFile", load.SendSysFile());
tell("GetBMPFile", load.GetBMPFile());
text = "C:\\elsewhere.dev";
tell("GetPresetFile", load.GetPresetFile(text));
tell("text", text);
tell("GetPresetFile", load.GetPresetFile("C:\\" + "elsewhere.dev"));
tell("SetPresetFile", load.SetPresetFile());
load.ShowConnect();
load.NotConnect();
tell("isConnected", load.isConnected);

// What is wrong is an error of the language, and nothing else happens.
tell("no argument is an error", isError(function () { load.SendCmd(); }));
tell("two arguments are an error", isError(function () { load.SendCmd("a", "b"); }));
tell("Null is an error", isError(function () { load.SendCmd(null); }));
tell("a text for a flag is an error", isError(function () { load.AutoQuery = "neither"; }));
tell("to write what is only read is an error", isError(function () { load.ResultStr = "x"; }));
tell("a member that there is not is an error", isError(function () { load.Nothing_Of_That_Name(); }));

output.WriteLine("done");
output.Close();
WScript.Quit(7);
