' cscript //nologo CVrxHDR.vbs PICTURE.hdr FOLDER
' An example of each member of CVrxHDR; what it prints stands below it, behind the sign >.
Option Explicit

Dim hdr, effects, files, file, folder, picture, pixels, red, green, blue
If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: CVrxHDR.vbs PICTURE.hdr FOLDER"
    WScript.Quit 2
End If
file = WScript.Arguments(0)
folder = WScript.Arguments(1)
Set files = CreateObject("Scripting.FileSystemObject")
Set effects = CreateObject("VrxCommon.ImageFX")
Set hdr = CreateObject("VrxCommon.CVrxHDR")

' [regkey]
hdr.REGKEY = "Software\My program"                 ' the dialogs keep their settings below it
WScript.Echo hdr.REGKEY
' > Software\My program
' [/regkey]

' [load-hdr]
hdr.Load_HDR file, False                           ' False: row 0 is the top row
' [dimx]
WScript.Echo "width " & hdr.DimX
' > width 768
' [/dimx]
' [dimy]
WScript.Echo "height " & hdr.DimY
' > height 384
' [/dimy]
' [/load-hdr]

' [hdrloading]
WScript.Echo "loading: " & hdr.HDRLoading          ' Load_HDR returns when the file is loaded
' > loading: False
' [/hdrloading]

' [gamma]
hdr.Gamma = 2.2
WScript.Echo "gamma " & hdr.Gamma
' > gamma 2.2
hdr.Gamma = 9                                      ' the largest one is taken
WScript.Echo "gamma " & hdr.Gamma
' > gamma 6
' [/gamma]

' [exposure]
hdr.Exposure = 16
WScript.Echo "exposure " & hdr.Exposure
' > exposure 16
hdr.Exposure = hdr.Exposure + 1                    ' twice as bright
WScript.Echo "exposure " & hdr.Exposure
' > exposure 17
' [/exposure]

' [autoexposition]
hdr.AutoExposition = True
WScript.Echo "automatic: " & hdr.AutoExposition
' > automatic: True
' [/autoexposition]

' [autoexpositiontype]
hdr.AutoExpositionType = 1                         ' HDRAETMinMax
WScript.Echo "type " & hdr.AutoExpositionType
' > type 1
' [/autoexpositiontype]
hdr.AutoExposition = False
hdr.Exposure = 16
hdr.Gamma = 2.2

' [get-compo]
WScript.Echo "red in thousandths: " & Int(1000 * hdr.Get_Compo(384, 10, 0))
' > red in thousandths: 181
' [/get-compo]

' [get-bmp]
hdr.Get_BMP                                        ' with Exposure, Gamma and AutoExposition as they are
' [get-pixel]
hdr.Get_Pixel 384, 10, red, green, blue            ' the three variables receive percents
WScript.Echo "percent: " & Int(red) & " " & Int(green) & " " & Int(blue)
' > percent: 18 33 78
' [/get-pixel]
' [get-picture]
Set picture = hdr.Get_Picture(0, 0, 100, 50, 0, 0, 200, 100)
WScript.Echo "picture " & effects.ScaleX(picture.Width) & " x " & effects.ScaleY(picture.Height)
' > picture 200 x 100
' [/get-picture]
' [/get-bmp]

' [get-hdr]
hdr.Get_HDR pixels                                 ' a byte array, which a script can hold and hand on
' [cls]
hdr.Cls
WScript.Echo "erased: " & hdr.DimX & " x " & hdr.DimY
' > erased: 0 x 0
' [/cls]
' [set-hdr]
hdr.Set_HDR pixels
WScript.Echo "again: " & hdr.DimX & " x " & hdr.DimY
' > again: 768 x 384
' [/set-hdr]
' [/get-hdr]

' [convert-hdr-to-bmp]
hdr.Convert_HDR_to_BMP folder & "\evening.bmp", 17, 2.2
WScript.Echo "bytes: " & files.GetFile(folder & "\evening.bmp").Size
' > bytes: 884790
' [/convert-hdr-to-bmp]

' [save-hdr]
WScript.Echo "written: " & hdr.Save_HDR(folder & "\copy.hdr")
' > written: *\copy.hdr
' [/save-hdr]

' [get-preview]
hdr.Get_Preview folder & "\copy.hdr"               ' raises OnRefresh with the growing picture
WScript.Echo "loaded: " & hdr.DimX & " x " & hdr.DimY
' > loaded: 768 x 384
' [/get-preview]

' [init]
hdr.Init                                           ' a load that runs would end
WScript.Echo "loading: " & hdr.HDRLoading
' > loading: False
' [/init]
