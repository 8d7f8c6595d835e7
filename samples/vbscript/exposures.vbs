' cscript //nologo exposures.vbs PICTURE.hdr FOLDER
' Loads a Radiance HDR picture, prints its size and some linear pixel values, and writes it as BMP and JPEG files at
' three exposures, plus one with automatic exposition.
Option Explicit

Const Gamma = 2.2

Dim hdr, image, files, source, folder, base
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: exposures.vbs PICTURE.hdr FOLDER"
    WScript.Quit 2
End If
source = WScript.Arguments(0)
folder = WScript.Arguments(1)
Set files = CreateObject("Scripting.FileSystemObject")
base = files.BuildPath(folder, files.GetBaseName(source))

On Error Resume Next
WriteExposures
If Err.Number <> 0 Then
    WScript.Echo "error " & Err.Number & " from " & Err.Source & ": " & Err.Description
    WScript.Quit 1
End If

Sub WriteExposures
    Set hdr = CreateObject("VrxCommon.CVrxHDR")
    Set image = CreateObject("VrxCommon.CVrxImage")
    hdr.Load_HDR source, False
    WScript.Echo files.GetFileName(source) & ": " & hdr.DimX & " x " & hdr.DimY & " pixels"

    PrintPixel hdr.DimX \ 2, 0
    PrintPixel hdr.DimX \ 2, hdr.DimY \ 2
    PrintPixel hdr.DimX \ 4, hdr.DimY - 1

    ' A linear value of 1 becomes 1 of 255: the exposure, in stops, brings the picture up.
    WriteExposure 14
    WriteExposure 16
    WriteExposure 18

    hdr.AutoExposition = True
    hdr.Exposure = 16
    hdr.Gamma = Gamma
    hdr.Convert_HDR_to_BMP base & "_auto.bmp"
    WriteJpeg base & "_auto"
End Sub

Sub PrintPixel(x, y)
    WScript.Echo "linear at " & x & "," & y & ": red " & hdr.Get_Compo(x, y, 0) & _
        ", green " & hdr.Get_Compo(x, y, 1) & ", blue " & hdr.Get_Compo(x, y, 2)
End Sub

Sub WriteExposure(stops)
    hdr.Convert_HDR_to_BMP base & "_" & stops & ".bmp", stops, Gamma
    WriteJpeg base & "_" & stops
End Sub

Sub WriteJpeg(name)
    image.Convert_BMP_to_JPG name & ".jpg", 90, name & ".bmp"
    WScript.Echo "wrote " & name & ".bmp and .jpg"
End Sub
