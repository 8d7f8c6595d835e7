' cscript //nologo CVrxPattern.vbs
' Examples of CVrxPattern; what they print stands below them, behind the sign >.
Option Explicit

Dim pattern, colors, i
Set pattern = CreateObject("VrxCommon.CVrxPattern")

' [regkey]
pattern.REGKEY = "Software\My program"             ' the editor keeps its settings below it
WScript.Echo pattern.REGKEY
' > Software\My program
' [/regkey]

' [get-patternfromstring]
pattern.Get_PatternFromString "0-255;1000-16711680;", 4, colors
For i = 0 To 4                                     ' red to blue, as blue, green and red in hexadecimal
    WScript.Echo i & ": " & Right("00000" & Hex(colors(i)), 6)
Next
' > 0: 0000FF
' > 1: 4000BF
' > 2: 800080
' > 3: BF0040
' > 4: FF0000
' [/get-patternfromstring]
