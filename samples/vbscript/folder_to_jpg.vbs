' cscript //nologo folder_to_jpg.vbs FOLDER [EXPOSURE [QUALITY]]
' Writes each .hdr file of a folder as a JPEG file beside it. A short message on the screen shows the progress.
' EXPOSURE is in stops, 16 if none is given; QUALITY is 1 to 100, 90 if none is given.
Option Explicit

Const Gamma = 2.2

Dim hdr, image, fun, files, folder, exposure, quality, temporary, names, name, done, failed
If WScript.Arguments.Count < 1 Or WScript.Arguments.Count > 3 Then
    WScript.Echo "usage: folder_to_jpg.vbs FOLDER [EXPOSURE [QUALITY]]"
    WScript.Quit 2
End If
exposure = 16
quality = 90
If WScript.Arguments.Count > 1 Then exposure = CDbl(WScript.Arguments(1))
If WScript.Arguments.Count > 2 Then quality = CLng(WScript.Arguments(2))

Set files = CreateObject("Scripting.FileSystemObject")
Set hdr = CreateObject("VrxCommon.CVrxHDR")
Set image = CreateObject("VrxCommon.CVrxImage")
Set fun = CreateObject("VrxCommon.CVrxFun")
folder = files.GetAbsolutePathName(WScript.Arguments(0))
temporary = files.BuildPath(files.GetSpecialFolder(2), files.GetTempName() & ".bmp")

Set names = PicturesIn(folder)
done = 0
failed = 0
For Each name In names
    fun.Show_ShortMessage "Picture " & (done + failed + 1) & " of " & names.Count & ": " & name
    If Converted(name) Then done = done + 1 Else failed = failed + 1
    fun.Hide_ShortMessage
Next
If files.FileExists(temporary) Then files.DeleteFile temporary
WScript.Echo done & " written, " & failed & " failed"
If failed > 0 Then WScript.Quit 1

' The names first: the folder changes while the pictures are written.
Function PicturesIn(folder)
    Dim file
    Set PicturesIn = CreateObject("Scripting.Dictionary")
    For Each file In files.GetFolder(folder).Files
        If LCase(files.GetExtensionName(file.Name)) = "hdr" Then PicturesIn.Add file.Name, True
    Next
End Function

Function Converted(name)
    Dim target
    target = files.BuildPath(folder, files.GetBaseName(name) & ".jpg")
    On Error Resume Next
    hdr.Load_HDR files.BuildPath(folder, name), False
    If Err.Number = 0 Then hdr.Convert_HDR_to_BMP temporary, exposure, Gamma
    If Err.Number = 0 Then image.Convert_BMP_to_JPG target, quality, temporary
    Converted = Err.Number = 0
    If Converted Then
        WScript.Echo name & ": " & target
    Else
        WScript.Echo name & ": error " & Err.Number & ", " & Err.Description
    End If
End Function
