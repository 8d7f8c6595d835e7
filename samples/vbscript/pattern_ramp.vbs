' cscript //nologo pattern_ramp.vbs OUT.bmp [PATTERN]
' Expands a pattern string and draws it as a ramp into a 24-bit BMP file, one column for each colour.
' The script writes the file itself: a text stream writes each Chr as one byte wherever the system's ANSI code page
' has one byte for each character.
Option Explicit

Const RampWidth = 512
Const RampHeight = 64
Const HeaderSize = 54

Dim pattern, files, target, text, colors, stride, row, x, y, stream
If WScript.Arguments.Count < 1 Or WScript.Arguments.Count > 2 Then
    WScript.Echo "usage: pattern_ramp.vbs OUT.bmp [PATTERN]"
    WScript.Quit 2
End If
target = WScript.Arguments(0)
text = "0-255;200-65535;400-65280;600-16776960;800-16711680;1000-16711935;"
If WScript.Arguments.Count = 2 Then text = WScript.Arguments(1)

Set pattern = CreateObject("VrxCommon.CVrxPattern")
pattern.Get_PatternFromString text, RampWidth - 1, colors

' All rows are alike: blue, green, red for each pixel, filled up to a multiple of four bytes.
For x = 0 To RampWidth - 1
    row = row & Chr((colors(x) \ 65536) And 255) & Chr((colors(x) \ 256) And 255) & Chr(colors(x) And 255)
Next
stride = (RampWidth * 3 + 3) And Not 3
row = row & String(stride - RampWidth * 3, Chr(0))

Set files = CreateObject("Scripting.FileSystemObject")
Set stream = files.CreateTextFile(target, True)
stream.Write "BM" & Bytes(HeaderSize + stride * RampHeight, 4) & Bytes(0, 4) & Bytes(HeaderSize, 4)
stream.Write Bytes(40, 4) & Bytes(RampWidth, 4) & Bytes(RampHeight, 4) & Bytes(1, 2) & Bytes(24, 2)
stream.Write Bytes(0, 4) & Bytes(stride * RampHeight, 4) & String(16, Chr(0))
For y = 1 To RampHeight
    stream.Write row
Next
stream.Close

If files.GetFile(target).Size <> HeaderSize + stride * RampHeight Then
    WScript.Echo "the code page of this system cannot write " & target
    WScript.Quit 1
End If
WScript.Echo "wrote " & target & ": " & RampWidth & " x " & RampHeight & " pixels"

' The number as so many bytes, the lowest first.
Function Bytes(ByVal number, count)
    Dim i
    For i = 1 To count
        Bytes = Bytes & Chr(number And 255)
        number = number \ 256
    Next
End Function
