// cscript //nologo pattern_palette.js [PATTERN [COUNT]]
// Expands a pattern string and prints it as a palette of COUNT colours, 16 by default.
// JScript passes arguments by value only; a function of VBScript hands the array over.

var text = "0-255;500-65535;1000-16711680;";
var count = 16;
if (WScript.Arguments.length > 0) text = WScript.Arguments(0);
if (WScript.Arguments.length > 1) count = parseInt(WScript.Arguments(1), 10);

function hexByte(value) {
    return (value < 16 ? "0" : "") + value.toString(16).toUpperCase();
}

function expand(pattern, text, count) {
    var control = new ActiveXObject("MSScriptControl.ScriptControl");
    control.Language = "VBScript";
    control.AddCode(
        "Function Expanded(pattern, text, numItem)\r\n" +
        "Dim colors\r\n" +
        "pattern.Get_PatternFromString text, numItem, colors\r\n" +
        "Expanded = colors\r\n" +
        "End Function\r\n");
    return new VBArray(control.CodeObject.Expanded(pattern, text, count - 1)).toArray();
}

if (!(count >= 2)) {
    WScript.Echo("usage: pattern_palette.js [PATTERN [COUNT]], COUNT at least 2");
    WScript.Quit(2);
}
var colors = expand(new ActiveXObject("VrxCommon.CVrxPattern"), text, count);
for (var i = 0; i < colors.length; i++) {
    var red = colors[i] & 255, green = (colors[i] >> 8) & 255, blue = (colors[i] >> 16) & 255;
    WScript.Echo(i + "\t#" + hexByte(red) + hexByte(green) + hexByte(blue) + "\t" + red + " " + green + " " + blue);
}
