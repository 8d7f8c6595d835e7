// cscript //nologo paths_and_keys.js [FILE FOLDER]
// Prints FILE relative to FOLDER and back, its short form, and its name and folder; and takes a key apart.

var file = "C:\\Work\\Pictures\\Holidays\\sky.hdr";
var folder = "C:\\Work\\Patterns";
if (WScript.Arguments.length === 2) {
    file = WScript.Arguments(0);
    folder = WScript.Arguments(1);
} else if (WScript.Arguments.length !== 0) {
    WScript.Echo("usage: paths_and_keys.js [FILE FOLDER]");
    WScript.Quit(2);
}

var fun = new ActiveXObject("VrxCommon.CVrxFun");
var relative = fun.Get_RelativePath(file, folder);
WScript.Echo("relative:  " + relative);
WScript.Echo("absolute:  " + fun.Get_AbsolutePath(relative, folder));
WScript.Echo("for show:  " + fun.Get_PathShortFormat(file));

// JScript passes values, so the variable stays whole; in VBScript it would be cut down to the folder.
WScript.Echo("name:      " + fun.Get_AppName(file, false));
WScript.Echo("folder:    " + fun.Get_Path(file));

WScript.Echo("step 1:    " + fun.Get_XPathStep("library/pictures/sky", 1));
WScript.Echo("key part:  " + fun.Get_Key("12-7-3", 2));

try {
    fun.Get_AbsolutePath("sky.hdr", "C:");
} catch (error) {
    WScript.Echo("below C: alone: error " + (error.number & 0xFFFF) + ", " + error.description);
}
