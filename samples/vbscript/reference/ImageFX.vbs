' cscript //nologo ImageFX.vbs PICTURE.bmp FOLDER
' Examples of ImageFX; what they print stands below them, behind the sign >.
Option Explicit

Dim image, effects, folder, bits, info
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: ImageFX.vbs PICTURE.bmp FOLDER"
    WScript.Quit 2
End If
folder = WScript.Arguments(1)
Set image = CreateObject("VrxCommon.CVrxImage")
Set effects = CreateObject("VrxCommon.ImageFX")

' [scalex]
WScript.Echo effects.ScaleX(2540) & " pixels"      ' an inch, on a screen of 96 pixels per inch
' > 96 pixels
' [/scalex]

' [scaley]
WScript.Echo effects.ScaleY(1270) & " pixels"      ' half an inch
' > 48 pixels
' [/scaley]

image.Load_BMP WScript.Arguments(0)
image.Get_BMP bits, info
image.Set_BMP bits, info

' [blur-buffer]
effects.Blur_Buffer bits, image.DimX, image.DimY   ' bits of image.Get_BMP bits, info
image.Set_BMP bits, info
WScript.Echo "written: " & image.Save_BMP(folder & "\blurred.bmp")
' > written: *\blurred.bmp
' [/blur-buffer]

' [mediancut-buffer]
effects.MedianCut_Buffer bits, image.DimX, image.DimY
image.Set_BMP bits, info
WScript.Echo "written: " & image.Save_BMP(folder & "\smooth.bmp")
' > written: *\smooth.bmp
' [/mediancut-buffer]
