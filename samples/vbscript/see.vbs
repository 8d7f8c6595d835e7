' cscript //nologo see.vbs PICTURE.hdr [EXPOSURE [GAMMA]]
' Shows a Radiance HDR picture in its own size, with the values of the pixel under the mouse. A click on the picture or
' Esc closes the window. Exposure in stops, 16 if none is given; gamma 2.2.
Option Explicit

Dim hdr, exposure, gamma
If WScript.Arguments.Count < 1 Or WScript.Arguments.Count > 3 Then
    WScript.Echo "usage: see.vbs PICTURE.hdr [EXPOSURE [GAMMA]]"
    WScript.Quit 2
End If
exposure = 16
gamma = 2.2
If WScript.Arguments.Count > 1 Then exposure = CDbl(WScript.Arguments(1))
If WScript.Arguments.Count > 2 Then gamma = CDbl(WScript.Arguments(2))

Set hdr = CreateObject("VrxCommon.CVrxHDR")
hdr.See WScript.Arguments(0), exposure, gamma
WScript.Echo "closed; the picture has " & hdr.DimX & " x " & hdr.DimY & " pixels"
