' CVrxFun as a VBScript host uses it: late-bound, all variables variants.
Option Explicit

Dim failures, fun, path, key, hidden
failures = 0

Sub Expect(what, actual, expected)
    If actual <> expected Then
        WScript.Echo what & ": " & actual & " instead of " & expected
        failures = failures + 1
    End If
End Sub

Sub ExpectError(what, number, description)
    Expect "number for " & what, Err.Number, number
    Expect "source for " & what, Err.Source, "CVrxFun"
    Expect "description for " & what, Err.Description, description
    Err.Clear
End Sub

Set fun = CreateObject("VrxCommon.CVrxFun")

key = "a/b/c"
Expect "a step", fun.Get_XPathStep(key, 1), "b"
Expect "a step beyond the last", fun.Get_XPathStep(key, 3), ""
Expect "the key", key, "a/b/c"
Expect "a step of an empty key", fun.Get_XPathStep("", 0), ""
Expect "a step between two separators", fun.Get_XPathStep("a//b", 1), ""
Expect "a key of a text", fun.Get_Key("12-7-3", 0), "12"
Expect "a key of a number", fun.Get_Key(12.5, 0), "12.5"

Expect "absolute", fun.Get_AbsolutePath("..\..\x.hdr", "C:\A\B\C"), "C:\A\x.hdr"
Expect "absolute below a server", fun.Get_AbsolutePath("a.hdr", "\\srv\share\dir"), "\\srv\share\dir\a.hdr"
Expect "absolute above the root", fun.Get_AbsolutePath("..\..\..\..\x.hdr", "C:\A"), "C:\x.hdr"
Expect "absolute below a root", fun.Get_AbsolutePath("Img\x.hdr", "C:\"), "C:\Img\x.hdr"
Expect "absolute of another drive", fun.Get_AbsolutePath("D:\x", "C:\A"), "D:\x"
Expect "absolute of a server", fun.Get_AbsolutePath("\\srv\x", "C:\A"), "\\srv\x"
Expect "absolute of nothing", fun.Get_AbsolutePath("", "C:\A"), ""
Expect "relative", fun.Get_RelativePath("C:\Work\Img\a.hdr", "c:\work\Pat"), "../Img/a.hdr"
Expect "relative to another drive", fun.Get_RelativePath("D:\x.hdr", "C:\Work"), "D:/x.hdr"
Expect "relative inside", fun.Get_RelativePath("C:\Work\a.hdr", "C:\Work"), "a.hdr"
Expect "relative to deeper folders", fun.Get_RelativePath("C:\Work\a.hdr", "C:\Work\Img\Old"), "../../a.hdr"
Expect "short", fun.Get_PathShortFormat("C:\Programs\Sub\Dir\file.txt"), "C:\Programs\...\file.txt"
Expect "short with two levels", fun.Get_PathShortFormat("C:\Programs\file.txt"), "C:\Programs\file.txt"
Expect "short with one level", fun.Get_PathShortFormat("C:\file.txt"), "C:\file.txt"
Expect "short name", fun.Get_PathShortFormat("file.txt"), "filfile.txt"
Expect "folder", fun.Get_Path("a/b/c.txt"), "a\b\"
Expect "folder of a name", fun.Get_Path("c.txt"), ""

path = "C:\Pat\blue.VGR"
Expect "name", fun.Get_AppName(path, False), "blue"
Expect "the path without its name", path, "C:\Pat\"
path = "C:\Pat\blue.VGR"
Expect "name with extension", fun.Get_AppName(path, True), "blue.VGR"
Expect "the path without its name", path, "C:\Pat\"
path = "C:\Pat.old\blue"
Expect "name behind a folder with a dot", fun.Get_AppName(path, False), "Pat"
Expect "the path cut at its folder's dot", path, "C:\"
Expect "name of a value", fun.Get_AppName("C:\Pat\blue.VGR", False), "blue"
Expect "name of nothing", fun.Get_AppName(Null, False), ""

On Error Resume Next
path = fun.Get_AbsolutePath("x.hdr", "C:")
ExpectError "a folder without a separator", 79, "Path not found!"
path = fun.Get_RelativePath("\\", "C:\A")
ExpectError "a network prefix alone", 9, "Subscript out of range"
key = fun.Get_XPathStep("a/b", -1)
ExpectError "a negative position", 9, "Subscript out of range"
key = fun.Get_XPathStep("a/b", 32768)
Expect "number for a position beyond 16 bits", Err.Number, 6
Err.Clear
key = fun.Get_Key("1-2", -1)
ExpectError "a negative position", 9, "Subscript out of range"
key = fun.Get_Key(Null, 0)
ExpectError "Null for a key", 94, "Invalid use of Null"
On Error GoTo 0

fun.Show_ShortMessage "A"
fun.Show_ShortMessage "B"
hidden = fun.Hide_ShortMessage
Expect "hidden with a message left", hidden, False
hidden = fun.Hide_ShortMessage
Expect "hidden with the last message", hidden, True
hidden = fun.Hide_ShortMessage
Expect "hidden without a message", hidden, False

If failures = 0 Then WScript.Echo "OK"
