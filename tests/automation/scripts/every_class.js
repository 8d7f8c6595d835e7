// Creates every class by both of its program ids and reads the errors of wrong calls.

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

function expectNumber(what, step, number) {
    expect(what, errorOf(step).number & 0xFFFF, number);
}

var names = ["CVrxHDR", "CVrxImage", "ImageFX", "CVrxPattern", "CVrxFun"];
for (var i = 0; i < names.length; i++) {
    expectNumber(names[i], function () { return new ActiveXObject("VrxCommon." + names[i]); }, 0);
    expectNumber(names[i] + ".1", function () { return new ActiveXObject("VrxCommon." + names[i] + ".1"); }, 0);
}

var pattern = new ActiveXObject("VrxCommon.CVrxPattern");
var hdr = new ActiveXObject("VrxCommon.CVrxHDR");
var fun = new ActiveXObject("VrxCommon.CVrxFun");

pattern.REGKEY = "Software\\Test";
expect("REGKEY", pattern.REGKEY, "Software\\Test");

var missing = errorOf(function () { hdr.Load_HDR("C:\\no such folder\\picture.hdr"); });
expect("number", missing.number & 0xFFFF, 76);
expect("description", missing.description, "Path not found");
expectNumber("a text that is no number", function () { fun.Get_XPathStep("a/b", "one"); }, 13);
expectNumber("an integer that is too large", function () { fun.Get_XPathStep("a/b", 40000); }, 6);
expectNumber("an unknown member", function () { fun.Nonsense(); }, 438);

if (failures === 0) WScript.Echo("OK");
