' Creates every class by both of its program ids and reads the errors of wrong calls.
Option Explicit

Dim failures, name
failures = 0

Sub Expect(what, actual, expected)
    If actual <> expected Then
        WScript.Echo what & ": " & actual & " instead of " & expected
        failures = failures + 1
    End If
End Sub

Sub ExpectCreated(programId)
    Dim object
    On Error Resume Next
    Set object = CreateObject(programId)
    Expect "creating " & programId, Err.Number, 0
    On Error GoTo 0
End Sub

For Each name In Array("CVrxHDR", "CVrxImage", "ImageFX", "CVrxPattern", "CVrxFun")
    ExpectCreated "VrxCommon." & name
    ExpectCreated "VrxCommon." & name & ".1"
Next

Dim pattern, hdr, fun, text
Set pattern = CreateObject("VrxCommon.CVrxPattern")
Set hdr = CreateObject("VrxCommon.CVrxHDR")
Set fun = CreateObject("VrxCommon.CVrxFun")

pattern.REGKEY = "Software\Test"
Expect "REGKEY", pattern.REGKEY, "Software\Test"

On Error Resume Next
hdr.Load_HDR "C:\no such folder\picture.hdr"
Expect "number", Err.Number, 76
Expect "source", Err.Source, "CVrxHDR"
Err.Clear
text = fun.Get_XPathStep("a/b", "one")
Expect "number for a text that is no number", Err.Number, 13
Err.Clear
text = fun.Get_XPathStep("a/b", 40000)
Expect "number for an integer that is too large", Err.Number, 6
Err.Clear
text = fun.Get_XPathStep("a/b")
Expect "number for a missing argument", Err.Number, 450
Err.Clear
fun.Nonsense
Expect "number for an unknown member", Err.Number, 438
On Error GoTo 0

If failures = 0 Then WScript.Echo "OK"
