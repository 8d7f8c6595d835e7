' cscript //nologo SettingsRegistry.vbs
' Examples of SettingsRegistry; what they print stands below them, behind the sign >.
Option Explicit

Const CurrentUser = &H80000001

Dim settings, unset
unset = "not set"
Set settings = CreateObject("VrxSettings.SettingsRegistry")

' [writevalue]
settings.WriteValue CurrentUser, "Software\VrxCommon samples", "Folder", "C:\Pictures"
' [readvalue]
WScript.Echo settings.ReadValue(CurrentUser, "Software\VrxCommon samples", "Folder", unset)
' > C:\Pictures
WScript.Echo settings.ReadValue(CurrentUser, "Software\VrxCommon samples", "Size", unset)
' > not set
' [/readvalue]
' [/writevalue]
