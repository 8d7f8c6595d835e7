// Pattern strings as a JScript host expands them, late-bound. Its arguments go by value, so the array itself comes
// through a function of VBScript.

var failures = 0;

function expect(what, actual, expected) {
    if (actual !== expected) {
        WScript.Echo(what + ": " + actual + " instead of " + expected);
        failures++;
    }
}

function errorOf(step) {
    try {
        step();
    } catch (error) {
        return error;
    }
    return {number: 0, description: ""};
}

var pattern = new ActiveXObject("VrxCommon.CVrxPattern");
var control = new ActiveXObject("MSScriptControl.ScriptControl");
control.Language = "VBScript";
control.AddCode(
    "Function Expanded(pattern, text, numItem)\r\n" +
    "Dim colors\r\n" +
    "pattern.Get_PatternFromString text, numItem, colors\r\n" +
    "Expanded = colors\r\n" +
    "End Function\r\n");

function expanded(text, numItem) {
    var colors = new VBArray(control.CodeObject.Expanded(pattern, text, numItem));
    expect("lower bound", colors.lbound(1), 0);
    expect("upper bound", colors.ubound(1), numItem);
    return colors.toArray();
}

expect("a lone stop", expanded("0-255;", 10).join(" "), "255 230 204 178 153 128 102 76 51 26 0");
expect("the empty string", expanded("", 3).join(" "), "0 0 0 0");
expect("two entries", expanded("0-255;1000-16711680;", 1).join(" "), "255 16711680");
expect("an element", typeof expanded("0-255;", 1)[0], "number");
expect("the one element of NumItem 0", typeof expanded("0-255;", 0)[0], "undefined");

var table = "unchanged";
pattern.Get_PatternFromString("0-255;", 10, table);
expect("a value in place of the variable", table, "unchanged");

var overflow = errorOf(function () { pattern.Get_PatternFromString("99999999999-0;", 10, table); });
expect("number", overflow.number & 0xFFFF, 6);
expect("description", overflow.description, "Overflow");
var negative = errorOf(function () { pattern.Get_PatternFromString("0-255;", -1, table); });
expect("number", negative.number & 0xFFFF, 9);
expect("description", negative.description, "Subscript out of range");

if (failures === 0) WScript.Echo("OK");
