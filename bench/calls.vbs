' calls.vbs PICTURE.hdr - late-bound calls from a script, beside those of Scripting.Dictionary in the same script. Prints
' rows for the benchmark's table: work, picture, library, nanoseconds per call, separated by tabs.

Const kCalls = 40000
Const kRounds = 5

Dim hdr, dictionary
Set hdr = CreateObject("VrxCommon.CVrxHDR")
hdr.Load_HDR WScript.Arguments(0), False
Set dictionary = CreateObject("Scripting.Dictionary")
dictionary.Add "key", 1

Function elapsed(start)
    elapsed = Timer - start
    If elapsed < 0 Then elapsed = elapsed + 86400
End Function

Sub report(library, start)
    WScript.Echo "late-bound call, each" & vbTab & "script" & vbTab & library & vbTab & _
        CStr(CLng(elapsed(start) / kCalls * 1000000000))
End Sub

Sub getCompo
    Dim i, value, start
    start = Timer
    For i = 1 To kCalls
        value = hdr.Get_Compo(10, 20, 1)
    Next
    report "vrx", start
End Sub

Sub dictionaryExists
    Dim i, value, start
    start = Timer
    For i = 1 To kCalls
        value = dictionary.Exists("key")
    Next
    report "Scripting.Dictionary", start
End Sub

Dim round
For round = 1 To kRounds
    getCompo
    dictionaryExists
Next
WScript.Echo "OK"
