' cscript //nologo CVrxFun.vbs
' Examples of CVrxFun; what they print stands below them, behind the sign >.
Option Explicit

Dim fun, path
Set fun = CreateObject("VrxCommon.CVrxFun")

' [get-xpathstep]
WScript.Echo fun.Get_XPathStep("library/pictures/sky", 1)
' > pictures
' [/get-xpathstep]

' [get-key]
WScript.Echo fun.Get_Key("12-7-3", 2)
' > 3
' [/get-key]

' [get-absolutepath]
WScript.Echo fun.Get_AbsolutePath("../Img/sky.hdr", "C:\Work\Pat")
' > C:\Work\Img\sky.hdr
' [/get-absolutepath]

' [get-relativepath]
WScript.Echo fun.Get_RelativePath("C:\Work\Img\sky.hdr", "C:\Work\Pat")
' > ../Img/sky.hdr
' [/get-relativepath]

' [get-pathshortformat]
WScript.Echo fun.Get_PathShortFormat("C:\Work\Pictures\Holidays\Sea\sky.hdr")
' > C:\Work\...\sky.hdr
' [/get-pathshortformat]

' [get-appname]
path = "C:\Work\Img\sky.hdr"
WScript.Echo fun.Get_AppName(path, False)
' > sky
WScript.Echo path                                  ' the name is cut off
' > C:\Work\Img\
' [/get-appname]

' [get-path]
WScript.Echo fun.Get_Path("C:\Work\Img\sky.hdr")
' > C:\Work\Img\
' [/get-path]

' [show-shortmessage]
fun.Show_ShortMessage "Reading ..."
fun.Show_ShortMessage "Reading ... half of it"     ' in place of the first one
' [hide-shortmessage]
WScript.Echo "all hidden: " & fun.Hide_ShortMessage
' > all hidden: False
WScript.Echo "all hidden: " & fun.Hide_ShortMessage
' > all hidden: True
' [/hide-shortmessage]
' [/show-shortmessage]
