; Installer for 64-bit Windows. Called with -DVERSION=… -DFOLDER=… (what is installed) -DFILE_LIST=… (removes it) -DOUTPUT=…
Target amd64-unicode
SetCompressor /SOLID lzma
!include "MUI2.nsh"
!include "LogicLib.nsh"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tessavo"
!define FILE_CLASS "Tessavo.Settings"

Name "Tessavo Velmira"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Tessavo"
InstallDirRegKey HKLM "Software\Tessavo" "Folder"
RequestExecutionLevel admin
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Tessavo Velmira"
VIAddVersionKey "FileDescription" "Installs Tessavo Velmira"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright (c) The Tessavo developers, MIT License"

!define MUI_ICON "tessavo.ico"
!define MUI_UNICON "tessavo.ico"
!define MUI_FINISHPAGE_RUN "$INSTDIR\tessavo.exe"
!insertmacro MUI_PAGE_LICENSE "${FOLDER}/LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

!macro ForAllUsers
  SetRegView 64
  SetShellVarContext all
!macroend

Function .onInit
  !insertmacro ForAllUsers
FunctionEnd

Function un.onInit
  !insertmacro ForAllUsers
FunctionEnd

!macro TellTheShell
  ; SHCNE_ASSOCCHANGED
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

Section "Tessavo Velmira"
  SetOutPath "$INSTDIR"
  File /r "${FOLDER}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\Tessavo Velmira.lnk" "$INSTDIR\tessavo.exe"
  CreateShortcut "$SMPROGRAMS\Tessavo Velmira Demo.lnk" "$INSTDIR\tessavo.exe" "--demo"

  ; Settings files open with a double click. Whoever has them opened by another program keeps it as a choice.
  WriteRegStr HKLM "Software\Classes\${FILE_CLASS}" "" "Tessavo settings"
  WriteRegStr HKLM "Software\Classes\${FILE_CLASS}\DefaultIcon" "" "$INSTDIR\tessavo.exe,0"
  WriteRegStr HKLM "Software\Classes\${FILE_CLASS}\shell\open\command" "" '"$INSTDIR\tessavo.exe" "%1"'
  WriteRegStr HKLM "Software\Classes\.eqs" "" "${FILE_CLASS}"
  WriteRegStr HKLM "Software\Classes\.eqs\OpenWithProgids" "${FILE_CLASS}" ""
  !insertmacro TellTheShell

  WriteRegStr HKLM "Software\Tessavo" "Folder" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Tessavo Velmira"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "The Tessavo developers"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\tessavo.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  ; Only what was installed: the folder may hold a person's own files by now.
  !include "${FILE_LIST}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Tessavo Velmira.lnk"
  Delete "$SMPROGRAMS\Tessavo Velmira Demo.lnk"

  ReadRegStr $0 HKLM "Software\Classes\.eqs" ""
  ${If} $0 == "${FILE_CLASS}"
    DeleteRegValue HKLM "Software\Classes\.eqs" ""
  ${EndIf}
  DeleteRegValue HKLM "Software\Classes\.eqs\OpenWithProgids" "${FILE_CLASS}"
  DeleteRegKey /ifempty HKLM "Software\Classes\.eqs\OpenWithProgids"
  DeleteRegKey /ifempty HKLM "Software\Classes\.eqs"
  DeleteRegKey HKLM "Software\Classes\${FILE_CLASS}"
  !insertmacro TellTheShell
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
  DeleteRegKey HKLM "Software\Tessavo"
SectionEnd
