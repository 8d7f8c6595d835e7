' CVrxHDR as a VBScript host uses it: late-bound, all variables variants.
Option Explicit

Dim failures, files, folder, file, hdr
failures = 0
Set files = CreateObject("Scripting.FileSystemObject")
folder = files.GetAbsolutePathName(".")
file = folder & "\vbs_picture.hdr"

Sub Expect(what, actual, expected)
    If actual <> expected Then
        WScript.Echo what & ": " & actual & " instead of " & expected
        failures = failures + 1
    End If
End Sub

' 258 x 3 pixels in text characters only: red 100, green 50 plus the row, blue 20, exponent 127, a scale of 1 / 512.
Sub WritePicture()
    Dim stream, y
    Set stream = files.CreateTextFile(file, True)
    stream.Write "#?RADIANCE" & vbLf & "FORMAT=32-bit_rle_rgbe" & vbLf & vbLf & "-Y 3 +X 258" & vbLf
    For y = 0 To 2
        stream.Write Chr(2) & Chr(2) & Chr(1) & Chr(2) & Plane(100) & Plane(50 + y) & Plane(20) & Plane(127)
    Next
    stream.Close
End Sub

Function Plane(value)
    Plane = Chr(127) & String(127, Chr(value)) & Chr(127) & String(127, Chr(value)) & Chr(4) & String(4, Chr(value))
End Function

Sub CheckProperties()
    hdr.REGKEY = "Software\Test"
    Expect "REGKEY", hdr.REGKEY, "Software\Test"
    hdr.Gamma = 0.5
    Expect "Gamma of 0.5", hdr.Gamma, 1
    hdr.Gamma = 10
    Expect "Gamma of 10", hdr.Gamma, 6
    hdr.AutoExposition = True
    Expect "AutoExposition", hdr.AutoExposition, True
    hdr.AutoExposition = False
    Expect "HDRLoading", hdr.HDRLoading, False
End Sub

Sub CheckLoading()
    Dim invert
    invert = False
    hdr.Load_HDR file, invert
    Expect "DimX", hdr.DimX, 258
    Expect "DimY", hdr.DimY, 3
    Expect "red", hdr.Get_Compo(0, 0, 0), 100.5 / 512
    Expect "green in row 2", hdr.Get_Compo(257, 2, 1), 52.5 / 512
    hdr.Load_HDR file
    Expect "row 0 when bInvert is left out", hdr.Get_Compo(0, 0, 0), 0.5 * 2 ^ -136
    Expect "row 1 when bInvert is left out", hdr.Get_Compo(0, 1, 1), 52.5 / 512
    hdr.Load_HDR file, False
End Sub

Sub CheckPixels()
    Dim red, green, blue
    hdr.Get_Pixel 0, 0, red, green, blue
    Expect "red before any table", red, -1
    Expect "type of red before any table", VarType(red), vbInteger
    hdr.Exposure = 9
    hdr.Gamma = 1
    hdr.Get_BMP
    hdr.Get_Pixel 0, 0, red, green, blue
    Expect "type of red", VarType(red), vbDouble
    Expect "red in percent", red, 100.5 * 100 / 512
    Expect "blue in percent", blue, 20.5 * 100 / 512
    red = "kept"
    hdr.Get_Pixel 1000, 0, red, green, blue
    Expect "red outside", red, "kept"
End Sub

Sub CheckStore()
    Dim store, other, nothingYet
    hdr.Get_HDR store
    Expect "type of the store", VarType(store), vbArray + vbByte
    Set other = CreateObject("VrxCommon.CVrxHDR")
    other.Get_HDR nothingYet
    Expect "an empty store", IsEmpty(nothingYet), True
    other.Set_HDR store
    Expect "DimX of the other", other.DimX, 258
    Expect "green of the other", other.Get_Compo(0, 1, 1), 51.5 / 512
    other.Set_HDR "no array"
    Expect "DimX of the other", other.DimX, 258
    Expect "the path written", other.Save_HDR(folder & "\vbs_copy.hdr"), folder & "\vbs_copy.hdr"
    other.Cls
    Expect "DimX of nothing", other.DimX, 0
    other.Get_Preview folder & "\vbs_copy.hdr"
    Expect "green of the copy", other.Get_Compo(0, 1, 1), 51.5 / 512
End Sub

Sub CheckOutput()
    Dim picture
    hdr.Convert_HDR_to_BMP folder & "\vbs_out.bmp", 9, 2.2
    Expect "size of the BMP file", files.GetFile(folder & "\vbs_out.bmp").Size, 54 + 776 * 3
    Expect "Gamma", hdr.Gamma, 1
    Set picture = hdr.Get_Picture
    Expect "a picture", picture Is Nothing, False
    Set picture = hdr.Get_Picture(0, 0, 258, 3, 0, 0, 129, 3)
    Expect "a picture of a rectangle", picture Is Nothing, False
End Sub

Sub CheckErrors()
    On Error Resume Next
    hdr.Load_HDR folder & "\missing.hdr"
    Expect "number for a missing file", Err.Number, 53
    Expect "source for a missing file", Err.Source, "CVrxHDR"
    Expect "description for a missing file", Err.Description, "File not found"
    Err.Clear
    hdr.Get_Preview "Error"
    Expect "number for the name Error", Err.Number, 1
    Expect "source for the name Error", Err.Source, "CVrxHDR::Import"
    Expect "description for the name Error", Err.Description, "File Type Wrong!"
    Err.Clear
    hdr.Convert_HDR_to_BMP folder & "\vbs_out.bmp", 9, 0
    Expect "number for a gamma of 0", Err.Number, 11
    Err.Clear
    hdr.Convert_HDR_to_BMP folder & "\missing\out.bmp"
    Expect "number for a missing folder", Err.Number, 76
    Expect "source for a missing folder", Err.Source, "CVrxImage"
    Err.Clear
    hdr.Set_HDR Array(1, 2, 3)
    Expect "number for an array of variants", Err.Number, 13
    Err.Clear
    hdr.DimX = 5
    Expect "assigning DimX fails", Err.Number <> 0, True
End Sub

Set hdr = CreateObject("VrxCommon.CVrxHDR")
WritePicture
CheckProperties
CheckLoading
CheckPixels
CheckStore
CheckOutput
CheckErrors
hdr.EndHDR
hdr.Init

If failures = 0 Then WScript.Echo "OK"
