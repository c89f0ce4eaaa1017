@echo off
rem Runs the tests of the rules and of the windows on this Windows and collects their output in report.txt.
rem Arguments are passed on to both, such as --gtest_filter=Tray*
setlocal
cd /d "%~dp0"
set REPORT=report.txt

echo Kardel on Windows> %REPORT%
ver>> %REPORT%
echo Processor: %PROCESSOR_ARCHITECTURE% %PROCESSOR_ARCHITEW6432%>> %REPORT%
reg query "HKLM\SOFTWARE\Microsoft\Windows NT\CurrentVersion" /v CurrentBuild>> %REPORT% 2>&1
reg query "HKCU\Control Panel\Desktop\WindowMetrics" /v AppliedDPI>> %REPORT% 2>&1
reg query "HKLM\SYSTEM\CurrentControlSet\Control\Nls\CodePage" /v ACP>> %REPORT% 2>&1

echo Exit Kardel first if it is running, and leave mouse and keyboard alone until this is done (a few minutes).
echo.>> %REPORT%
echo Rules>> %REPORT%
kardel_rules_tests.exe --gtest_brief=1 --gtest_color=no %*>> %REPORT% 2>&1
set RULES=%ERRORLEVEL%
echo.>> %REPORT%
echo Windows>> %REPORT%
kardel_window_tests.exe --gtest_brief=1 --gtest_color=no %*>> %REPORT% 2>&1
set WINDOWS=%ERRORLEVEL%

echo.>> %REPORT%
echo Rules ended with %RULES%, windows with %WINDOWS%; 0 is good.>> %REPORT%
echo Rules ended with %RULES%, windows with %WINDOWS%; 0 is good. All of it is in %~dp0%REPORT%
if not "%RULES%"=="0" exit /b 1
if not "%WINDOWS%"=="0" exit /b 1
exit /b 0
