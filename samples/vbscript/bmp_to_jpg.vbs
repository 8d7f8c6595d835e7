' cscript //nologo bmp_to_jpg.vbs IN.bmp OUT.jpg [QUALITY]
' Writes a picture file (BMP, GIF or JPEG) as a JPEG file; quality 1 to 100, 90 if none is given.
Option Explicit

Dim image, quality
If WScript.Arguments.Count < 2 Or WScript.Arguments.Count > 3 Then
    WScript.Echo "usage: bmp_to_jpg.vbs IN.bmp OUT.jpg [QUALITY]"
    WScript.Quit 2
End If
quality = 90
If WScript.Arguments.Count = 3 Then quality = CLng(WScript.Arguments(2))

Set image = CreateObject("VrxCommon.CVrxImage")
image.Convert_BMP_to_JPG WScript.Arguments(1), quality, WScript.Arguments(0)
WScript.Echo "wrote " & WScript.Arguments(1)
