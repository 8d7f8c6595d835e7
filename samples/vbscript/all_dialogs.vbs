' cscript //nologo all_dialogs.vbs [FOLDER]
' Opens every dialog in turn: load and save an HDR picture, load and save an image, the zoom windows, the pattern editor.
' Each one remembers its folder and options for the next time.
Option Explicit

Const SettingsKey = "Software\VrxCommon samples"

Dim hdr, image, pattern, fun, start, chosen, text
If WScript.Arguments.Count > 1 Then
    WScript.Echo "usage: all_dialogs.vbs [FOLDER]"
    WScript.Quit 2
End If
' The dialogs take the folder of a file name; its last four characters are its extension.
If WScript.Arguments.Count = 1 Then start = WScript.Arguments(0) & "\x.hdr"

' [load]
Set hdr = CreateObject("VrxCommon.CVrxHDR")
hdr.REGKEY = SettingsKey
chosen = hdr.Load(start)
If chosen = "" Then
    WScript.Echo "load HDR: cancelled"
Else
    WScript.Echo "load HDR: " & chosen
    hdr.Load_HDR chosen, False
End If
' [/load]

If chosen <> "" Then
    hdr.See chosen, 16, 2.2
    WScript.Echo "zoom HDR: closed"
    hdr.Load_HDR chosen, False
    hdr.Save
    WScript.Echo "save HDR: closed"
End If

Set image = CreateObject("VrxCommon.CVrxImage")
image.REGKEY = SettingsKey
chosen = image.Load(start)
If chosen = "" Then
    WScript.Echo "load image: cancelled"
Else
    WScript.Echo "load image: " & chosen
    image.See chosen
    WScript.Echo "zoom image: closed"
    image.Save AsBmp(chosen)
    WScript.Echo "save image: closed"
End If

' [pattern]
Set pattern = CreateObject("VrxCommon.CVrxPattern")
pattern.REGKEY = SettingsKey
text = "0-255;500-16777215;1000-16711680;"
pattern.Load text                                  ' the variable receives the edited pattern
If text = "" Then text = "cancelled"
WScript.Echo "pattern: " & text
' [/pattern]

Set fun = CreateObject("VrxCommon.CVrxFun")
fun.VrxMsgBox "Those were all the dialogs.", vbInformation, "Dialogs"

' The save dialog copies a BMP file as it is, so a picture of another kind is written as one first.
Function AsBmp(name)
    Dim bits, info
    image.Load_BMP name
    image.Get_BMP bits, info
    image.Set_BMP bits, info
    AsBmp = image.Save_BMP
End Function
