' cscript //nologo all_dialogs.vbs [FOLDER]
' Opens every dialog in turn: load and save an HDR picture, load and save an image, the zoom windows, the pattern editor.
' Each one remembers its folder and options for the next time.
Option Explicit

Const SettingsKey = "Software\VrxCommon samples"

Dim hdr, image, pattern, fun, start, chosen, text, answer
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
    ' > load HDR: *.hdr
    hdr.Load_HDR chosen, False
End If
' [/load]

If chosen <> "" Then
    ' [hdr-see]
    hdr.See chosen, 16, 2.2                         ' exposure and gamma
    WScript.Echo "zoom HDR: closed"
    ' > zoom HDR: closed
    ' [/hdr-see]
    ' [hdr-save]
    hdr.Load_HDR chosen, False
    hdr.Save
    WScript.Echo "save HDR: closed"
    ' > save HDR: closed
    ' [/hdr-save]
End If

' [image-load]
Set image = CreateObject("VrxCommon.CVrxImage")
image.REGKEY = SettingsKey
chosen = image.Load(start)
If chosen = "" Then
    WScript.Echo "load image: cancelled"
Else
    WScript.Echo "load image: " & chosen
    ' > load image: *.jpg
End If
' [/image-load]

If chosen <> "" Then
    ' [image-see]
    image.See chosen
    WScript.Echo "zoom image: closed"
    ' > zoom image: closed
    ' [/image-see]
    ' [image-save]
    image.Save AsBmp(chosen)                        ' a BMP file; without one, the image held
    WScript.Echo "save image: closed"
    ' > save image: closed
    ' [/image-save]
End If

' [pattern]
Set pattern = CreateObject("VrxCommon.CVrxPattern")
pattern.REGKEY = SettingsKey
text = "0-255;500-16777215;1000-16711680;"
pattern.Load text                                  ' the variable receives the edited pattern
If text = "" Then text = "cancelled"
WScript.Echo "pattern: " & text
' > pattern: 0-255;*;1000-16711680;
' [/pattern]

Set fun = CreateObject("VrxCommon.CVrxFun")
' [vrxmsgbox]
answer = fun.VrxMsgBox("Those were all the dialogs.", vbOKCancel + vbInformation, "Dialogs")
WScript.Echo "answered: " & answer                 ' vbOK is 1, vbCancel 2, also when the box is closed
' > answered: 2
' [/vrxmsgbox]

' The save dialog copies a BMP file as it is, so a picture of another kind is written as one first.
Function AsBmp(name)
    Dim bits, info
    image.Load_BMP name
    image.Get_BMP bits, info
    image.Set_BMP bits, info
    AsBmp = image.Save_BMP
End Function
