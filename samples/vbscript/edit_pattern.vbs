' cscript //nologo edit_pattern.vbs [PATTERN]
' Opens the pattern editor with a pattern string and prints the edited one. Folder and width are remembered
' in the registry below the key that REGKEY names.
Option Explicit

Dim pattern, text
If WScript.Arguments.Count > 1 Then
    WScript.Echo "usage: edit_pattern.vbs [PATTERN]"
    WScript.Quit 2
End If
text = "0-255;500-16777215;1000-16711680;"
If WScript.Arguments.Count = 1 Then text = WScript.Arguments(0)

Set pattern = CreateObject("VrxCommon.CVrxPattern")
pattern.REGKEY = "Software\VrxCommon samples"
pattern.Load text

' Load leaves nothing in its argument when the user cancels.
If text = "" Then
    WScript.Echo "cancelled"
Else
    WScript.Echo text
End If
