' cscript //nologo CVrxImage.vbs PICTURE.bmp FOLDER
' An example of each member of CVrxImage; what it prints stands below it, behind the sign >.
Option Explicit

Dim image, effects, files, file, folder, picture, bits, info
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: CVrxImage.vbs PICTURE.bmp FOLDER"
    WScript.Quit 2
End If
file = WScript.Arguments(0)
folder = WScript.Arguments(1)
Set files = CreateObject("Scripting.FileSystemObject")
Set effects = CreateObject("VrxCommon.ImageFX")
Set image = CreateObject("VrxCommon.CVrxImage")

' [regkey]
image.REGKEY = "Software\My program"               ' the dialogs keep their settings below it
WScript.Echo image.REGKEY
' > Software\My program
' [/regkey]

' [load-bmp]
image.Load_BMP file
' [get-bmp]
image.Get_BMP bits, info                           ' what a script cannot read it can hand on
' [set-bmp]
image.Set_BMP bits, info
' [dimx]
WScript.Echo "width " & image.DimX
' > width 768
' [/dimx]
' [dimy]
WScript.Echo "height " & image.DimY
' > height 384
' [/dimy]
' [/set-bmp]
' [/get-bmp]
' [/load-bmp]

' [get-picture]
Set picture = image.Get_Picture(0, 0, 100, 50, 0, 0, 200, 100)
WScript.Echo "picture " & effects.ScaleX(picture.Width) & " x " & effects.ScaleY(picture.Height)
' > picture 200 x 100
' [/get-picture]

' [save-bmp]
WScript.Echo "written: " & image.Save_BMP(folder & "\copy.bmp")
' > written: *\copy.bmp
' [/save-bmp]

' [convert-bmp-to-jpg]
image.Convert_BMP_to_JPG folder & "\copy.jpg", 90, folder & "\copy.bmp"
WScript.Echo "a JPEG file: " & files.FileExists(folder & "\copy.jpg")
' > a JPEG file: True
' [/convert-bmp-to-jpg]

' [cls]
image.Cls
WScript.Echo "erased: " & image.DimX & " x " & image.DimY
' > erased: 0 x 0
' [/cls]
