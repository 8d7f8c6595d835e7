// CVrxHDR as a JScript host uses it: late-bound, everything by value.

var failures = 0;
var files = new ActiveXObject("Scripting.FileSystemObject");
var folder = files.GetAbsolutePathName(".");
var file = folder + "\\js_picture.hdr";
var hdr = new ActiveXObject("VrxCommon.CVrxHDR");

function expect(what, actual, expected) {
    if (actual !== expected) {
        WScript.Echo(what + ": " + actual + " instead of " + expected);
        failures++;
    }
}

function expectError(what, step, number, description) {
    try {
        step();
    } catch (error) {
        expect("number for " + what, error.number & 0xFFFF, number);
        expect("description for " + what, error.description, description);
        return;
    }
    expect(what, "no error", "an error");
}

function repeat(text, count) {
    var repeated = "";
    while (count-- > 0) repeated += text;
    return repeated;
}

// 258 columns in text characters only.
function plane(value) {
    var run = String.fromCharCode(127) + repeat(String.fromCharCode(value), 127);
    return run + run + String.fromCharCode(4) + repeat(String.fromCharCode(value), 4);
}

// 258 x 2 pixels: red 100, green 50 plus the row, blue 20, exponent 127, a scale of 1 / 512.
function writePicture() {
    var stream = files.CreateTextFile(file, true);
    stream.Write("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 2 +X 258\n");
    for (var y = 0; y < 2; y++) {
        stream.Write("\x02\x02\x01\x02" + plane(100) + plane(50 + y) + plane(20) + plane(127));
    }
    stream.Close();
}

writePicture();
hdr.Load_HDR(file, false);
expect("DimX", hdr.DimX, 258);
expect("DimY", hdr.DimY, 2);
expect("red", hdr.Get_Compo(0, 0, 0), 100.5 / 512);
expect("green in row 1", hdr.Get_Compo(257, 1, 1), 51.5 / 512);
hdr.Load_HDR(file);
expect("row 0 when bInvert is left out", hdr.Get_Compo(0, 0, 0), 0.5 * Math.pow(2, -136));
hdr.Load_HDR(file, 0);
expect("row 0 when bInvert is a number", hdr.Get_Compo(0, 0, 0), 100.5 / 512);

hdr.Exposure = 9;
hdr.Gamma = 2.5;
expect("Gamma", hdr.Gamma, 2.5);
expect("HDRLoading", hdr.HDRLoading, false);
hdr.Get_BMP();
hdr.Get_Pixel(0, 0, 1, 2, 3);
expect("a picture", hdr.Get_Picture() !== null, true);
expect("a picture of a rectangle", hdr.Get_Picture(0, 0, 4, 2, 0, 0, 4, 2) !== null, true);
hdr.Convert_HDR_to_BMP(folder + "\\js_out.bmp", 9);
expect("size of the BMP file", files.GetFile(folder + "\\js_out.bmp").Size, 54 + 776 * 2);

expect("the path written", hdr.Save_HDR(folder + "\\js_copy.hdr"), folder + "\\js_copy.hdr");
hdr.Cls();
expect("DimX of nothing", hdr.DimX, 0);
hdr.Get_Preview(folder + "\\js_copy.hdr");
expect("green of the copy", hdr.Get_Compo(0, 1, 1), 51.5 / 512);

expectError("a missing file", function () { hdr.Load_HDR(folder + "\\missing.hdr"); }, 53, "File not found");
expectError("the name Error", function () { hdr.Get_Preview("Error"); }, 1, "File Type Wrong!");
expectError("a gamma of 0", function () { hdr.Convert_HDR_to_BMP("x", 0, 0); }, 11, "Division by zero");
expectError("a text for a number", function () { hdr.Get_Compo("x", 0, 0); }, 13, "Type mismatch");

if (failures === 0) WScript.Echo("OK");
