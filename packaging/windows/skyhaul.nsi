; The installer for Windows. It installs for one user, so that nobody needs an administrator: all it
; touches are that user's program folder, start menu and registry.
;
;   setup.exe /S [/ASSOCIATE] [/D=C:\folder]    without questions; /ASSOCIATE also opens .igc files
;   uninstall.exe /S [/SETTINGS]                the same; /SETTINGS also removes settings and password
;
; scripts/package defines VERSION, SOURCE (the folder of what is installed), LISTS (install.nsh and
; uninstall.nsh, a line for each file and folder of it), ICON and OUT.

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
; A file that cannot be written ends the installation: half a program is worse than none.
AllowSkipFiles off

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh

!define CLASSES "Software\Classes"
!define FILE_CLASS "Skyhaul.igc"
!define SETTINGS "Software\Skyhaul"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Skyhaul"

Name "Skyhaul ${VERSION}"
OutFile "${OUT}"
InstallDir "$LOCALAPPDATA\Programs\Skyhaul"
InstallDirRegKey HKCU "${UNINSTALL}" InstallLocation
BrandingText " "
VIProductVersion "${VERSION}.0.0"
VIFileVersion "${VERSION}.0.0"
VIAddVersionKey ProductName "Skyhaul"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Skyhaul installer"
VIAddVersionKey LegalCopyright "The Skyhaul developers, MIT licence"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_SMALLDESC
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; Tells the desktop that file types have changed.
!macro AnnounceFileTypes
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

; An installed version is removed first, wherever it is, so that no file of it stays behind.
Function RemoveInstalledVersion
  ReadRegStr $0 HKCU "${UNINSTALL}" InstallLocation
  ${If} $0 == ""
  ${OrIfNot} ${FileExists} "$0\uninstall.exe"
    Return
  ${EndIf}
  ; With "_?" the uninstaller runs where it is, and can be waited for, but cannot remove itself.
  ClearErrors
  ExecWait '"$0\uninstall.exe" /S _?=$0' $1
  ${If} ${Errors}
  ${OrIf} $1 <> 0
    MessageBox MB_OK|MB_ICONSTOP "The installed version cannot be removed. Close Skyhaul and try again." /SD IDOK
    SetErrorLevel 2
    Abort "The installed version cannot be removed"
  ${EndIf}
  Delete "$0\uninstall.exe"
  RMDir "$0"
FunctionEnd

Section "Skyhaul" SECTION_PROGRAM
  SectionIn RO
  Call RemoveInstalledVersion
  SetOutPath "$INSTDIR"
  !include "${LISTS}/install.nsh"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  ; There is no window to start: the entry opens a command prompt that finds the program.
  SetOutPath "$DOCUMENTS"
  CreateShortcut "$SMPROGRAMS\Skyhaul.lnk" "$SYSDIR\cmd.exe" \
    '/k set "PATH=$INSTDIR;%PATH%" & skyhaul --help' "$INSTDIR\skyhaul.ico"
  SetOutPath "$INSTDIR"

  WriteRegStr HKCU "${UNINSTALL}" DisplayName "Skyhaul"
  WriteRegStr HKCU "${UNINSTALL}" DisplayVersion "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" DisplayIcon "$INSTDIR\skyhaul.ico"
  WriteRegStr HKCU "${UNINSTALL}" Publisher "The Skyhaul developers"
  WriteRegStr HKCU "${UNINSTALL}" InstallLocation "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" NoModify 1
  WriteRegDWORD HKCU "${UNINSTALL}" NoRepair 1
  SectionGetSize ${SECTION_PROGRAM} $0
  WriteRegDWORD HKCU "${UNINSTALL}" EstimatedSize $0
SectionEnd

Section /o "Open .igc files with Skyhaul" SECTION_ASSOCIATE
  ; Who opened them before is kept for the uninstaller.
  ReadRegStr $0 HKCU "${CLASSES}\.igc" ""
  WriteRegStr HKCU "${CLASSES}\${FILE_CLASS}" "" "IGC flight recording"
  WriteRegStr HKCU "${CLASSES}\${FILE_CLASS}" Before "$0"
  WriteRegStr HKCU "${CLASSES}\${FILE_CLASS}\DefaultIcon" "" "$INSTDIR\skyhaul.ico"
  WriteRegStr HKCU "${CLASSES}\${FILE_CLASS}\shell\open\command" "" \
    '"$SYSDIR\cmd.exe" /s /c ""$INSTDIR\skyhaul.exe" --info -- "%1" & pause"'
  WriteRegStr HKCU "${CLASSES}\.igc" "" "${FILE_CLASS}"
  ; A choice that was made in the desktop's own dialog goes before the line above; with this one the
  ; dialog offers Skyhaul.
  WriteRegStr HKCU "${CLASSES}\.igc\OpenWithProgids" "${FILE_CLASS}" ""
  !insertmacro AnnounceFileTypes
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SECTION_PROGRAM} "The program, its documents and an entry in the start menu."
  !insertmacro MUI_DESCRIPTION_TEXT ${SECTION_ASSOCIATE} "A double click shows what a flight holds. Removing Skyhaul gives the files back."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
  ; Who has chosen it once keeps it in the next version.
  ReadRegStr $0 HKCU "${CLASSES}\.igc" ""
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/ASSOCIATE" $2
  ${If} $0 == "${FILE_CLASS}"
  ${OrIfNot} ${Errors}
    !insertmacro SelectSection ${SECTION_ASSOCIATE}
  ${EndIf}
FunctionEnd

Section "un.Skyhaul" SECTION_REMOVE_PROGRAM
  SectionIn RO
  ; The program first: while it runs it cannot be removed, and then nothing else must be.
  ClearErrors
  Delete "$INSTDIR\skyhaul.exe"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "Skyhaul is running. Close it and try again." /SD IDOK
    SetErrorLevel 2
    Abort "Skyhaul is running"
  ${EndIf}
  !include "${LISTS}/uninstall.nsh"
  Delete "$INSTDIR\uninstall.exe"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Skyhaul.lnk"

  ; Somebody else may have taken the files over; then they stay there.
  ReadRegStr $0 HKCU "${CLASSES}\.igc" ""
  ${If} $0 == "${FILE_CLASS}"
    ReadRegStr $0 HKCU "${CLASSES}\${FILE_CLASS}" Before
    ${If} $0 == ""
      DeleteRegValue HKCU "${CLASSES}\.igc" ""
    ${Else}
      WriteRegStr HKCU "${CLASSES}\.igc" "" "$0"
    ${EndIf}
  ${EndIf}
  DeleteRegValue HKCU "${CLASSES}\.igc\OpenWithProgids" "${FILE_CLASS}"
  DeleteRegKey /ifempty HKCU "${CLASSES}\.igc\OpenWithProgids"
  DeleteRegKey /ifempty HKCU "${CLASSES}\.igc"
  DeleteRegKey HKCU "${CLASSES}\${FILE_CLASS}"
  DeleteRegKey HKCU "${UNINSTALL}"
  !insertmacro AnnounceFileTypes
SectionEnd

; Off unless somebody asks for it: the next version, which removes this one, must find them.
Section /o "un.Settings and password" SECTION_REMOVE_SETTINGS
  DeleteRegKey HKCU "${SETTINGS}"
SectionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SECTION_REMOVE_PROGRAM} "The program, its documents and its entries. Your flights stay."
  !insertmacro MUI_DESCRIPTION_TEXT ${SECTION_REMOVE_SETTINGS} "What you have set, and the password. Another copy of Skyhaul would miss them."
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

Function un.onInit
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/SETTINGS" $2
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${SECTION_REMOVE_SETTINGS}
  ${EndIf}
FunctionEnd
