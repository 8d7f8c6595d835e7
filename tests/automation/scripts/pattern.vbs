' Pattern strings as a VBScript host expands them, late-bound.
Option Explicit

Dim failures, pattern, table, text, ramp
failures = 0

Sub Expect(what, actual, expected)
    If actual <> expected Then
        WScript.Echo what & ": " & actual & " instead of " & expected
        failures = failures + 1
    End If
End Sub

Function Expanded(text, numItem)
    Dim colors, i, listed
    pattern.Get_PatternFromString text, numItem, colors
    Expect "lower bound", LBound(colors), 0
    Expect "upper bound", UBound(colors), numItem
    For i = 0 To UBound(colors)
        listed = listed & colors(i) & " "
    Next
    Expanded = listed
End Function

Sub ExpectError(text, numItem, number, description)
    Dim colors
    On Error Resume Next
    pattern.Get_PatternFromString text, numItem, colors
    Expect "number for " & text, Err.Number, number
    Expect "source for " & text, Err.Source, "CVrxPattern"
    Expect "description for " & text, Err.Description, description
    On Error GoTo 0
End Sub

Set pattern = CreateObject("VrxCommon.CVrxPattern")

Expect "a lone stop", Expanded("0-255;", 10), "255 230 204 178 153 128 102 76 51 26 0 "
Expect "the empty string", Expanded("", 3), "0 0 0 0 "
Expect "two entries", Expanded("0-255;1000-16711680;", 1), "255 16711680 "
Expect "three stops", Expanded("0-255;500-16777215;1000-16711680;", 4), "255 8421631 16777215 16777215 16711680 "
ramp = Expanded("0-255;1000-16711680;", 100)
Expect "red at 0", Left(ramp, 4), "255 "
Expect "blue at 100", Right(ramp, 10), " 16711680 "
Expect "positions 0 and 50", Expanded("0-255;50-16711680;", 100), ramp
Expect "a first stop at 500", Expanded("500-255;1000-16711680;", 100), ramp
Expect "a last item without its semicolon", Expanded("0-255;1000-16711680", 100), ramp
Expect "a second stop on the first one", Expanded("0-0;0-65280;100-255;", 10), Expanded("0-0;100-255;", 10)
Expect "stops next to each other", Expanded("0-255;1000-16711680;500-65280;750-16711680;", 4), "255 32896 65280 65280 16711680 "
Expect "the empty string in 256 entries", Expanded("", 255), Replace(Space(256), " ", "0 ")
Expect "malformed items", Expanded("abc;7", 2), "0 0 0 "

pattern.Get_PatternFromString "0-255;", 0, table
Expect "upper bound", UBound(table), 0
Expect "the one element is empty", IsEmpty(table(0)), True

text = "0-255;1000-16711680;"
pattern.Get_PatternFromString text, 255, table
Expect "upper bound", UBound(table), 255
Expect "type of an element", VarType(table(255)), vbLong
Expect "last element", table(255), 16711680
Expect "the text", text, "0-255;1000-16711680;"

ExpectError "99999999999-0;", 10, 6, "Overflow"
ExpectError "2147483648-0;", 10, 6, "Overflow"
ExpectError "0-2147483648;", 10, 6, "Overflow"
ExpectError "0-255;", -1, 9, "Subscript out of range"

pattern.REGKEY = "Software\Test"
Expect "REGKEY", pattern.REGKEY, "Software\Test"

If failures = 0 Then WScript.Echo "OK"
