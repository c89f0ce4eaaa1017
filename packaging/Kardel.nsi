; The installer: for one user, without elevation, into the user's own programs folder, since the notes lie beside the
; program. It carries both programs and installs the one that fits the system.
;
;   makensis -DVERSION=1.28.0 -DPROGRAM64=... -DPROGRAM32=... -DROOT=... -DOUTPUT=... Kardel.nsi
;
; /S installs, or uninstalls, without a question; /D=folder as the last word chooses the folder.

Unicode true
ManifestDPIAware true
ManifestSupportedOS all
RequestExecutionLevel user
SetCompressor /SOLID lzma
SetDateSave off
CRCCheck force

!include MUI2.nsh
!include LogicLib.nsh
!include x64.nsh
!include FileFunc.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kardel"
!define LOG_ON_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
!define SETTINGS_KEY "Software\VB and VBA Program Settings\Kardel"
!define TRAY_CLASS "ThunderRT6FormDC"
!define TRAY_TITLE "kardel:trayicon"
!define COMMAND_EXIT 413
!define END_WITHIN 15000 ; ms that a running copy has to end in

Name "Kardel"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Kardel"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "Kardel ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Kardel"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Kardel sticky notes, setup"
VIAddVersionKey "CompanyName" "Kardel contributors"
VIAddVersionKey "LegalCopyright" "Kardel contributors"

!define MUI_ICON "${ROOT}/resources/Kardel.ico"
!define MUI_UNICON "${ROOT}/resources/Kardel.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${ROOT}/packaging/welcome.bmp"
!define MUI_ABORTWARNING
!define MUI_WELCOMEPAGE_TEXT "This installs Kardel ${VERSION}, sticky notes for the desktop, for you alone. \
No administrator is needed.$\r$\n$\r$\nYour notes are kept in the folder of the program. An older Kardel in that \
folder is replaced, the notes stay."
!define MUI_FINISHPAGE_RUN "$INSTDIR\Kardel.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start Kardel"

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Var wasRunning

; Ends the copy that runs from $INSTDIR, as its own Exit does: open edits are kept. A copy from another folder is
; nobody's business here. Afterwards $wasRunning says whether there was one.
!macro endRunningCopy prefix
Function ${prefix}endRunningCopy
    StrCpy $wasRunning no
    FindWindow $0 "${TRAY_CLASS}" "${TRAY_TITLE}"
    ${If} $0 == 0
        Return
    ${EndIf}
    System::Call 'user32::GetWindowThreadProcessId(p r0, *i .r1)'
    ; SYNCHRONIZE and PROCESS_QUERY_LIMITED_INFORMATION
    System::Call 'kernel32::OpenProcess(i 0x00101000, i 0, i r1) p .r2'
    ${If} $2 == 0
        Return
    ${EndIf}
    System::Call 'kernel32::QueryFullProcessImageNameW(p r2, i 0, w .r3, *i ${NSIS_MAX_STRLEN})'
    ${If} $3 == "$INSTDIR\Kardel.exe"
        StrCpy $wasRunning yes
        retry:
        System::Call 'user32::PostMessageW(p r0, i ${WM_COMMAND}, p ${COMMAND_EXIT}, p 0)'
        System::Call 'kernel32::WaitForSingleObject(p r2, i ${END_WITHIN}) i .r4'
        ${If} $4 != 0
            MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Kardel is still running. End it with the Exit of its \
icon beside the clock, then try again." /SD IDCANCEL IDRETRY retry
            System::Call 'kernel32::CloseHandle(p r2)'
            SetErrorLevel 2
            Abort
        ${EndIf}
    ${EndIf}
    System::Call 'kernel32::CloseHandle(p r2)'
FunctionEnd
!macroend
!insertmacro endRunningCopy ""
!insertmacro endRunningCopy "un."

Section
    SetOutPath "$INSTDIR"
    Call endRunningCopy
    SetOverwrite on
    ${If} ${RunningX64}
        File "/oname=Kardel.exe" "${PROGRAM64}"
    ${Else}
        File "/oname=Kardel.exe" "${PROGRAM32}"
    ${EndIf}
    File "/oname=LICENSE.txt" "${ROOT}/LICENSE"
    WriteUninstaller "$INSTDIR\Uninstall.exe"

    CreateShortcut "$SMPROGRAMS\Kardel.lnk" "$INSTDIR\Kardel.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Kardel"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Kardel.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Kardel contributors"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K /G=0" $0 $1 $2
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0

    ; Whoever had notes on the desktop has them there again; the finish page offers it to everybody else.
    ${If} $wasRunning == yes
        Exec '"$INSTDIR\Kardel.exe"'
    ${EndIf}
SectionEnd

; A data file, and what an interrupted write of it may have left.
!macro deleteData name
    Delete "$INSTDIR\${name}"
    Delete "$INSTDIR\${name}.tmp"
!macroend

Section "Uninstall"
    Call un.endRunningCopy

    ; Only the entry that starts this copy: another one may have put its own there.
    ReadRegStr $0 HKCU "${LOG_ON_KEY}" "Kardel"
    ${If} $0 == "$INSTDIR\Kardel.exe"
        DeleteRegValue HKCU "${LOG_ON_KEY}" "Kardel"
    ${EndIf}
    Delete "$INSTDIR\Kardel.exe"
    Delete "$INSTDIR\LICENSE.txt"
    Delete "$INSTDIR\Uninstall.exe"
    Delete "$SMPROGRAMS\Kardel.lnk"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"

    MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "Delete your notes and settings too?$\r$\n$\r$\nNo keeps them: \
a later Kardel in the same folder shows them again." /SD IDNO IDNO keepNotes
    !insertmacro deleteData KARDEL.HDR
    !insertmacro deleteData KARDEL.DAT
    !insertmacro deleteData MEMO
    !insertmacro deleteData KARDEL.TMP ; an edit that was never ended
    !insertmacro deleteData KARDEL121.DAT
    !insertmacro deleteData KARDEL122.DAT
    !insertmacro deleteData KARDEL125.DAT
    Delete "$INSTDIR\KARDEL.LOG"
    DeleteRegKey HKCU "${SETTINGS_KEY}"
    keepNotes:
    RMDir "$INSTDIR" ; goes only when nothing is left in it
SectionEnd
