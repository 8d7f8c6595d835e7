' cscript //nologo load_dialog.vbs [PICTURE.hdr]
' Lets the user choose a Radiance HDR picture, with a preview, and prints its name. The dialog begins in the folder of
' the picture that is given, otherwise in the folder that it was left in.
Option Explicit

Dim hdr, start, chosen
If WScript.Arguments.Count > 1 Then
    WScript.Echo "usage: load_dialog.vbs [PICTURE.hdr]"
    WScript.Quit 2
End If
If WScript.Arguments.Count = 1 Then start = WScript.Arguments(0)

Set hdr = CreateObject("VrxCommon.CVrxHDR")
hdr.REGKEY = "Software\VrxCommon samples"
chosen = hdr.Load(start)
If chosen = "" Then chosen = "cancelled"
WScript.Echo chosen
