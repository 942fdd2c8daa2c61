// Runs the script of another host, as far as it is made of members, through the control.
//
//   cscript run_script.js SCRIPT OUTPUT

var files = new ActiveXObject("Scripting.FileSystemObject");
var output = files.CreateTextFile(WScript.Arguments.Item(1), true);
var script = files.OpenTextFile(WScript.Arguments.Item(0), 1);
var load = new ActiveXObject("LumoDevice.ZANCtrl");

function valueOf(word) {
    return word === "True" ? true : word === "False" ? false : word;
}

while (!script.AtEndOfStream) {
    var line = script.ReadLine();
    var words = /^(call|get|put) (\w+)(?: "?([^"]*)"?)?$/.exec(line);
    if (words) {
        var result;
        if (words[1] === "get") {
            result = load[words[2]];
        } else if (words[1] === "put") {
            result = load[words[2]] = valueOf(words[3]);
        } else if (words[3]) {
            result = load[words[2]](words[3]);
        } else {
            result = load[words[2]]();
        }
        output.WriteLine(line + " -> " + result);
    }
}
output.WriteLine("done");
output.Close();
WScript.Quit(7);
