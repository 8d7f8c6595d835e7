// ImageFX as a JScript host uses it: late-bound, arguments by value.

var failures = 0;
var fx = new ActiveXObject("VrxCommon.ImageFX");

function expect(what, actual, expected) {
    if (actual !== expected) {
        WScript.Echo(what + ": " + actual + " instead of " + expected);
        ++failures;
    }
}

// The number of the error that an action ends with; 0 for none.
function errorOf(action) {
    try {
        action();
    } catch (error) {
        return error.number & 0xFFFF;
    }
    return 0;
}

expect("type of ScaleX", typeof fx.ScaleX(2540), "number");
expect("ScaleX of two inches", fx.ScaleX(5080), 2 * fx.ScaleX(2540));
expect("ScaleY of a negative length", fx.ScaleY(-2540), -fx.ScaleY(2540));
expect("beyond 16 bits", errorOf(function () { fx.ScaleY(1e9); }), 6);

expect("a text for a buffer", errorOf(function () { fx.Blur_Buffer("bits", 3, 4); }), 13);
expect("an array for a buffer", errorOf(function () { fx.MedianCut_Buffer([1, 2, 3], 3, 4); }), 13);
expect("no buffer", errorOf(function () { fx.Blur_Buffer(undefined, 3, 4); }), 13);

expect("ColorToBN without a file", fx.ColorToBN("missing.bmp", 0, 0), false);
expect("ColorToBN with all options", fx.ColorToBN("missing.bmp", 0, 0, true, 255, true, 10, 10), false);
expect("a threshold beyond a byte", errorOf(function () { fx.ColorToBN("missing.bmp", 0, 0, true, 256); }), 6);

if (failures === 0) WScript.Echo("OK");
