// Objects on the library's base class that record what a call brings, for tests of late binding, events and
// the seam.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "VrxCommon.h"
#include "com/connection_point.h"
#include "com/object_base.h"

namespace probe {

/// An object that a test owns and looks into.
template <class Probe>
[[nodiscard]] vrx::ComPtr<Probe> make() {
    return vrx::ComPtr<Probe>(new Probe);
}

/// Scalars by reference, a variant by reference, and a body of the test's own.
class Effects final : public vrx::ObjectBase<_ImageFX> {
  public:
    struct Received {
        std::u16string fileName;
        long pictureHdc;
        long imageHandle;
        bool twoColor;
        int threshold;
        bool holdProportion;
        long width;
        long height;
    };

    Effects();

    std::optional<Received> received;        ///< by ColorToBN, which leaves True, 7, True, 640, 480
    std::optional<vrx::Error> failure;       ///< ColorToBN throws it after having left its values
    std::function<void(VARIANT&)> onBuffer;  ///< body of Blur_Buffer
    std::function<short(float)> onScale;     ///< body of ScaleX and ScaleY

    STDMETHODIMP ScaleX(float Width, short* value) override;
    STDMETHODIMP ScaleY(float Height, short* value) override;
    STDMETHODIMP Blur_Buffer(VARIANT* Buffer, long DimX, long DimY) override;
    STDMETHODIMP MedianCut_Buffer(VARIANT* Buffer, long DimX, long DimY) override;
    STDMETHODIMP ColorToBN(BSTR FileName, long PictureHDC, long ImageHandle, VARIANT_BOOL* TwoColor,
                           unsigned char* Threshold, VARIANT_BOOL* HoldProportion, long* Width, long* Height,
                           VARIANT_BOOL* value) override;
};

/// Byte arrays and records by reference, a text by reference.
class Image final : public vrx::ObjectBase<_CVrxImage> {
  public:
    Image();

    std::vector<std::uint8_t> bytes;   ///< from Set_BMP
    SAFEARRAY** arrayPlace = nullptr;  ///< address that Set_BMP or Get_BMP was given
    BmpInfo* recordPlace = nullptr;
    long width = 0;           ///< biWidth that Set_BMP found; Get_BMP leaves 77 and the bytes 5, 6, 7
    std::u16string path;      ///< from Save_BMP, which leaves "changed" and returns "saved"
    bool leavesPath = false;  ///< Save_BMP leaves the path as it is

    STDMETHODIMP get_REGKEY(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_REGKEY(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_DimX(long*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DimY(long*) override { return E_NOTIMPL; }
    STDMETHODIMP Load(BSTR, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP Get_Picture(float, long, float, long, float, long, float, long, IPictureDisp**) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP See(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP Set_BMP(SAFEARRAY** r_arBMP, BmpInfo* r_BmpInfo) override;
    STDMETHODIMP Get_BMP(SAFEARRAY** r_arBMP, BmpInfo* r_BmpInfo) override;
    STDMETHODIMP Cls() override { return E_NOTIMPL; }
    STDMETHODIMP Save(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP Convert_BMP_to_JPG(BSTR, long, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP Save_BMP(BSTR* strOutPutFile, BSTR* value) override;
    STDMETHODIMP Load_BMP(BSTR) override { return E_NOTIMPL; }
};

/// Properties of every kind, objects among them.
class Preview final : public vrx::ObjectBase<_VrxPreviewImg> {
  public:
    Preview();

    vrx::ComPtr<IPictureDisp> picture;
    vrx::ComPtr<_CVrxHDR> hdr;
    short mousePointer = 0;

    STDMETHODIMP get_Picture(IPictureDisp** value) override;
    STDMETHODIMP put_Picture(IPictureDisp* value) override;
    STDMETHODIMP get_objHDR(_CVrxHDR** value) override;
    STDMETHODIMP putref_objHDR(_CVrxHDR* value) override;
    STDMETHODIMP Get_Prop(long, long) override { return E_NOTIMPL; }
    STDMETHODIMP put_HDRFile(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_HDRFile(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_File(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_File(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ImageWidth(long*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ImageHeight(long*) override { return E_NOTIMPL; }
    STDMETHODIMP get_MousePointer(short* value) override;
    STDMETHODIMP put_MousePointer(short value) override;
    STDMETHODIMP get_MouseIcon(IPictureDisp**) override { return E_NOTIMPL; }
    STDMETHODIMP putref_MouseIcon(IPictureDisp*) override { return E_NOTIMPL; }
    STDMETHODIMP FitPicture() override { return E_NOTIMPL; }
    STDMETHODIMP Get_Proportion(long*, long*, long*, long*) override { return E_NOTIMPL; }
};

/// A source of the events of CVrxHDR.
class Events final : public vrx::ObjectBase<_CVrxPattern, vrx::EventSource> {
  public:
    Events();
    ~Events() override;

    std::function<void()> onEnd;   ///< body of the destructor
    std::function<void()> onLoad;  ///< body of Load

    using EventSource::fire;

    STDMETHODIMP get_REGKEY(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_REGKEY(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP Load(BSTR* Default) override;
    STDMETHODIMP Get_PatternFromString(BSTR, long, VARIANT*) override { return E_NOTIMPL; }
};

}  // namespace probe
