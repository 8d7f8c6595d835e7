Attribute VB_Name = "HdrTour"
' Import into a VBA project (File, Import File) together with HdrProgress.cls, and set references to
' "VrxCommon 1.0" and "VrxTypeLib 1.0" (Tools, References).
' Run Tour from the Immediate window: Tour "C:\Pictures\venice.hdr"
Option Explicit

Public Sub Tour(path As String)
    ' [create]
    Dim hdr As VrxCommon.CVrxHDR
    Set hdr = New VrxCommon.CVrxHDR
    ' [/create]

    ' [load]
    hdr.Load_HDR path, False                        ' False: row 0 is the top row
    Debug.Print hdr.DimX & " x " & hdr.DimY
    ' [/load]

    ' [read]
    Debug.Print "red at 10,20: " & hdr.Get_Compo(10, 20, 0)
    ' [/read]

    Dim base As String
    base = Left$(path, Len(path) - 4)

    ' [write]
    Dim image As VrxCommon.CVrxImage
    Set image = New VrxCommon.CVrxImage
    hdr.Gamma = 2.2
    hdr.Exposure = 16                               ' in stops
    hdr.Convert_HDR_to_BMP base & ".bmp"
    image.Convert_BMP_to_JPG base & ".jpg", 90, base & ".bmp"
    Debug.Print "wrote " & hdr.Save_HDR(base & "_copy.hdr")
    ' [/write]

    BrightenByOneStop hdr
    WriteNegative image, base & ".bmp", base & "_negative.bmp"
    PrintPattern
    HandleAnError hdr
End Sub

' The pixels as a typed array: each one's exponent up by one doubles its value.
Private Sub BrightenByOneStop(hdr As VrxCommon.CVrxHDR)
    ' [hdr-array]
    Dim pixels As Variant, bytes() As Byte, x As Long, y As Long
    hdr.Get_HDR pixels                              ' (0 To DimX, 0 To DimY, 0 To 3)
    bytes = pixels
    For y = 0 To hdr.DimY - 1
        For x = 0 To hdr.DimX - 1
            If bytes(x, y, 3) < 255 Then bytes(x, y, 3) = bytes(x, y, 3) + 1
        Next
    Next
    hdr.Set_HDR bytes
    ' [/hdr-array]
End Sub

Private Sub WriteNegative(image As VrxCommon.CVrxImage, source As String, target As String)
    ' [bmp-array]
    Dim bits() As Byte, info As VrxTypeLib.BmpInfo, i As Long
    image.Load_BMP source
    image.Get_BMP bits, info
    Debug.Print "bitmap: " & info.biWidth & " x " & info.biHeight
    For i = 0 To UBound(bits)
        bits(i) = 255 - bits(i)
    Next
    image.Set_BMP bits, info
    image.Save_BMP target
    ' [/bmp-array]
End Sub

Private Sub PrintPattern()
    ' [pattern]
    Dim pattern As VrxCommon.CVrxPattern, colors As Variant, i As Long
    Set pattern = New VrxCommon.CVrxPattern
    pattern.Get_PatternFromString "0-255;1000-16711680;", 4, colors
    For i = 0 To UBound(colors)
        Debug.Print i, "&H" & Hex$(colors(i))       ' &HBBGGRR
    Next
    ' [/pattern]
End Sub

Private Sub HandleAnError(hdr As VrxCommon.CVrxHDR)
    ' [error]
    On Error GoTo Failed
    hdr.Load_HDR "C:\no such file.hdr", False
    Exit Sub
Failed:
    Debug.Print "error " & Err.Number & " from " & Err.Source & ": " & Err.Description
    ' [/error]
End Sub

Public Sub ShowDialogs()
    ' [dialog]
    Dim hdr As VrxCommon.CVrxHDR, path As String
    Set hdr = New VrxCommon.CVrxHDR
    hdr.REGKEY = "Software\My company\My program"   ' where the dialogs keep their settings
    path = hdr.Load("C:\Pictures\x.hdr")            ' starts in C:\Pictures
    If path = "" Then Exit Sub                      ' cancelled
    hdr.Load_HDR path, False
    hdr.Save
    ' [/dialog]
End Sub
