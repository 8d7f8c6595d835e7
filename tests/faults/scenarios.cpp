#include "scenarios.h"

#include <ostream>

#include "failure.h"
#include "faults.h"
#include "picture_bytes.h"
#include "picture_pixels.h"
#include "sink.h"

using host::integer;
using host::number;
using host::reference;
using host::Text;
using host::truth;

namespace faults {
namespace {

const host::FileBytes kOld = {'o', 'l', 'd'};

std::string describe(const VARIANT& value) {
    const VARTYPE type = V_VT(&value);
    if (type == (VT_ARRAY | VT_UI1)) {
        const vrx::ByteArrayView view(value);
        return {view.bytes().begin(), view.bytes().end()};
    }
    if (type == VT_DISPATCH && V_DISPATCH(&value)) {
        const host::Pixels pixels = host::pixelsOf(*V_DISPATCH(&value));
        return std::to_string(pixels.width) + "x" + std::to_string(pixels.height) + ":" +
               std::string(pixels.bytes.begin(), pixels.bytes.end());
    }
    if ((type & VT_ARRAY) != 0) {
        LONG upper = -1;
        SafeArrayGetUBound(V_ARRAY(&value), 1, &upper);
        return "array to " + std::to_string(upper);
    }
    vrx::Variant text;
    if (FAILED(VariantChangeTypeEx(&text.get(), const_cast<VARIANT*>(&value), 0x0409, 0, VT_BSTR)))
        return std::to_string(type);
    const std::wstring wide = V_BSTR(&text.get()) ? V_BSTR(&text.get()) : L"";
    return {wide.begin(), wide.end()};
}

host::FileBytes bitmapBytes() { return host::FileBytes(16 * 3 * 12, 77); }

BmpInfo info16() {
    BmpInfo info{};
    info.biSize = 40;
    info.biWidth = 16;
    info.biHeight = 12;
    info.biPlanes = 1;
    info.biBitCount = 24;
    return info;
}

void setBitmap(Stage& stage) {
    vrx::SafeArray array = vrx::makeByteArray(bitmapBytes());
    SAFEARRAY* typed = array.get();
    BmpInfo info = info16();
    if (const auto image = stage.object.as<_CVrxImage>()) stage.note(image->Set_BMP(&typed, &info));
}

void getBitmap(Stage& stage) {
    SAFEARRAY* typed = nullptr;
    BmpInfo info{};
    const auto image = stage.object.as<_CVrxImage>();
    if (!image) return stage.note(E_NOINTERFACE);
    stage.note(image->Get_BMP(&typed, &info));
    const vrx::SafeArray owned(typed);
    const vrx::ByteArrayView view(typed);
    stage.noteBytes({view.bytes().begin(), view.bytes().end()});
}

void loadHdr(Stage& stage) { stage.call(L"Load_HDR", {Text(stage.hdrFile.c_str()), truth(false)}); }

void loadAndPaint(Stage& stage) {
    loadHdr(stage);
    stage.call(L"Get_BMP");
}

void setHdr(Stage& stage) {
    vrx::Variant pixels = vrx::makeArray(host::byteArray({{0, 16}, {0, 12}, {0, 3}}, stage.picture.store()));
    stage.call(L"Set_HDR", {reference(pixels.get())});
}

/// Pixels for the effects in the variable.
void makeBuffer(Stage& stage) { stage.variable = vrx::makeArray(vrx::makeByteArray(bitmapBytes())); }

/// With a host that follows the events.
void preview(Stage& stage) {
    int events = 0;
    const auto sink =
        host::Sink::make(DIID___CVrxHDR, [&](DISPID, const DISPPARAMS&) { return ++events, S_OK; });
    const auto point = host::connectionPoint(*stage.object, DIID___CVrxHDR);
    DWORD cookie = 0;
    if (!point) return stage.note(E_OUTOFMEMORY);
    stage.note(point->Advise(sink.get(), &cookie));
    stage.call(L"Get_Preview", {Text(stage.hdrFile.c_str())});
    if (cookie != 0) point->Unadvise(cookie);
}

void drawInGrey(Stage& stage) {
    const HDC target = CreateCompatibleDC(nullptr);
    stage.call(L"ColorToBN", {Text(stage.bmpFile.c_str()),
                              integer(static_cast<long>(reinterpret_cast<LONG_PTR>(target))), integer(0)});
    DeleteDC(target);
}

void connectNothing(Stage& stage) {
    const auto point = host::connectionPoint(*stage.object, DIID___CVrxHDR);
    vrx::ComPtr<IEnumConnections> connections;
    stage.note(point ? point->EnumConnections(connections.put()) : E_OUTOFMEMORY);
}

void askForTypes(Stage& stage) {
    vrx::ComPtr<ITypeInfo> info;
    stage.note(stage.object->GetTypeInfo(0, 0, info.put()));
    vrx::ComPtr<ITypeInfo> classInfo;
    if (const auto provider = stage.object.as<IProvideClassInfo2>()) {
        stage.note(provider->GetClassInfo(classInfo.put()));
    }
}

template <const CLSID& classId>
void create(Stage& stage) {
    vrx::ComPtr<IClassFactory> factory;
    stage.note(
        host::component().classObject(classId, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
    vrx::ComPtr<IDispatch> made;
    if (factory) {
        stage.note(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(made.put())));
    }
}

void callWrongly(Stage& stage) {
    stage.call(L"Load_HDR", {Text(L"Z:\\nowhere\\no.hdr")});
    // The failure itself is the right answer.
    stage.answer.value += std::to_string(stage.answer.number);
    if (stage.answer.number == 76 || stage.answer.number == 53) stage.answer.number = 0;
}

}  // namespace

Stage::Stage()
    : bmpFile(folder.write(L"in.bmp", host::bmpFile(16, 12, {1, 2, 3}))),
      jpgFile(folder.write(L"in.jpg", host::jpegFile())) {}

void Stage::resetFiles() const {
    for (const std::wstring& path : {outHdr, outBmp, outJpg}) {
        if (host::readBytes(path) != kOld) host::writeBytes(path, kOld);
    }
}

std::vector<host::FileBytes> Stage::files() const {
    return {host::readBytes(outHdr), host::readBytes(outBmp), host::readBytes(outJpg)};
}

void Stage::note(HRESULT result) {
    if (FAILED(result) && answer.number == 0) answer.number = host::failureOf(result).number;
}

void Stage::noteBytes(const host::FileBytes& bytes) { answer.value.append(bytes.begin(), bytes.end()); }

void Stage::note(host::Outcome outcome) {
    const long failure = host::failureOf(outcome).number;
    if (outcome.code != S_OK && answer.number == 0) answer.number = failure;
    answer.value += describe(outcome.result.get()) + ";";
}

void Stage::call(const wchar_t* name, std::initializer_list<VARIANT> arguments) {
    note(host::call(*object, name, arguments));
}

const std::vector<Scenario>& methods() {
    static const std::vector<Scenario> all = {
        {"Hdr_Create", nullptr, nothing, create<CLSID_CVrxHDR>},
        {"Image_Create", nullptr, nothing, create<CLSID_CVrxImage>},
        {"Fx_Create", nullptr, nothing, create<CLSID_ImageFX>},
        {"Pattern_Create", nullptr, nothing, create<CLSID_CVrxPattern>},
        {"Fun_Create", nullptr, nothing, create<CLSID_CVrxFun>},
        {"Hdr_TypeInfo", &CLSID_CVrxHDR, nothing, askForTypes},
        {"Hdr_Connections", &CLSID_CVrxHDR, nothing, connectNothing},
        {"Hdr_Properties", &CLSID_CVrxHDR, nothing,
         [](Stage& s) {
             s.put(L"REGKEY", Text(L"Software\\VrxFaults"));
             s.get(L"REGKEY");
             s.put(L"Gamma", number(2));
             s.get(L"Gamma");
             s.put(L"Exposure", number(1));
             s.get(L"Exposure");
             s.put(L"AutoExposition", truth(true));
             s.get(L"AutoExposition");
             s.put(L"AutoExpositionType", integer(1));
             s.get(L"AutoExpositionType");
             s.get(L"HDRLoading");
             s.get(L"DimX");
             s.get(L"DimY");
         }},
        {"Hdr_Load", &CLSID_CVrxHDR, nothing,
         [](Stage& s) {
             loadHdr(s);
             s.get(L"DimX");
         }},
        {"Hdr_LoadNothing", &CLSID_CVrxHDR, nothing, callWrongly},
        {"Hdr_Preview", &CLSID_CVrxHDR, nothing, preview},
        {"Hdr_GetBmp", &CLSID_CVrxHDR, loadHdr, [](Stage& s) { s.call(L"Get_BMP"); }},
        {"Hdr_GetPicture", &CLSID_CVrxHDR, loadAndPaint, [](Stage& s) { s.call(L"Get_Picture"); }},
        {"Hdr_GetPictureStretched", &CLSID_CVrxHDR, loadAndPaint,
         [](Stage& s) {
             s.call(L"Get_Picture", {number(0), integer(0), number(16), integer(12), number(0), integer(0),
                                     number(8), integer(6)});
         }},
        {"Hdr_SetHdr", &CLSID_CVrxHDR, nothing, setHdr},
        {"Hdr_GetHdr", &CLSID_CVrxHDR, loadHdr,
         [](Stage& s) {
             vrx::Variant pixels;
             s.call(L"Get_HDR", {reference(pixels.get())});
             s.answer.value += describe(pixels.get());
         }},
        {"Hdr_Save", &CLSID_CVrxHDR, loadHdr,
         [](Stage& s) { s.call(L"Save_HDR", {Text(s.outHdr.c_str())}); }},
        {"Hdr_Convert", &CLSID_CVrxHDR, loadHdr,
         [](Stage& s) {
             s.call(L"Convert_HDR_to_BMP", {Text(s.outBmp.c_str()), number(1), number(2)});
         }},
        {"Hdr_GetCompo", &CLSID_CVrxHDR, loadHdr,
         [](Stage& s) {
             s.call(L"Get_Compo", {integer(3), integer(4), integer(1)});
         },
         true},
        {"Hdr_GetPixel", &CLSID_CVrxHDR, loadAndPaint,
         [](Stage& s) {
             vrx::Variant red, green, blue;
             s.call(L"Get_Pixel", {integer(3), integer(4), reference(red.get()), reference(green.get()),
                                   reference(blue.get())});
             s.answer.value += describe(red.get()) + describe(green.get()) + describe(blue.get());
         },
         true},
        {"Hdr_ClearAndInit", &CLSID_CVrxHDR, loadAndPaint,
         [](Stage& s) {
             s.call(L"EndHDR");
             s.call(L"Cls");
             s.call(L"Init");
         }},
        {"Image_Properties", &CLSID_CVrxImage, nothing,
         [](Stage& s) {
             s.put(L"REGKEY", Text(L"Software\\VrxFaults"));
             s.get(L"REGKEY");
             s.get(L"DimX");
             s.get(L"DimY");
         }},
        {"Image_SetBmp", &CLSID_CVrxImage, nothing, setBitmap},
        {"Image_GetBmp", &CLSID_CVrxImage, setBitmap, getBitmap},
        {"Image_GetPicture", &CLSID_CVrxImage, setBitmap, [](Stage& s) { s.call(L"Get_Picture"); }, true},
        {"Image_GetPictureStretched", &CLSID_CVrxImage, setBitmap,
         [](Stage& s) {
             s.call(L"Get_Picture", {number(0), integer(0), number(16), integer(12), number(0), integer(0),
                                     number(8), integer(6)});
         },
         true},
        {"Image_Convert", &CLSID_CVrxImage, setBitmap,
         [](Stage& s) {
             s.call(L"Convert_BMP_to_JPG", {Text(s.outJpg.c_str()), integer(90)});
         }},
        {"Image_ConvertFile", &CLSID_CVrxImage, nothing,
         [](Stage& s) {
             s.call(L"Convert_BMP_to_JPG", {Text(s.outJpg.c_str()), integer(90), Text(s.bmpFile.c_str())});
         }},
        {"Image_Save", &CLSID_CVrxImage, setBitmap,
         [](Stage& s) { s.call(L"Save_BMP", {Text(s.outBmp.c_str())}); }},
        {"Image_SaveTemporary", &CLSID_CVrxImage, setBitmap, [](Stage& s) { s.call(L"Save_BMP"); }, true},
        {"Image_Load", &CLSID_CVrxImage, nothing,
         [](Stage& s) { s.call(L"Load_BMP", {Text(s.bmpFile.c_str())}); }},
        {"Image_LoadJpeg", &CLSID_CVrxImage, nothing,
         [](Stage& s) { s.call(L"Load_BMP", {Text(s.jpgFile.c_str())}); }},
        {"Image_Clear", &CLSID_CVrxImage, setBitmap, [](Stage& s) { s.call(L"Cls"); }},
        {"Fx_Scale", &CLSID_ImageFX, nothing,
         [](Stage& s) {
             s.call(L"ScaleX", {number(2540)});
             s.call(L"ScaleY", {number(2540)});
         }},
        {"Fx_Blur", &CLSID_ImageFX, makeBuffer,
         [](Stage& s) {
             s.call(L"Blur_Buffer", {reference(s.variable.get()), integer(16), integer(12)});
         }},
        {"Fx_MedianCut", &CLSID_ImageFX, makeBuffer,
         [](Stage& s) {
             s.call(L"MedianCut_Buffer", {reference(s.variable.get()), integer(16), integer(12)});
         }},
        {"Fx_ColorToBN", &CLSID_ImageFX, nothing, drawInGrey, true},
        {"Pattern_RegKey", &CLSID_CVrxPattern, nothing,
         [](Stage& s) {
             s.put(L"REGKEY", Text(L"Software\\VrxFaults"));
             s.get(L"REGKEY");
         }},
        {"Pattern_Expand", &CLSID_CVrxPattern, nothing,
         [](Stage& s) {
             vrx::Variant table;
             s.call(L"Get_PatternFromString",
                    {Text(L"0-255;50-65280;100-16711680;"), integer(10), reference(table.get())});
             s.answer.value += describe(table.get());
         }},
        {"Fun_Keys", &CLSID_CVrxFun, nothing,
         [](Stage& s) {
             s.call(L"Get_XPathStep", {Text(L"a/b/c"), integer(1)});
             s.call(L"Get_Key", {Text(L"a-b-c"), integer(2)});
         }},
        {"Fun_Paths", &CLSID_CVrxFun, nothing,
         [](Stage& s) {
             s.call(L"Get_AbsolutePath", {Text(L"..\\x.txt"), Text(L"C:\\a\\b\\")});
             s.call(L"Get_RelativePath", {Text(L"C:\\a\\x.txt"), Text(L"C:\\a\\b\\")});
             s.call(L"Get_Path", {Text(L"C:\\a\\x.txt")});
         }},
        {"Fun_NeutralPaths", &CLSID_CVrxFun, nothing,
         [](Stage& s) {
             vrx::Variant path = vrx::makeText(u"C:\\a\\x.txt");
             s.call(L"Get_AppName", {reference(path.get()), truth(false)});
             s.call(L"Get_PathShortFormat", {Text(L"C:\\alpha\\beta\\gamma\\delta\\x.txt")});
         },
         true},
        {"Fun_ShortMessage", &CLSID_CVrxFun, nothing,
         [](Stage& s) {
             s.call(L"Show_ShortMessage", {Text(L"wait")});
             s.call(L"Hide_ShortMessage");
         }},
        {"Unregister", nullptr, [](Stage& s) { s.note(host::component().registerMachine()); },
         [](Stage& s) { s.note(host::component().unregisterMachine()); }},
        {"Register", nullptr, nothing, [](Stage& s) { s.note(host::component().registerMachine()); }},
        {"RegisterForUser", nullptr, nothing,
         [](Stage& s) { s.note(host::component().install(true, L"user")); }},
        {"UnregisterForUser", nullptr, [](Stage& s) { s.note(host::component().install(true, L"user")); },
         [](Stage& s) { s.note(host::component().install(false, L"user")); }},
    };
    return all;
}

std::vector<Scenario> selected(const std::vector<Scenario>& all, std::size_t step) {
    if (everything()) return all;
    std::vector<Scenario> some;
    for (std::size_t i = 0; i < all.size(); i += step) some.push_back(all[i]);
    return some;
}

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

void PrintTo(const Answer& answer, std::ostream* out) {
    constexpr std::size_t kShown = 200;
    *out << answer.number << ", " << answer.value.size() << " bytes: ";
    for (const char c : answer.value.substr(0, kShown)) *out << (c < ' ' ? '?' : c);
}

}  // namespace faults
