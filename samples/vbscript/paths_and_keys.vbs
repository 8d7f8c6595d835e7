' cscript //nologo paths_and_keys.vbs [FILE FOLDER]
' Prints FILE relative to FOLDER and back, its short form, and its name and folder; and takes a key apart.
Option Explicit

Dim fun, file, folder, relative, rest, name
If WScript.Arguments.Count <> 0 And WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: paths_and_keys.vbs [FILE FOLDER]"
    WScript.Quit 2
End If
file = "C:\Work\Pictures\Holidays\sky.hdr"
folder = "C:\Work\Patterns"
If WScript.Arguments.Count = 2 Then
    file = WScript.Arguments(0)
    folder = WScript.Arguments(1)
End If

Set fun = CreateObject("VrxCommon.CVrxFun")
relative = fun.Get_RelativePath(file, folder)
WScript.Echo "relative:  " & relative
WScript.Echo "absolute:  " & fun.Get_AbsolutePath(relative, folder)
WScript.Echo "for show:  " & fun.Get_PathShortFormat(file)

' Get_AppName takes the name off its variable, so it gets a copy.
rest = file
name = fun.Get_AppName(rest, False)
WScript.Echo "name:      " & name
WScript.Echo "folder:    " & fun.Get_Path(file)

WScript.Echo "step 1:    " & fun.Get_XPathStep("library/pictures/sky", 1)
WScript.Echo "key part:  " & fun.Get_Key("12-7-3", 2)

On Error Resume Next
fun.Get_AbsolutePath "sky.hdr", "C:"
WScript.Echo "below C: alone: error " & Err.Number & ", " & Err.Description
