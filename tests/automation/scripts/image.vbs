' A script holds bits and record of an image in plain variables, and hands them on to effects and back.
Option Explicit

Dim files, folder, source, copy, image, effects, bits, info
Set files = CreateObject("Scripting.FileSystemObject")
folder = files.BuildPath(files.GetSpecialFolder(2), files.GetTempName())
files.CreateFolder folder
source = files.BuildPath(folder, "source.bmp")
copy = files.BuildPath(folder, "copy.bmp")
WriteBmp source

Set image = CreateObject("VrxCommon.CVrxImage")
Set effects = CreateObject("VrxCommon.ImageFX")
image.Load_BMP source
Check image.DimX, 0, "the sizes wait for Set_BMP"
image.Get_BMP bits, info
image.Set_BMP bits, info
Check image.DimX, 2, "DimX"
Check image.DimY, 2, "DimY"

' Too small to blur: nothing changes.
effects.Blur_Buffer bits, image.DimX, image.DimY
image.Set_BMP bits, info
Check image.Save_BMP(copy), copy, "the path written"
Check Content(copy), Content(source), "the file"

image.Convert_BMP_to_JPG files.BuildPath(folder, "copy.jpg"), 90, copy
Check files.FileExists(files.BuildPath(folder, "copy.jpg")), True, "the JPEG file"

files.DeleteFolder folder
WScript.Echo "OK"

Sub Check(found, expected, what)
    If found <> expected Then
        WScript.Echo what & ": expected " & expected & ", found " & found
        WScript.Quit 1
    End If
End Sub

' Two by two pixels; all bytes are characters that a text stream writes as they are.
Sub WriteBmp(name)
    Dim stream
    Set stream = files.CreateTextFile(name, True)
    stream.Write "BM" & Dword(70) & Dword(0) & Dword(54)
    stream.Write Dword(40) & Dword(2) & Dword(2) & Chr(1) & Chr(0) & Chr(24) & Chr(0)
    stream.Write Dword(0) & Dword(16) & String(16, Chr(0))
    stream.Write "abcdef" & Chr(0) & Chr(0) & "ghijkl" & Chr(0) & Chr(0)
    stream.Close
End Sub

Function Dword(number)
    Dword = Chr(number) & String(3, Chr(0))
End Function

Function Content(name)
    Content = files.OpenTextFile(name).ReadAll
End Function
