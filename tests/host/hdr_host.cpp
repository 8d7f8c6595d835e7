#include "hdr_host.h"

#include <algorithm>

namespace host {
namespace {

constexpr DISPID kOnRefresh = 1;
constexpr DISPID kOnHeaderLoaded = 2;
constexpr DISPID kOnFinish = 3;

vrx::Bstr text(const std::wstring& value) { return vrx::Bstr(SysAllocString(value.c_str())); }

}  // namespace

Hdr::Hdr() : object_(create(L"VrxCommon.CVrxHDR").as<_CVrxHDR>()) {}

HRESULT Hdr::load(const std::wstring& file, bool invert) const {
    VARIANT_BOOL inverted = invert ? VARIANT_TRUE : VARIANT_FALSE;
    return object_->Load_HDR(text(file).get(), &inverted);
}

HRESULT Hdr::preview(const std::wstring& file) const { return object_->Get_Preview(text(file).get()); }

HRESULT Hdr::save(const std::wstring& file, std::wstring* written) const {
    vrx::Bstr path;
    const HRESULT result = object_->Save_HDR(text(file).get(), path.put());
    if (written) *written = path ? path.get() : L"";
    return result;
}

HRESULT Hdr::convert(const std::wstring& file, float exposure, float gamma) const {
    return object_->Convert_HDR_to_BMP(text(file).get(), exposure, gamma);
}

HRESULT Hdr::set(const RgbePicture& picture) const {
    vrx::Variant pixels =
        vrx::makeArray(byteArray({{0, picture.width()}, {0, picture.height()}, {0, 3}}, picture.store()));
    return object_->Set_HDR(&pixels.get());
}

void Hdr::view(float exposure, float gamma) const {
    object_->put_Exposure(exposure);
    object_->put_Gamma(gamma);
}

long Hdr::dimX() const {
    long value = -1;
    object_->get_DimX(&value);
    return value;
}

long Hdr::dimY() const {
    long value = -1;
    object_->get_DimY(&value);
    return value;
}

bool Hdr::loading() const {
    VARIANT_BOOL value = 7;
    object_->get_HDRLoading(&value);
    return value != VARIANT_FALSE;
}

FileBytes Hdr::store() const {
    vrx::Variant pixels;
    object_->Get_HDR(&pixels.get());
    if (V_VT(&pixels.get()) == VT_EMPTY) return {};
    const vrx::ByteArrayView view(pixels.get());
    return {view.bytes().begin(), view.bytes().end()};
}

float Hdr::compo(long x, long y, long component) const {
    float value = -1;
    object_->Get_Compo(x, y, component, &value);
    return value;
}

vrx::SafeArray byteArray(std::initializer_list<vrx::Bounds> bounds, const FileBytes& bytes) {
    vrx::SafeArray array = vrx::makeByteArray(std::span(bounds.begin(), bounds.size()));
    const vrx::ByteArrayView view(array.get());
    std::copy_n(bytes.begin(), std::min(bytes.size(), view.bytes().size()), view.bytes().begin());
    return array;
}

Listener::Listener(const Hdr& hdr) : point_(connectionPoint(*hdr.operator->(), DIID___CVrxHDR)) {
    const auto sink = Sink::make(DIID___CVrxHDR, [this](DISPID event, const DISPPARAMS& arguments) {
        return receive(event, arguments);
    });
    point_->Advise(sink.get(), &cookie_);
}

void Listener::disconnect() {
    if (point_) point_->Unadvise(cookie_);
    point_ = {};
}

void Listener::header(const DISPPARAMS& arguments) {
    const VARIANT* values = arguments.rgvarg;
    const bool asDeclared = arguments.cArgs == 2 && V_VT(&values[0]) == VT_I4 && V_VT(&values[1]) == VT_I4;
    log += asDeclared
               ? "header(" + std::to_string(V_I4(&values[1])) + "," + std::to_string(V_I4(&values[0])) + ") "
               : "malformed header ";
    ++headers;
    if (onHeader) onHeader();
}

void Listener::refresh(const DISPPARAMS& arguments) {
    const VARIANT* picture = arguments.rgvarg;
    const bool asDeclared = arguments.cArgs == 1 && V_VT(picture) == VT_DISPATCH && V_DISPATCH(picture);
    log += asDeclared ? "refresh " : "malformed refresh ";
    ++refreshes;
    if (onRefresh && asDeclared) onRefresh(*V_DISPATCH(picture));
}

HRESULT Listener::receive(DISPID event, const DISPPARAMS& arguments) {
    if (event == kOnHeaderLoaded) {
        header(arguments);
    } else if (event == kOnRefresh) {
        refresh(arguments);
    } else if (event == kOnFinish && arguments.cArgs == 0) {
        log += "finish ";
        ++finishes;
        if (onFinish) onFinish();
    } else {
        log += "unknown ";
    }
    return answer;
}

}  // namespace host
