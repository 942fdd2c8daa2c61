' Every member by its name, as VBScript passes arguments: variables by reference, expressions by value.
'
'   cscript members.vbs OUTPUT
Option Explicit

Dim files, output, load, text, flag
Set files = CreateObject("Scripting.FileSystemObject")
Set output = files.CreateTextFile(WScript.Arguments.Item(0), True)
Set load = CreateObject("LumoDevice.ZANCtrl")

Sub Tell(name, value)
  If VarType(value) = vbBoolean Then
    If value Then output.WriteLine name & " yes" Else output.WriteLine name & " no"
  Else
    output.WriteLine name & " " & value
  End If
End Sub

' The data members.
Tell "bDevAvaliable", load.bDevAvaliable
flag = True
load.bDevAvaliable = flag
Tell "bDevAvaliable", load.bDevAvaliable
load.bDevAvaliable = 0
Tell "bDevAvaliable", load.bDevAvaliable
text = "by reference"
load.IDN = text
Tell "IDN", load.IDN
load.IDN = "by" & " value"
Tell "IDN", load.IDN
Tell "devZAN is nothing", load.devZAN Is Nothing
Set load.devZAN = Nothing
Tell "devZAN is nothing", load.devZAN Is Nothing

' Without an instrument.
Tell "isConnected", load.isConnected
Tell "ChCount", load.ChCount
Tell "ConnStyle", load.ConnStyle
Tell "ErrMessage", load.ErrMessage
Tell "AutoQuery", load.AutoQuery

' With one.
Tell "AutoConnect", load.AutoConnect()
Tell "IDN", Left(load.IDN, 29)
Tell "isConnected", load.isConnected
Tell "ChCount", load.ChCount
Tell "ConnStyle", load.ConnStyle
load.ShowControl
text = ":CHAN 2"
load.SendCmd text
Tell "text", text
load.SendCmd ":CHAN" & "?"
Tell "ResultStr", Left(load.ResultStr, 1)
load.SendCmd (text)
Tell "ErrMessage", Left(load.ErrMessage, 1)
load.AutoQuery = True
Tell "AutoQuery", load.AutoQuery
flag = False
load.AutoQuery = flag
Tell "AutoQuery", load.AutoQuery
load.DisplayCmd = flag
load.DisplayCmd = Not flag
Tell "nextCmd", load.nextCmd()
Tell "GetSeqFile", load.GetSeqFile()
Tell "GetSysFile", load.GetSysFile()
Tell "SendSysFile", load.SendSysFile()
Tell "GetBMPFile", load.GetBMPFile()
text = "C:\elsewhere.dev"
Tell "GetPresetFile", load.GetPresetFile(text)
Tell "text", text
Tell "GetPresetFile", load.GetPresetFile("C:\" & "elsewhere.dev")
Tell "SetPresetFile", load.SetPresetFile()
load.ShowConnect
load.NotConnect
Tell "isConnected", load.isConnected

' What is wrong is an error of the language, and nothing else happens.
On Error Resume Next
load.SendCmd
Tell "no argument is an error", Err.Number <> 0
Err.Clear
load.SendCmd "a", "b"
Tell "two arguments are an error", Err.Number <> 0
Err.Clear
load.SendCmd Null
Tell "Null is an error", Err.Number <> 0
Err.Clear
load.AutoQuery = "neither"
Tell "a text for a flag is an error", Err.Number <> 0
Err.Clear
load.ResultStr = "x"
Tell "to write what is only read is an error", Err.Number <> 0
Err.Clear
load.Nothing_Of_That_Name
Tell "a member that there is not is an error", Err.Number <> 0
On Error Goto 0

Set load = Nothing
output.WriteLine "done"
output.Close
WScript.Quit 7
