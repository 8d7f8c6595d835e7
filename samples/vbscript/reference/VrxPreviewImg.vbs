' cscript //nologo VrxPreviewImg.vbs PICTURE.hdr
' An example of each member of VrxPreviewImg; what it prints stands below it, behind the sign >.
' The control is made for forms. Without one, as here, it has no window, and its members do what they do there.
Option Explicit

Dim preview, hdr, effects, picture, boxWidth, boxHeight, pictureWidth, pictureHeight
If WScript.Arguments.Count <> 1 Then
    WScript.Echo "usage: VrxPreviewImg.vbs PICTURE.hdr"
    WScript.Quit 2
End If
Set effects = CreateObject("VrxCommon.ImageFX")
Set preview = CreateObject("VrxCommon.VrxPreviewImg")

' [objhdr]
Set hdr = CreateObject("VrxCommon.CVrxHDR")
hdr.Gamma = 2.2
hdr.Exposure = 16
Set preview.objHDR = hdr
WScript.Echo "exposure " & preview.objHDR.Exposure
' > exposure 16
' [/objhdr]

' [hdrfile]
preview.HDRFile = True                             ' False for BMP, JPEG and GIF files
WScript.Echo "HDR file: " & preview.HDRFile
' > HDR file: True
' [/hdrfile]

' [file]
preview.File = WScript.Arguments(0)                ' loads
WScript.Echo "shown: " & preview.File
' > shown: *
' [imagewidth]
WScript.Echo "width " & preview.ImageWidth
' > width 768
' [/imagewidth]
' [imageheight]
WScript.Echo "height " & preview.ImageHeight
' > height 384
' [/imageheight]
' [/file]

' [picture]
Set picture = hdr.Get_Picture(0, 0, 100, 50, 0, 0, 200, 100)
preview.Picture = picture                          ' without Set
WScript.Echo "picture " & effects.ScaleX(preview.Picture.Width) & " x " & effects.ScaleY(preview.Picture.Height)
' > picture 200 x 100
' [/picture]

' [fitpicture]
preview.FitPicture                                 ' the frame becomes the new picture's
WScript.Echo "framed: " & preview.ImageWidth & " x " & preview.ImageHeight
' > framed: 200 x 100
' [/fitpicture]

' [get-prop]
preview.Get_Prop 640, 480                          ' a frame for a picture that is still to come
' [/get-prop]

' [get-proportion]
boxWidth = 3000: boxHeight = 3000                  ' twips
pictureWidth = 400: pictureHeight = 300
preview.Get_Proportion boxWidth, boxHeight, pictureWidth, pictureHeight
' [/get-proportion]

' [mousepointer]
preview.MousePointer = 2
WScript.Echo "pointer " & preview.MousePointer     ' a cross
' > pointer 2
' [/mousepointer]

' [mouseicon]
Set preview.MouseIcon = picture                    ' an icon; LoadPicture of Visual Basic reads one
preview.MousePointer = 99
WScript.Echo "icon " & (preview.MouseIcon.Handle = picture.Handle)
' > icon True
' [/mouseicon]

' [no-file]
preview.File = "no picture.hdr"
WScript.Echo "shown: " & preview.File
' > shown: Error
' [/no-file]
