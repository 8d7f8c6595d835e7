// CVrxFun as a JScript host uses it: late-bound, arguments by value.

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

function expectError(what, step, number, description) {
    var error = errorOf(step);
    expect("number for " + what, error.number & 0xFFFF, number);
    expect("description for " + what, error.description, description);
}

var fun = new ActiveXObject("VrxCommon.CVrxFun");

expect("a step", fun.Get_XPathStep("a/b/c", 1), "b");
expect("a step beyond the last", fun.Get_XPathStep("a/b/c", 3), "");
expect("an empty step", fun.Get_XPathStep("a//b", 1), "");
expect("a key", fun.Get_Key("12-7-3", 0), "12");

expect("absolute", fun.Get_AbsolutePath("..\\..\\..\\..\\x.hdr", "C:\\A"), "C:\\x.hdr");
expect("relative", fun.Get_RelativePath("C:\\Work\\\u00E9t\u00E9\\a.hdr", "c:\\work\\\u00C9T\u00C9"), "a.hdr");
expect("short", fun.Get_PathShortFormat("C:\\Programs\\file.txt"), "C:\\Programs\\file.txt");
expect("folder", fun.Get_Path("a/b/c.txt"), "a\\b\\");

var path = "C:\\Pat\\blue.VGR";
expect("name", fun.Get_AppName(path, false), "blue");
expect("a value in place of the variable", path, "C:\\Pat\\blue.VGR");
expect("name of nothing", fun.Get_AppName(null, false), "");

expectError("a folder without a separator", function () { fun.Get_AbsolutePath("x.hdr", "C:"); }, 79, "Path not found!");
expectError("a negative position", function () { fun.Get_XPathStep("a/b", -1); }, 9, "Subscript out of range");
expectError("null for a key", function () { fun.Get_Key(null, 0); }, 94, "Invalid use of Null");

fun.Show_ShortMessage("A");
fun.Show_ShortMessage("B");
expect("hidden with a message left", fun.Hide_ShortMessage(), false);
expect("hidden with the last message", fun.Hide_ShortMessage(), true);
expect("hidden without a message", fun.Hide_ShortMessage(), false);

if (failures === 0) WScript.Echo("OK");
