' Discharges a battery with a constant current down to a voltage, and logs it as CSV.
'
'   cscript //nologo discharge_logger.vbs FILE [CHANNEL AMPERES VOLTS [SECONDS]]
'
' Without more than a file: channel 3, 20 A down to 10.5 V, a line every 10 seconds. The load is switched off at the
' end, also when an answer stays away.
Option Explicit

Dim given, channel, current, lowest, every
Set given = WScript.Arguments
If given.Count < 1 Or given.Count = 2 Or given.Count = 3 Then
  WScript.Echo "usage: discharge_logger.vbs FILE [CHANNEL AMPERES VOLTS [SECONDS]]"
  WScript.Quit 2
End If
channel = "3"
current = "20"
lowest = 10.5
every = 10
If given.Count > 3 Then
  channel = given.Item(1)
  current = given.Item(2)
  lowest = Number(given.Item(3))
End If
If given.Count > 4 Then every = Number(given.Item(4))

Dim load
Set load = CreateObject("LumoDevice.ZANCtrl")
If Not load.AutoConnect() Then
  WScript.Echo "discharge_logger: no ZAN load found"
  WScript.Quit 1
End If

Dim file, begin, before, elapsed, volts, amperes, charge, answered
Set file = CreateObject("Scripting.FileSystemObject").CreateTextFile(given.Item(0), True)
file.WriteLine "seconds,volts,amperes,watts,ampere_hours"
load.SendCmd ":CHAN " & channel
load.SendCmd ":MODE CCH"
load.SendCmd ":CURR:STAT:L1 " & current
load.SendCmd ":LOAD ON"

begin = Timer
before = 0
charge = 0
Do
  answered = Ask(":FETC:CURR?", amperes)
  If answered Then answered = Ask(":FETC:VOLT?", volts)
  If Not answered Then Exit Do
  elapsed = Since(begin)
  charge = charge + amperes * (elapsed - before) / 3600
  before = elapsed
  file.WriteLine Plain(elapsed) & "," & Plain(volts) & "," & Plain(amperes) & "," & Plain(volts * amperes) & "," & _
                Plain(charge)
  If volts <= lowest Then Exit Do
  ' The answers have taken time as well.
  If every > Since(begin) - elapsed Then WScript.Sleep 1000 * (every - (Since(begin) - elapsed))
Loop
load.SendCmd ":LOAD OFF"
file.Close
If Not answered Then
  WScript.Echo "discharge_logger: the load did not answer"
  WScript.Quit 1
End If

' Whether an answer came, and its number.
Function Ask(query, value)
  load.SendCmd query
  Ask = load.ResultStr <> ""
  If Ask Then value = Number(load.ResultStr)
End Function

' The seconds since then; a day has 86400.
Function Since(moment)
  Since = Timer - moment
  If Since < 0 Then Since = Since + 86400
End Function

' The load and the file have decimal points, whatever this computer's language has.
Function Number(text)
  Dim trimmed
  trimmed = Trim(Replace(Replace(text, vbCr, ""), vbLf, ""))
  Number = CDbl(Replace(trimmed, ".", Mark))
End Function

Function Plain(value)
  Plain = Replace(CStr(value), Mark, ".")
End Function

Function Mark
  Mark = Mid(CStr(1.5), 2, 1)
End Function
