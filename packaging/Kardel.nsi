; The installer. It works for one user, without elevation, and installs into the user's own programs folder, because the
; notes are kept beside the program. It carries both programs and installs the one that fits the system.
;
;   makensis -DVERSION=1.28.0 -DPROGRAM64=... -DPROGRAM32=... -DROOT=... -DOUTPUT=... [-DSIGN=command] Kardel.nsi
;
; /S installs or uninstalls without asking anything; /D=folder as the last argument chooses the folder.

Unicode true
ManifestDPIAware true
ManifestSupportedOS all
RequestExecutionLevel user
SetCompressor /SOLID lzma
SetDateSave off
CRCCheck force
!ifdef SIGN
    !uninstfinalize '"${SIGN}" "%1"'
!endif

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
!define END_WITHIN 15000 ; ms that a running copy is given to end

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
!define MUI_PAGE_CUSTOMFUNCTION_SHOW finishShown
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Var copy       ; path of a Kardel.exe that may be running
Var copyRuns   ; yes or no
Var wasRunning ; whether the copy that is replaced was running

; Whether $copy is running. If so, $0 is its hidden window and $2 a handle to its process, which the caller closes.
!macro findCopy prefix
Function ${prefix}findCopy
    StrCpy $copyRuns no
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
    ${If} $3 == $copy
        StrCpy $copyRuns yes
    ${Else}
        System::Call 'kernel32::CloseHandle(p r2)'
    ${EndIf}
FunctionEnd
!macroend
!insertmacro findCopy ""
!insertmacro findCopy "un."

; Ends the copy that runs from $copy as its own Exit does, so that open edits are kept. A copy from another folder is
; left alone. Afterwards $copyRuns says whether there was one.
!macro endCopy prefix
Function ${prefix}endCopy
    Call ${prefix}findCopy
    ${If} $copyRuns == no
        Return
    ${EndIf}
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
    System::Call 'kernel32::CloseHandle(p r2)'
FunctionEnd
!macroend
!insertmacro endCopy ""
!insertmacro endCopy "un."

; If a copy is running already, from whatever folder, a second one is not started: it would only say so.
Function finishShown
    FindWindow $0 "${TRAY_CLASS}" "${TRAY_TITLE}"
    ${If} $0 != 0
        SendMessage $mui.FinishPage.Run ${BM_SETCHECK} ${BST_UNCHECKED} 0
    ${EndIf}
FunctionEnd

; --- Notes of an older release

Var older     ; its folder when there are notes to copy, otherwise empty
Var redirected ; where Windows kept what it was not allowed to write there
Var copied    ; yes or no

; Looks into $older. What a program without a manifest wrote to a protected folder is in the user's VirtualStore.
Function lookInOlder
    ${If} $older == ""
    ${OrIf} $older == $INSTDIR
        StrCpy $older ""
        Return
    ${EndIf}
    StrCpy $redirected $older "" 2 ; without the drive
    StrCpy $redirected "$LOCALAPPDATA\VirtualStore$redirected"
    ${IfNot} ${FileExists} "$older\KARDEL.DAT"
    ${AndIfNot} ${FileExists} "$redirected\KARDEL.DAT"
        StrCpy $older ""
    ${EndIf}
FunctionEnd

; Looks where Kardel was started from at log-on so far, and where its setup would have put it.
Function findOlder
    StrCpy $older ""
    ReadRegStr $0 HKCU "${SETTINGS_KEY}\setting" "UseRegistry"
    ; Notes in the registry need no copying, and notes that are here already stay.
    ${If} $0 == "True"
    ${OrIf} $0 == "1"
    ${OrIf} $0 == "-1"
    ${OrIf} $0 == "yes"
    ${OrIf} ${FileExists} "$INSTDIR\KARDEL.DAT"
        Return
    ${EndIf}
    ReadRegStr $0 HKCU "${LOG_ON_KEY}" "Kardel"
    StrCpy $1 $0 1
    ${If} $1 == '"'
        StrCpy $0 $0 -1 1
    ${EndIf}
    ${GetParent} "$0" $older
    Call lookInOlder
    ${If} $older == ""
        StrCpy $older "$PROGRAMFILES32\Kardel"
        Call lookInOlder
    ${EndIf}
    ${If} $older == ""
        StrCpy $older "$PROGRAMFILES64\Kardel"
        Call lookInOlder
    ${EndIf}
FunctionEnd

; Copies one of its files, named in $0. A file that Windows redirected is the newer one.
Function copyOlder
    ${If} ${FileExists} "$redirected\$0"
        StrCpy $1 "$redirected\$0"
    ${ElseIf} ${FileExists} "$older\$0"
        StrCpy $1 "$older\$0"
    ${Else}
        Return
    ${EndIf}
    System::Call 'kernel32::CopyFileW(w r1, w "$INSTDIR\$0", i 1) i .r2'
    ${If} $2 == 0
        StrCpy $copied no
    ${EndIf}
FunctionEnd

Function takeOlder
    Call findOlder
    ${If} $older == ""
        Return
    ${EndIf}
    StrCpy $copy "$older\Kardel.exe"
    Call findCopy
    ${If} $copyRuns == yes
        System::Call 'kernel32::CloseHandle(p r2)'
        ${If} ${Silent} ; there is nobody to ask whether it may be ended
            Return
        ${EndIf}
    ${EndIf}
    MessageBox MB_YESNO|MB_ICONQUESTION "There are notes of another Kardel in$\r$\n$older$\r$\n$\r$\nCopy them to the \
one that is installed now? They stay where they are, too." /SD IDYES IDNO leave
    Call endCopy
    StrCpy $copied yes
    ${If} ${FileExists} "$INSTDIR\MEMO"
        StrCpy $copied no ; it may hold texts of lost notes: nothing is written over them
    ${Else}
        StrCpy $0 "MEMO"
        Call copyOlder
        ${If} $copied == yes
            StrCpy $0 "KARDEL.HDR"
            Call copyOlder
        ${EndIf}
        ${If} $copied == yes
            StrCpy $0 "KARDEL.DAT" ; last, as only this file makes them notes
            Call copyOlder
        ${EndIf}
        ${If} $copied == no
            Delete "$INSTDIR\MEMO"
            Delete "$INSTDIR\KARDEL.HDR"
        ${EndIf}
    ${EndIf}
    ${If} $copied == no
        MessageBox MB_OK|MB_ICONEXCLAMATION "The notes could not be copied. They are still in$\r$\n$older" /SD IDOK
    ${EndIf}
    leave:
FunctionEnd

; Sets $0 to whether the 64-bit program can run here. On another kind of processor it runs only where Windows emulates
; it, as Windows 11 on ARM does; the function that tells is as old as that ability.
Function runs64
    StrCpy $0 no
    ${If} ${IsNativeAMD64}
        StrCpy $0 yes
    ${Else}
        StrCpy $1 0
        System::Call 'kernel32::GetMachineTypeAttributes(i 0x8664, *i 0 .r1) i .r2'
        IntOp $1 $1 & 1 ; for ordinary programs
        ${If} $2 == 0
        ${AndIf} $1 == 1
            StrCpy $0 yes
        ${EndIf}
    ${EndIf}
FunctionEnd

Section
    SetOutPath "$INSTDIR"
    StrCpy $copy "$INSTDIR\Kardel.exe"
    Call endCopy
    StrCpy $wasRunning $copyRuns
    Call takeOlder
    SetOverwrite on
    Call runs64
    ${If} $0 == yes
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

    ; Kardel runs again if it ran before; where there is a finish page, that page starts it.
    ${If} $wasRunning == yes
    ${AndIf} ${Silent}
        Exec '"$INSTDIR\Kardel.exe"'
    ${EndIf}
SectionEnd

; Deletes a data file, and what an interrupted write of it may have left.
!macro deleteData name
    Delete "$INSTDIR\${name}"
    Delete "$INSTDIR\${name}.tmp"
!macroend

Section "Uninstall"
    StrCpy $copy "$INSTDIR\Kardel.exe"
    Call un.endCopy

    ; Only the entry that starts this copy, as another copy may have replaced it with its own.
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
    RMDir "$INSTDIR" ; succeeds only when nothing is left in it
SectionEnd
