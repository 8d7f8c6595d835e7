// tour [PICTURE.hdr] FOLDER
// The component in one program: loads an HDR picture, which the user chooses where none is given, reads
// values, writes BMP, JPEG and HDR files, works on arrays, expands a pattern and handles an error.
#include "sample.h"

namespace {

std::wstring choosePicture(_CVrxHDR& hdr) {
    // [dialog]
    check(hdr.put_REGKEY(Text(L"Software\\My company\\My program").get()));
    Text chosen;  // empty when the user cancels
    check(hdr.Load(Text(L"C:\\Pictures\\x.hdr").get(), chosen.put()));
    // [/dialog]
    return chosen.c_str();
}

void loadAndRead(_CVrxHDR& hdr, const wchar_t* path) {
    // [load]
    VARIANT_BOOL invert = VARIANT_FALSE;  // row 0 is the top row
    check(hdr.Load_HDR(Text(path).get(), &invert));
    long dimX = 0;
    long dimY = 0;
    check(hdr.get_DimX(&dimX));
    check(hdr.get_DimY(&dimY));
    std::printf("%ld x %ld\n", dimX, dimY);
    // [/load]

    // [read]
    float red = 0;
    check(hdr.Get_Compo(10, 20, 0, &red));
    std::printf("red at 10,20: %g\n", static_cast<double>(red));
    // [/read]
}

void write(_CVrxHDR& hdr, const std::wstring& base) {
    // [write]
    const std::wstring bmp = base + L".bmp";
    check(hdr.put_Gamma(2.2F));
    check(hdr.put_Exposure(16));  // in stops
    check(hdr.Convert_HDR_to_BMP(Text(bmp.c_str()).get(), -1, -1));

    Pointer<_CVrxImage> image;
    create(CLSID_CVrxImage, image);
    check(image->Convert_BMP_to_JPG(Text((base + L".jpg").c_str()).get(), 90, Text(bmp.c_str()).get()));

    Text written;
    check(hdr.Save_HDR(Text((base + L".hdr").c_str()).get(), written.put()));
    std::printf("wrote %ls\n", written.c_str());
    // [/write]
}

void workOnArrays(_CVrxHDR& hdr) {
    // [arrays]
    Value pixels;  // receives a byte array (0 To DimX, 0 To DimY, 0 To 3), the first index fastest
    check(hdr.Get_HDR(&pixels));
    long place[] = {10, 20, 3};
    unsigned char exponent = 0;
    check(SafeArrayGetElement(V_ARRAY(&pixels), place, &exponent));
    std::printf("exponent at 10,20: %d\n", exponent);
    check(hdr.Set_HDR(&pixels));

    Value red, green, blue;
    check(hdr.Get_BMP());
    check(hdr.Get_Pixel(10, 20, &red, &green, &blue));
    std::printf("in percent: %g %g %g\n", V_R8(&red), V_R8(&green), V_R8(&blue));
    // [/arrays]
}

void expandPattern() {
    // [pattern]
    Pointer<_CVrxPattern> pattern;
    create(CLSID_CVrxPattern, pattern);
    Value colors;  // receives an array of variants (0 To 4)
    check(pattern->Get_PatternFromString(Text(L"0-255;1000-16711680;").get(), 4, &colors));
    for (long i = 0; i <= 4; ++i) {
        Value color;
        check(SafeArrayGetElement(V_ARRAY(&colors), &i, &color));
        std::printf("colour %ld: &H%06lX\n", i, V_I4(&color));
    }
    // [/pattern]
}

void handleAnError(_CVrxHDR& hdr) {
    // [error]
    VARIANT_BOOL invert = VARIANT_FALSE;
    try {
        check(hdr.Load_HDR(Text(L"Error").get(), &invert));
    } catch (const Failure& failure) {
        std::printf("error %d from %ls: %ls\n", failure.number(), failure.source.c_str(),
                    failure.description.c_str());
    }
    // [/error]
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2 && count != 3) {
        std::fputs("usage: tour [PICTURE.hdr] FOLDER\n", stderr);
        return 2;
    }
    return runSample("tour", [&] {
        Pointer<_CVrxHDR> hdr;
        create(CLSID_CVrxHDR, hdr);
        const std::wstring picture = count == 3 ? arguments[1] : choosePicture(*hdr.get());
        if (picture.empty()) return;
        loadAndRead(*hdr.get(), picture.c_str());
        write(*hdr.get(), std::wstring(arguments[count - 1]) + L"\\tour_cpp");
        workOnArrays(*hdr.get());
        expandPattern();
        handleAnError(*hdr.get());
    });
}
