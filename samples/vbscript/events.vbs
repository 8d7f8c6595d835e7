' cscript //nologo events.vbs PICTURE.hdr
' Loads a picture with preview and prints its events; after the third OnRefresh it ends the load.
' Needs the script host of Windows, whose WScript.CreateObject connects the events of an object to procedures.
Option Explicit

Dim hdr, refreshes
If WScript.Arguments.Count <> 1 Then
    WScript.Echo "usage: events.vbs PICTURE.hdr"
    WScript.Quit 2
End If

' [events]
refreshes = 0
Set hdr = WScript.CreateObject("VrxCommon.CVrxHDR", "Hdr_")
hdr.Gamma = 2.2
hdr.Exposure = 16
hdr.Get_Preview WScript.Arguments(0)

Sub Hdr_OnHeaderLoaded(dimX, dimY)
    WScript.Echo "header: " & dimX & " x " & dimY
End Sub

Sub Hdr_OnRefresh(picture)
    refreshes = refreshes + 1
    WScript.Echo "refresh " & refreshes
    If refreshes = 3 Then hdr.EndHDR
End Sub

Sub Hdr_OnFinish
    WScript.Echo "finished"
End Sub
' [/events]
