' cscript //nologo first_steps.vbs PICTURE.hdr OUT.bmp
Set hdr = CreateObject("VrxCommon.CVrxHDR")
Set image = CreateObject("VrxCommon.CVrxImage")

hdr.Load_HDR WScript.Arguments(0), False           ' False: row 0 is the top row
WScript.Echo hdr.DimX & " x " & hdr.DimY
' > 768 x 384
WScript.Echo "linear red in the middle: " & hdr.Get_Compo(hdr.DimX \ 2, hdr.DimY \ 2, 0)
' > linear red in the middle: 0.5449219

hdr.Gamma = 2.2
hdr.Exposure = 16                                  ' in stops: 1 more doubles the brightness
hdr.AutoExposition = True                          ' holds bright parts back
hdr.Convert_HDR_to_BMP WScript.Arguments(1)
image.Convert_BMP_to_JPG WScript.Arguments(1) & ".jpg", 90, WScript.Arguments(1)

On Error Resume Next
hdr.Load_HDR WScript.Arguments(1), False
WScript.Echo "error " & Err.Number & " from " & Err.Source & ": " & Err.Description
' > error 1 from CVrxHDR::Import: File Type Wrong!
