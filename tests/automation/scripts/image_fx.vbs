' ImageFX as a VBScript host uses it: late-bound, all variables variants.
Option Explicit

Dim failures, files, folder, fx
failures = 0
Set files = CreateObject("Scripting.FileSystemObject")
folder = files.GetAbsolutePathName(".")
Set fx = CreateObject("VrxCommon.ImageFX")

Sub Expect(what, actual, expected)
    If actual <> expected Then
        WScript.Echo what & ": " & actual & " instead of " & expected
        failures = failures + 1
    End If
End Sub

Sub CheckScale()
    Expect "type of ScaleX", VarType(fx.ScaleX(2540)), vbInteger
    Expect "ScaleX of two inches", fx.ScaleX(5080), 2 * fx.ScaleX(2540)
    Expect "ScaleY of nothing", fx.ScaleY(0), 0
    On Error Resume Next
    fx.ScaleX 1000000000
    Expect "number beyond 16 bits", Err.Number, 6
    Expect "source beyond 16 bits", Err.Source, "ImageFX"
    On Error GoTo 0
End Sub

Function Dword(value)
    Dword = Chr(value) & String(3, Chr(0))
End Function

' 3 x 4 pixels in rows of 12 bytes, all 0 but for the blue of x 1, y 1: the rows lie from the bottom up.
Function Picture(centre)
    Picture = String(27, Chr(0)) & Chr(centre) & String(20, Chr(0))
End Function

Sub WriteBmp(file, pixels)
    Dim stream
    Set stream = files.CreateTextFile(file, True)
    stream.Write "BM" & Dword(102) & Dword(0) & Dword(54) & Dword(40) & Dword(3) & Dword(4)
    stream.Write Chr(1) & Chr(0) & Chr(24) & Chr(0) & Dword(0) & Dword(48) & String(16, Chr(0)) & pixels
    stream.Close
End Sub

Function PixelsIn(file)
    Dim stream
    Set stream = files.OpenTextFile(file)
    PixelsIn = Mid(stream.ReadAll, 55)
    stream.Close
End Function

Sub CheckBuffers()
    Dim image, bits, info
    WriteBmp folder & "\effects.bmp", Picture(16)
    Set image = CreateObject("VrxCommon.CVrxImage")
    image.Load_BMP folder & "\effects.bmp"
    image.Get_BMP bits, info
    Expect "type of the bits", VarType(bits), vbArray + vbByte

    fx.Blur_Buffer bits, 3, 3
    image.Set_BMP bits, info
    Expect "3 rows stay", PixelsIn(image.Save_BMP(folder & "\kept.bmp")), Picture(16)

    fx.Blur_Buffer bits, 3, 4
    image.Set_BMP bits, info
    Expect "blurred", PixelsIn(image.Save_BMP(folder & "\blurred.bmp")), Picture(4)

    fx.MedianCut_Buffer bits, 3, 4
    image.Set_BMP bits, info
    ' Mean 1, squares 8 * 1 + 9, alpha 17 / 3060.
    Expect "smoothed", PixelsIn(image.Save_BMP(folder & "\smoothed.bmp")), Picture(1)

    On Error Resume Next
    fx.Blur_Buffer bits, 3, 5
    Expect "number for a short buffer", Err.Number, 9
    Expect "source for a short buffer", Err.Source, "ImageFX"
    Err.Clear
    fx.Blur_Buffer "bits", 3, 4
    Expect "number for a text", Err.Number, 13
    Err.Clear
    fx.MedianCut_Buffer Array(1, 2, 3), 3, 4
    Expect "number for an array of variants", Err.Number, 13
    On Error GoTo 0
End Sub

Sub CheckColorToBN()
    Dim twoColor, threshold, hold, width, height
    twoColor = True
    threshold = 255
    hold = True
    width = 10
    height = 10
    Expect "without options", fx.ColorToBN(folder & "\effects.bmp", 0, 0), False
    Expect "type of the result", VarType(fx.ColorToBN(folder & "\effects.bmp", 0, 0)), vbBoolean
    Expect "with all options", fx.ColorToBN(folder & "\effects.bmp", 0, 0, twoColor, threshold, hold, width, height), False
    Expect "threshold stays", threshold, 255
    Expect "without a file", fx.ColorToBN(folder & "\missing.bmp", 0, 0, True), False
End Sub

CheckScale
CheckBuffers
CheckColorToBN

If failures = 0 Then WScript.Echo "OK"
