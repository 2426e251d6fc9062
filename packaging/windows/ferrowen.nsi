; The Windows setup. make_packages.sh gives VERSION, TREE (folder with the files), LIST (their list), SIZE_KB,
; SOURCE (top folder of the sources) and OUTPUT.
;
; Switches: /S silent, /AllUsers or /CurrentUser, /DesktopLink, /NoScripts, /D=FOLDER (last, without quotes).
; Exit status: 0 done, 1 cancelled, 2 stopped by the system, and of our own:
!define STATUS_RUNNING 3
!define STATUS_OLDER 4
!define STATUS_NOT_WRITABLE 5
!define STATUS_NO_ROOM 6
!define STATUS_NO_ADMINISTRATOR 7
!define STATUS_ELSEWHERE 8
!define STATUS_ROLLED_BACK 9
!define STATUS_OLD_SYSTEM 10
!define STATUS_LEFT_OVER 11

Unicode true
SetCompressor /SOLID lzma
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include TextFunc.nsh
!include WordFunc.nsh
!include WinVer.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Ferrowen"
!define SETUP_KEY "Software\Ferrowen\Setup"
!define SCRIPT_CLASS "Ferrowen.Script"
!define MARKER "for-all-users.txt"
!define LIST_NAME "installed-files.txt"

Name "Ferrowen"
OutFile "${OUTPUT}"
RequestExecutionLevel user
ManifestDPIAware true
ManifestLongPathAware true
BrandingText "Ferrowen ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Ferrowen"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Ferrowen setup"
VIAddVersionKey CompanyName "The Ferrowen developers"
VIAddVersionKey LegalCopyright "Copyright (c) 2026 The Ferrowen developers. MIT licence."

Var users        ; "all" or "current"
Var users_given  ; the command line said which
Var folder_given ; folder of /D=
Var earlier      ; folder of an earlier installation for these users; "" when there is none
Var other        ; the same for the other choice of users
Var made_folder  ; this setup made the folder
Var stage        ; "", "copying", "swapping": what there is to roll back
Var problem
Var problem_status
Var from
Var to
Var list

!define MUI_ICON "${SOURCE}/packaging/windows/ferrowen.ico"
!define MUI_UNICON "${SOURCE}/packaging/windows/ferrowen.ico"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC ; long names have room
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION start_program
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${TREE}/licences/Ferrowen.txt"
Page custom show_users leave_users
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_PAGE_CUSTOMFUNCTION_PRE skip_known_folder
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE leave_folder
!define MUI_DIRECTORYPAGE_VERIFYONLEAVE ; a folder that cannot be used gets words, not a grey button
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
; The first one is for every other language of the system.
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE German
!insertmacro MUI_LANGUAGE French
!include texts.nsh

; ---- What setup and uninstaller share

; The parts of the registry and the menus that belong to this choice.
!macro use_context
  SetRegView 64
  ${If} $users == all
    SetShellVarContext all
  ${Else}
    SetShellVarContext current
  ${EndIf}
!macroend

!macro shared_functions un
; Puts "busy" into $0 when a program of the folder $from runs: the system lets nobody write to its file.
Function ${un}look_for_running
  StrCpy $0 ""
  !insertmacro look_at "ferrowen6.exe"
  !insertmacro look_at "ferrowen.exe"
  !insertmacro look_at "ferrowen-contours.exe"
FunctionEnd

; Asks until no program runs any more. $0 is "busy" when the person gives up.
Function ${un}wait_for_end
  ${Do}
    Call ${un}look_for_running
    ${If} $0 == ""
      ${ExitDo}
    ${EndIf}
  ${LoopUntil} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(close_and_retry)" /SD IDCANCEL IDCANCEL`
FunctionEnd

; Puts the next name of the list into $1: a file, or a folder with "\" at its end. "" at the end of the list.
Function ${un}next_name
  ${Do}
    StrCpy $1 ""
    ClearErrors
    FileReadUTF16LE $list $1
    ${If} ${Errors}
      ClearErrors
      StrCpy $1 ""
      Return
    ${EndIf}
    ${TrimNewLines} $1 $1
    ; No name of the list leads out of the folder.
    ${WordFind} $1 ".." "E+1{" $2
    ${If} ${Errors}
      ${WordFind} $1 ":" "E+1{" $2
      ${If} ${Errors}
      ${AndIf} $1 != ""
        ClearErrors
        Return
      ${EndIf}
    ${EndIf}
  ${Loop}
FunctionEnd

; Removes the folders of the list $0 from $from where they are empty.
Function ${un}remove_empty_folders
  FileOpen $list "$0" r
  ${Do}
    Call ${un}next_name
    ${If} $1 == ""
      ${ExitDo}
    ${EndIf}
    StrCpy $2 $1 1 -1
    ${If} $2 == "\"
      StrCpy $1 $1 -1
      RMDir "$from\$1"
    ${EndIf}
  ${Loop}
  FileClose $list
  ClearErrors
FunctionEnd

!macroend

!macro look_at name
  ${If} ${FileExists} "$from\${name}"
    ; Reading and writing, shared with everybody, only when it exists.
    System::Call 'kernel32::CreateFileW(w "$from\${name}", i 0xC0000000, i 7, p 0, i 3, i 0, p 0) p.r1 ?e'
    Pop $2
    ${If} $1 == -1
      ${If} $2 == 32 ; sharing violation
        StrCpy $0 busy
      ${EndIf}
    ${Else}
      System::Call 'kernel32::CloseHandle(p r1)'
    ${EndIf}
  ${EndIf}
!macroend

!insertmacro shared_functions ""
!insertmacro shared_functions "un."

; ---- Checks: each leaves its words in $problem, or nothing

Function check_running
  StrCpy $from $INSTDIR
  Call wait_for_end
  ${If} $0 == busy
    StrCpy $problem "$(is_running)"
    StrCpy $problem_status ${STATUS_RUNNING}
  ${EndIf}
FunctionEnd

Function check_version
  StrCpy $3 ""
  ${If} $earlier == $INSTDIR
    ReadRegStr $3 SHCTX "${UNINSTALL_KEY}" DisplayVersion
  ${EndIf}
  ${If} $3 == "" ; not installed by a setup, but it may lie there
    GetDLLVersion "$INSTDIR\ferrowen6.exe" $0 $1
    IntOp $2 $0 >> 16
    IntOp $0 $0 & 0xFFFF
    IntOp $1 $1 >> 16
    StrCpy $3 "$2.$0.$1"
    ClearErrors
  ${EndIf}
  ${VersionCompare} "${VERSION}" "$3" $0
  ${If} $0 == 2
    StrCpy $problem "$(is_older)"
    StrCpy $problem_status ${STATUS_OLDER}
  ${EndIf}
FunctionEnd

; One installation on a computer: settings in two places would look lost.
Function check_one_place
  ${If} $earlier != ""
  ${AndIf} $earlier != $INSTDIR
    StrCpy $problem "$(is_elsewhere)"
    StrCpy $problem_status ${STATUS_ELSEWHERE}
  ${EndIf}
  ${If} $earlier == ""
  ${AndIf} $other != ""
    ${If} $users == all
      StrCpy $problem "$(is_for_me)"
    ${Else}
      StrCpy $problem "$(is_for_all)"
    ${EndIf}
    StrCpy $problem_status ${STATUS_ELSEWHERE}
  ${EndIf}
FunctionEnd

; Makes the folder, and leaves it when there is no problem.
Function check_folder
  StrCpy $made_folder ""
  ${IfNot} ${FileExists} "$INSTDIR\*.*"
    StrCpy $made_folder yes
  ${EndIf}
  CreateDirectory "$INSTDIR\setup-new"
  ClearErrors
  FileOpen $0 "$INSTDIR\setup-new\try" w
  ${If} ${Errors}
    StrCpy $problem "$(is_not_writable)"
    StrCpy $problem_status ${STATUS_NOT_WRITABLE}
  ${Else}
    FileClose $0
    Delete "$INSTDIR\setup-new\try"
    Call check_room
  ${EndIf}
  RMDir "$INSTDIR\setup-new"
  ${If} $problem != ""
  ${AndIf} $made_folder == yes
    RMDir "$INSTDIR"
  ${EndIf}
FunctionEnd

Function check_room
  ; Two megabytes more than the files, for the uninstaller and the disk's own books.
  IntOp $1 ${SIZE_KB} + 2048
  System::Int64Op $1 * 1024
  Pop $2
  System::Call 'kernel32::GetDiskFreeSpaceExW(w "$INSTDIR", *l .r3, p 0, p 0) i.r0'
  ${If} $0 = 0
    Return ; a volume that does not tell; writing will
  ${EndIf}
  System::Int64Op $3 < $2
  Pop $0
  ${If} $0 = 1
    System::Int64Op $3 / 1048576
    Pop $3
    System::Int64Op $2 / 1048576
    Pop $2
    StrCpy $problem "$(is_too_full)"
    StrCpy $problem_status ${STATUS_NO_ROOM}
  ${EndIf}
FunctionEnd

!macro check_next name
  ${If} $problem == ""
    Call ${name}
  ${EndIf}
!macroend

Function check_all
  StrCpy $problem ""
  !insertmacro check_next check_one_place
  !insertmacro check_next check_version
  !insertmacro check_next check_running
  !insertmacro check_next check_folder
FunctionEnd

; ---- Start and pages

Function choose_users
  !insertmacro use_context
  ReadRegStr $earlier HKCU "${UNINSTALL_KEY}" InstallLocation
  ReadRegStr $other HKLM "${UNINSTALL_KEY}" InstallLocation
  ${If} $users == all
    StrCpy $0 $earlier
    StrCpy $earlier $other
    StrCpy $other $0
  ${EndIf}
  ${If} $folder_given != ""
    StrCpy $INSTDIR $folder_given
  ${ElseIf} $earlier != ""
    StrCpy $INSTDIR $earlier
  ${ElseIf} $users == all
    StrCpy $INSTDIR "$PROGRAMFILES64\Ferrowen"
  ${Else}
    StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Ferrowen"
  ${EndIf}
FunctionEnd

; For all users only an administrator can install: the setup starts itself again as one.
Function become_administrator
  UserInfo::GetAccountType
  Pop $0
  ${If} $0 == Admin
    Return
  ${EndIf}
  SetErrorLevel ${STATUS_NO_ADMINISTRATOR}
  ${IfNot} ${Silent}
    ClearErrors
    ${GetParameters} $R0
    StrCpy $R0 "/AllUsers $R0"
    ${If} $folder_given != ""
      StrCpy $R0 "$R0 /D=$folder_given" ; must be the last
    ${EndIf}
    ExecShell runas "$EXEPATH" "$R0"
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "$(only_administrator)"
      Return
    ${EndIf}
    SetErrorLevel 0
  ${EndIf}
  Quit
FunctionEnd

Function .onInit
  StrCpy $problem ""
  Call check_system
  !insertmacro check_next look_for_folder
  ${If} $problem != ""
    Call refuse
  ${EndIf}
  StrCpy $users current
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/CurrentUser" $0
  ${IfNot} ${Errors}
    StrCpy $users_given yes
  ${EndIf}
  ClearErrors
  ${GetOptions} $R0 "/AllUsers" $0
  ${IfNot} ${Errors}
    StrCpy $users_given yes
    StrCpy $users all
  ${EndIf}
  ${If} $users_given == ""
    Call choose_earlier_users
  ${EndIf}
  Call choose_users
  Call check_earlier
  ${If} $users == all
    Call become_administrator
  ${EndIf}
  Call preset_choices
FunctionEnd

; Below it the programs would not get their texts in UTF-8.
Function check_system
  ${IfNot} ${AtLeastBuild} 18362
    StrCpy $problem "$(is_old_system)"
    StrCpy $problem_status ${STATUS_OLD_SYSTEM}
  ${EndIf}
FunctionEnd

; A folder that cannot be one is silently dropped before the setup sees it.
Function look_for_folder
  StrCpy $folder_given $INSTDIR
  System::Call 'kernel32::GetCommandLineW() w .r0'
  ClearErrors
  ${WordFind} "$0" " /D=" "E+1}" $1
  ${IfNot} ${Errors}
  ${AndIf} $folder_given == ""
    StrCpy $INSTDIR $1
    StrCpy $problem "$(is_not_writable)"
    StrCpy $problem_status ${STATUS_NOT_WRITABLE}
  ${EndIf}
  ClearErrors
FunctionEnd

; A newer version is for those that the older one is for.
Function choose_earlier_users
  SetRegView 64
  ReadRegStr $0 HKCU "${UNINSTALL_KEY}" InstallLocation
  ReadRegStr $1 HKLM "${UNINSTALL_KEY}" InstallLocation
  ${If} $0 == ""
  ${AndIf} $1 != ""
    StrCpy $users all
    StrCpy $users_given yes
  ${ElseIf} $0 != ""
    StrCpy $users_given yes
  ${EndIf}
FunctionEnd

Function refuse
  SetErrorLevel $problem_status
  MessageBox MB_OK|MB_ICONEXCLAMATION "$problem" /SD IDOK
  Quit
FunctionEnd

; What an earlier installation forbids is told before the first page.
Function check_earlier
  StrCpy $problem ""
  Call check_one_place
  ${If} $earlier != ""
    !insertmacro check_next check_version
    !insertmacro check_next check_running
  ${EndIf}
  ${If} $problem != ""
    Call refuse
  ${EndIf}
FunctionEnd

Function show_users
  ${If} $users_given == yes
    Abort
  ${EndIf}
  !insertmacro MUI_HEADER_TEXT "$(users_title)" "$(users_question)"
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 10u 100% 12u "$(only_me)"
  Pop $R1
  ${NSD_CreateLabel} 12u 24u 95% 20u "$(only_me_folders)"
  Pop $0
  ${NSD_CreateRadioButton} 0 50u 100% 12u "$(all_users)"
  Pop $R2
  ${NSD_CreateLabel} 12u 64u 95% 20u "$(all_users_folders)"
  Pop $0
  ${If} $users == all
    ${NSD_Check} $R2
  ${Else}
    ${NSD_Check} $R1
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function leave_users
  ${NSD_GetState} $R2 $0
  ${If} $0 == ${BST_CHECKED}
    StrCpy $users all
    Call become_administrator
  ${Else}
    StrCpy $users current
  ${EndIf}
  Call choose_users
  Call preset_choices
FunctionEnd

; A newer version goes where the older one is.
Function skip_known_folder
  ${If} $earlier == ""
    Return
  ${EndIf}
  Call leave_folder
  Abort
FunctionEnd

Function leave_folder
  GetInstDirError $0
  ${If} $0 = 1 ; no such drive, or no absolute path
    StrCpy $problem "$(is_not_writable)"
    StrCpy $problem_status ${STATUS_NOT_WRITABLE}
  ${Else}
    Call check_all
  ${EndIf}
  ${If} $problem != ""
    MessageBox MB_OK|MB_ICONEXCLAMATION "$problem"
    ${If} $earlier != ""
      SetErrorLevel $problem_status
      Quit
    ${EndIf}
    Abort
  ${EndIf}
  ${If} $made_folder == yes
    RMDir "$INSTDIR"
  ${EndIf}
FunctionEnd

Function start_program
  ; Through the desktop, so that it does not run with an administrator's rights.
  Exec '"$WINDIR\explorer.exe" "$INSTDIR\ferrowen6.exe"'
FunctionEnd

; ---- Files: copied beside the old ones, then exchanged with them, and put back when that fails

; Moves the files of the list $0 from $from to $to; what is not there is passed over. Errors flag: one failed.
Function move_listed
  StrCpy $R9 ""
  FileOpen $list "$0" r
  ${Do}
    Call next_name
    ${If} $1 == ""
      ${ExitDo}
    ${EndIf}
    StrCpy $2 $1 1 -1
    ${If} $2 != "\"
    ${AndIf} ${FileExists} "$from\$1"
      ${GetParent} "$to\$1" $2
      CreateDirectory "$2"
      ClearErrors
      Rename "$from\$1" "$to\$1"
      ${If} ${Errors}
        StrCpy $R9 failed
      ${EndIf}
    ${EndIf}
  ${Loop}
  FileClose $list
  ClearErrors
  ${If} $R9 == failed
    SetErrors
  ${EndIf}
FunctionEnd

; Where a file of a list has been moved to $INSTDIR already, there is none in $from, so none goes twice.
Function roll_back
  ${If} $stage == ""
    Return
  ${EndIf}
  SetOutPath "$TEMP"
  ${If} $stage == swapping
    StrCpy $from $INSTDIR
    StrCpy $to "$INSTDIR\setup-new"
    StrCpy $0 "$PLUGINSDIR\new.txt"
    Call move_listed ; what is still there keeps its new file from being moved
    StrCpy $0 "$PLUGINSDIR\new.txt"
    Call remove_empty_folders
    StrCpy $from "$INSTDIR\setup-old"
    StrCpy $to $INSTDIR
    StrCpy $0 "$PLUGINSDIR\new.txt"
    Call move_listed
    StrCpy $0 "$PLUGINSDIR\old.txt"
    Call move_listed
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "$(not_put_back)" /SD IDOK
    ${Else}
      RMDir /r "$INSTDIR\setup-old"
    ${EndIf}
  ${EndIf}
  RMDir /r "$INSTDIR\setup-new"
  ${If} $made_folder == yes
    RMDir "$INSTDIR"
  ${EndIf}
  StrCpy $stage ""
FunctionEnd

; Ends the setup with $problem after everything has been put back.
Function stop
  SetErrorLevel $problem_status
  Call roll_back
  MessageBox MB_OK|MB_ICONSTOP "$problem" /SD IDOK
  Abort
FunctionEnd

Function stop_when_failed
  ${If} ${Errors}
    StrCpy $problem "$(not_written)"
    StrCpy $problem_status ${STATUS_ROLLED_BACK}
    Call stop
  ${EndIf}
FunctionEnd

Function .onInstFailed
  ${If} $stage != ""
    SetErrorLevel ${STATUS_ROLLED_BACK}
    Call roll_back
  ${EndIf}
FunctionEnd

; All files into setup-new, in the same folder and so on the same disk.
Function copy_files
  StrCpy $stage copying
  ClearErrors
  SetOverwrite try
  SetOutPath "$INSTDIR\setup-new"
  File /r "${TREE}/*"
  File "/oname=${LIST_NAME}" "${LIST}"
  WriteUninstaller "$INSTDIR\setup-new\uninstall.exe"
  ${If} $users == all
    FileOpen $0 "${MARKER}" w
    FileWrite $0 "Ferrowen is installed for all users here: each one's files are in his own folder.$\r$\n"
    FileClose $0
    FileOpen $0 "${LIST_NAME}" a
    FileSeek $0 0 END
    FileWriteUTF16LE $0 "${MARKER}$\r$\n"
    FileClose $0
  ${EndIf}
  SetOutPath "$TEMP"
  Call stop_when_failed
FunctionEnd

Function swap_files
  ; A setup that was cut off left the older files there.
  ${If} ${FileExists} "$INSTDIR\setup-old\*.*"
    StrCpy $0 "$INSTDIR\setup-new\${LIST_NAME}"
    StrCpy $from "$INSTDIR\setup-old"
    StrCpy $to $INSTDIR
    Call move_listed
    RMDir /r "$INSTDIR\setup-old"
  ${EndIf}
  ; The lists are read elsewhere while they are moved themselves.
  ClearErrors
  CopyFiles /SILENT "$INSTDIR\setup-new\${LIST_NAME}" "$PLUGINSDIR\new.txt"
  Call stop_when_failed
  CopyFiles /SILENT "$INSTDIR\${LIST_NAME}" "$PLUGINSDIR\old.txt"
  StrCpy $stage swapping
  StrCpy $from $INSTDIR
  StrCpy $to "$INSTDIR\setup-old"
  ; A file of an earlier version that the new one has no more goes too.
  StrCpy $0 "$PLUGINSDIR\old.txt"
  Call move_listed
  Call stop_when_failed
  StrCpy $0 "$PLUGINSDIR\new.txt"
  Call move_listed
  Call stop_when_failed
  StrCpy $0 "$PLUGINSDIR\old.txt"
  Call remove_empty_folders
  StrCpy $from "$INSTDIR\setup-new"
  StrCpy $to $INSTDIR
  StrCpy $0 "$PLUGINSDIR\new.txt"
  Call move_listed
  Call stop_when_failed
FunctionEnd

Function write_uninstall_entry
  ClearErrors
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "Ferrowen"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "The Ferrowen developers"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\ferrowen6.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize ${SIZE_KB}
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
  ${If} ${Errors}
  ${AndIf} $earlier == ""
    DeleteRegKey SHCTX "${UNINSTALL_KEY}"
    SetErrors
  ${EndIf}
FunctionEnd

Section "Ferrowen" section_programs
  SectionIn RO
  AddSize ${SIZE_KB} ; what functions install is not counted by itself
  InitPluginsDir
  Call check_all
  ${If} $problem != ""
    Call stop
  ${EndIf}
  Call copy_files
  Call swap_files
  Call write_uninstall_entry
  Call stop_when_failed
  StrCpy $stage ""
  RMDir /r "$INSTDIR\setup-new"
  RMDir /r "$INSTDIR\setup-old"
  SetOutPath "$INSTDIR" ; the folder that the link starts in
  CreateShortcut "$SMPROGRAMS\Ferrowen.lnk" "$INSTDIR\ferrowen6.exe"
SectionEnd

Section "$(scripts)" section_scripts
  WriteRegStr SHCTX "Software\Classes\${SCRIPT_CLASS}" "" "$(script_class)"
  WriteRegStr SHCTX "Software\Classes\${SCRIPT_CLASS}\DefaultIcon" "" "$INSTDIR\ferrowen6.exe,0"
  WriteRegStr SHCTX "Software\Classes\${SCRIPT_CLASS}\shell\open\command" "" '"$INSTDIR\ferrowen6.exe" "%1"'
  ReadRegStr $0 SHCTX "Software\Classes\.auto" ""
  ${If} $0 != ${SCRIPT_CLASS}
    WriteRegStr SHCTX "${SETUP_KEY}" EarlierScriptClass "$0"
    WriteRegStr SHCTX "Software\Classes\.auto" "" ${SCRIPT_CLASS}
  ${EndIf}
  ${RefreshShellIcons}
SectionEnd

Section /o "$(link)" section_link
  CreateShortcut "$DESKTOP\Ferrowen.lnk" "$INSTDIR\ferrowen6.exe"
SectionEnd

; What an earlier setup was told holds for this one; the command line wins.
Function preset_choices
  ${If} $earlier != ""
    ; Not chosen then, or given to another program since.
    ReadRegStr $0 SHCTX "Software\Classes\.auto" ""
    ${If} $0 != ${SCRIPT_CLASS}
      !insertmacro UnselectSection ${section_scripts}
    ${EndIf}
    ${If} ${FileExists} "$DESKTOP\Ferrowen.lnk"
      !insertmacro SelectSection ${section_link}
    ${EndIf}
  ${EndIf}
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/DesktopLink" $0
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${section_link}
  ${EndIf}
  ClearErrors
  ${GetOptions} $R0 "/NoScripts" $0
  ${IfNot} ${Errors}
    !insertmacro UnselectSection ${section_scripts}
  ${EndIf}
  ClearErrors
FunctionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${section_programs} "$(about_programs)"
  !insertmacro MUI_DESCRIPTION_TEXT ${section_scripts} "$(about_scripts)"
  !insertmacro MUI_DESCRIPTION_TEXT ${section_link} "$(about_link)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; ---- The uninstaller takes away what its list names, and nothing else

Function un.onInit
  StrCpy $users current
  ${If} ${FileExists} "$INSTDIR\${MARKER}"
    StrCpy $users all
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != Admin
      SetErrorLevel ${STATUS_NO_ADMINISTRATOR}
      ${IfNot} ${Silent}
        ExecShell runas "$INSTDIR\uninstall.exe"
      ${EndIf}
      Quit
    ${EndIf}
  ${EndIf}
  !insertmacro use_context
  StrCpy $from $INSTDIR
  Call un.wait_for_end
  ${If} $0 == busy
    SetErrorLevel ${STATUS_RUNNING}
    Quit
  ${EndIf}
FunctionEnd

Function un.remove_files
  StrCpy $R9 ""
  CopyFiles /SILENT "$INSTDIR\${LIST_NAME}" "$PLUGINSDIR\old.txt"
  ClearErrors
  FileOpen $list "$PLUGINSDIR\old.txt" r
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "$(no_list)" /SD IDOK
    SetErrorLevel 2
    Abort
  ${EndIf}
  ${Do}
    Call un.next_name
    ${If} $1 == ""
      ${ExitDo}
    ${EndIf}
    StrCpy $2 $1 1 -1
    ${If} $2 != "\"
    ${AndIf} $1 != uninstall.exe
    ${AndIf} $1 != ${LIST_NAME}
      ClearErrors
      Delete "$INSTDIR\$1"
      ${If} ${Errors}
      ${OrIf} ${FileExists} "$INSTDIR\$1" ; not every system tells
        StrCpy $R9 $1
      ${EndIf}
    ${EndIf}
  ${Loop}
  FileClose $list
  ; With these two a second try is possible.
  ${If} $R9 == ""
    Delete "$INSTDIR\uninstall.exe"
    Delete "$INSTDIR\${LIST_NAME}"
    ClearErrors
  ${Else}
    SetErrorLevel ${STATUS_LEFT_OVER}
    MessageBox MB_OK|MB_ICONSTOP "$(not_removed)" /SD IDOK
    Abort
  ${EndIf}
  StrCpy $from $INSTDIR
  StrCpy $0 "$PLUGINSDIR\old.txt"
  Call un.remove_empty_folders
FunctionEnd

Function un.put_script_class_back
  ReadRegStr $0 SHCTX "Software\Classes\.auto" ""
  ${If} $0 == ${SCRIPT_CLASS}
    ReadRegStr $0 SHCTX "${SETUP_KEY}" EarlierScriptClass
    ${If} $0 == ""
      DeleteRegValue SHCTX "Software\Classes\.auto" ""
      DeleteRegKey /ifempty SHCTX "Software\Classes\.auto"
    ${Else}
      WriteRegStr SHCTX "Software\Classes\.auto" "" "$0"
    ${EndIf}
  ${EndIf}
  DeleteRegKey SHCTX "Software\Classes\${SCRIPT_CLASS}"
  DeleteRegKey SHCTX "${SETUP_KEY}"
  DeleteRegKey /ifempty SHCTX "Software\Ferrowen"
FunctionEnd

; A link of this name that leads elsewhere would be the person's own; ours leads into the folder.
Section Uninstall
  InitPluginsDir
  Call un.remove_files
  Delete "$SMPROGRAMS\Ferrowen.lnk"
  Delete "$DESKTOP\Ferrowen.lnk"
  Call un.put_script_class_back
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  ${RefreshShellIcons}
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
  ${If} ${FileExists} "$INSTDIR\*.*"
    MessageBox MB_OK|MB_ICONINFORMATION "$(was_removed)" /SD IDOK
  ${EndIf}
SectionEnd
