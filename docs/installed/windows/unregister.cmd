@echo off
rem Unregisters the control of both widths: for all users, or with the word "user" for this one alone.
setlocal
set how=/s
if /i "%~1"=="user" set how=/s /n /i:user
set system=%SystemRoot%\System32
set failed=0
if exist "%SystemRoot%\SysWOW64\regsvr32.exe" (
  "%SystemRoot%\SysWOW64\regsvr32.exe" /u %how% "%~dp0x86\bin\LumoDevice.ocx" || set failed=1
  "%system%\regsvr32.exe" /u %how% "%~dp0x64\bin\LumoDevice.ocx" || set failed=1
) else (
  "%system%\regsvr32.exe" /u %how% "%~dp0x86\bin\LumoDevice.ocx" || set failed=1
)
if %failed%==0 (echo LumoDevice.ocx is unregistered.) else (echo LumoDevice.ocx could not be unregistered: for all users that needs an administrator.)
exit /b %failed%
