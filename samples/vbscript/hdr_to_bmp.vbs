' cscript //nologo hdr_to_bmp.vbs PICTURE.hdr FOLDER
' Loads a Radiance HDR picture, prints its size and some linear pixel values, and writes it as BMP files at three
' exposures, plus one with automatic exposition.
Option Explicit

Const Gamma = 2.2

Dim hdr, files, source, folder, base
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: hdr_to_bmp.vbs PICTURE.hdr FOLDER"
    WScript.Quit 2
End If
source = WScript.Arguments(0)
folder = WScript.Arguments(1)
Set files = CreateObject("Scripting.FileSystemObject")
base = files.BuildPath(folder, files.GetBaseName(source))

Set hdr = CreateObject("VrxCommon.CVrxHDR")
hdr.Load_HDR source, False
WScript.Echo files.GetFileName(source) & ": " & hdr.DimX & " x " & hdr.DimY & " pixels"

PrintPixel hdr.DimX \ 2, 0
PrintPixel hdr.DimX \ 2, hdr.DimY \ 2
PrintPixel hdr.DimX \ 4, hdr.DimY - 1

' A linear value of 1 becomes 1 of 255: the exposure, in stops, brings the picture up.
WriteBmp 14
WriteBmp 16
WriteBmp 18

hdr.AutoExposition = True
hdr.Exposure = 16
hdr.Gamma = Gamma
hdr.Convert_HDR_to_BMP base & "_auto.bmp"
WScript.Echo "wrote " & base & "_auto.bmp"

Sub PrintPixel(x, y)
    WScript.Echo "linear at " & x & "," & y & ": red " & hdr.Get_Compo(x, y, 0) & _
        ", green " & hdr.Get_Compo(x, y, 1) & ", blue " & hdr.Get_Compo(x, y, 2)
End Sub

Sub WriteBmp(stops)
    Dim name
    name = base & "_" & stops & ".bmp"
    hdr.Convert_HDR_to_BMP name, stops, Gamma
    WScript.Echo "wrote " & name
End Sub
