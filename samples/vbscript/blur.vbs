' cscript //nologo blur.vbs IN.bmp FOLDER
' Writes a picture blurred and smoothed, as BMP files, and the blurred one as a JPEG file too.
Option Explicit

Dim image, effects, files, base, bits, info
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: blur.vbs IN.bmp FOLDER"
    WScript.Quit 2
End If
Set files = CreateObject("Scripting.FileSystemObject")
base = files.BuildPath(WScript.Arguments(1), files.GetBaseName(WScript.Arguments(0)))
Set image = CreateObject("VrxCommon.CVrxImage")
Set effects = CreateObject("VrxCommon.ImageFX")

LoadPixels
effects.Blur_Buffer bits, image.DimX, image.DimY
SavePixels base & "_blurred.bmp"
image.Convert_BMP_to_JPG base & "_blurred.jpg", 90, base & "_blurred.bmp"
WScript.Echo "wrote " & base & "_blurred.jpg"

LoadPixels
effects.MedianCut_Buffer bits, image.DimX, image.DimY
SavePixels base & "_smooth.bmp"

' The bits and their record go through the script as they are; DimX and DimY follow the record in Set_BMP.
Sub LoadPixels
    ' [load]
    bits = Empty
    info = Empty
    image.Load_BMP WScript.Arguments(0)
    image.Get_BMP bits, info
    image.Set_BMP bits, info
    ' [/load]
End Sub

Sub SavePixels(name)
    image.Set_BMP bits, info
    image.Save_BMP name
    WScript.Echo "wrote " & name
End Sub
