' cscript //nologo tour.vbs PICTURE.hdr FOLDER
' The component in one script: loads an HDR picture, reads values, writes BMP, JPEG and HDR files, handles an error and
' expands a pattern.
Option Explicit

Dim hdr, image, pattern, files, base, red, green, blue, pixels, colors
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: tour.vbs PICTURE.hdr FOLDER"
    WScript.Quit 2
End If
Set files = CreateObject("Scripting.FileSystemObject")
base = files.BuildPath(WScript.Arguments(1), files.GetBaseName(WScript.Arguments(0)))

' [create]
Set hdr = CreateObject("VrxCommon.CVrxHDR")
Set image = CreateObject("VrxCommon.CVrxImage")
Set pattern = CreateObject("VrxCommon.CVrxPattern")
' [/create]

' [load]
hdr.Load_HDR WScript.Arguments(0), False           ' False: row 0 is the top row
WScript.Echo hdr.DimX & " x " & hdr.DimY
' [/load]

' [read]
WScript.Echo "red at 10,20: " & hdr.Get_Compo(10, 20, 0)
' [/read]

' [write]
hdr.Gamma = 2.2
hdr.Exposure = 16                                  ' in stops
hdr.Convert_HDR_to_BMP base & "_tour.bmp"
image.Convert_BMP_to_JPG base & "_tour.jpg", 90, base & "_tour.bmp"
WScript.Echo "wrote " & hdr.Save_HDR(base & "_tour.hdr")
' [/write]

' [by-reference]
hdr.Get_BMP                                        ' builds the tables that Get_Pixel asks for
hdr.Get_Pixel 10, 20, red, green, blue             ' the three variables receive the values
WScript.Echo "in percent: " & red & " " & green & " " & blue

hdr.Get_HDR pixels                                 ' a byte array, which a script can hold and hand on
hdr.Cls
hdr.Set_HDR pixels
WScript.Echo "pixels again: " & hdr.DimX & " x " & hdr.DimY
' [/by-reference]

' [pattern]
pattern.Get_PatternFromString "0-255;1000-16711680;", 4, colors
WScript.Echo "colours: " & Join5(colors)           ' red to blue in five steps
' [/pattern]

' [error]
On Error Resume Next
hdr.Load_HDR WScript.ScriptFullName, False
If Err.Number <> 0 Then WScript.Echo "error " & Err.Number & " from " & Err.Source & ": " & Err.Description
On Error GoTo 0
' [/error]
WScript.Echo "done"

Function Join5(values)
    Dim i
    For i = 0 To 4
        Join5 = Join5 & " #" & Right("00000" & Hex(values(i)), 6)
    Next
End Function
