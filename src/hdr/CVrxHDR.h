// High-dynamic-range picture: the published class around the picture, its loader and its events.
#pragma once

#include <string>

#include "VrxCommon.h"
#include "com/connection_point.h"
#include "com/object_base.h"
#include "common/message_loop.h"
#include "hdr/engine/hdr_loader.h"
#include "hdr/engine/hdr_picture.h"
#include "hdr/hdr_dialogs.h"
#include "hdr/hdr_friend.h"
#include "raster/drawing_surface.h"
#include "raster/picture_rectangles.h"

namespace vrx {

class CVrxHDR final : public ObjectBase<_CVrxHDR, EventSource, HdrFriend>, private LoadHost {
  public:
    explicit CVrxHDR(const HdrDialogs& dialogs);

    STDMETHODIMP get_REGKEY(BSTR* value) override;
    STDMETHODIMP put_REGKEY(BSTR value) override;
    STDMETHODIMP get_HDRLoading(VARIANT_BOOL* value) override;
    STDMETHODIMP get_Gamma(float* value) override;
    STDMETHODIMP put_Gamma(float value) override;
    STDMETHODIMP get_Exposure(float* value) override;
    STDMETHODIMP put_Exposure(float value) override;
    STDMETHODIMP get_AutoExposition(VARIANT_BOOL* value) override;
    STDMETHODIMP put_AutoExposition(VARIANT_BOOL value) override;
    STDMETHODIMP get_AutoExpositionType(Enum_AutoExpositionType* value) override;
    STDMETHODIMP put_AutoExpositionType(Enum_AutoExpositionType value) override;
    STDMETHODIMP get_DimX(long* value) override;
    STDMETHODIMP get_DimY(long* value) override;
    STDMETHODIMP Get_Picture(float srcPX, long srcPY, float srcDX, long srcDY, float destPX, long destPY,
                             float destDX, long destDY, IPictureDisp** value) override;
    STDMETHODIMP Set_HDR(VARIANT* r_arHDR) override;
    STDMETHODIMP Get_HDR(VARIANT* r_arHDR) override;
    STDMETHODIMP Load(BSTR strPath, BSTR* value) override;
    STDMETHODIMP See(BSTR v_strFileName, float v_Exposure, float v_Gamma) override;
    STDMETHODIMP Save(BSTR strInputFile) override;
    STDMETHODIMP Convert_HDR_to_BMP(BSTR strOutPutFile, float Exposure, float Gamma) override;
    STDMETHODIMP Load_HDR(BSTR strFileName, VARIANT_BOOL* bInvert) override;
    STDMETHODIMP Save_HDR(BSTR strOutFileName, BSTR* value) override;
    STDMETHODIMP Get_Preview(BSTR strFileName) override;
    STDMETHODIMP Get_BMP() override;
    STDMETHODIMP Get_Compo(long X, long Y, long ICompo, float* value) override;
    STDMETHODIMP EndHDR() override;
    STDMETHODIMP Get_Pixel(long X, long Y, VARIANT* sRed, VARIANT* sGreen, VARIANT* sBlu) override;
    STDMETHODIMP Cls() override;
    STDMETHODIMP Init() override;

    STDMETHODIMP setFileName(BSTR name) override;

  private:
    ~CVrxHDR() override = default;

    // What a load needs; each call into the host may end with nobody but the load itself holding the object.
    Bytes readFile(const std::u16string& name) override;
    void headerLoaded(std::int32_t dimX, std::int32_t dimY) override;
    void refresh() override;
    void finished() override;
    void yield() override;
    void endIfAbandoned();

    void setExposure(float exposure);
    [[nodiscard]] std::u16string chooseFile(BSTR suggestion);
    void save();
    void takePixels(const VARIANT& pixels);
    [[nodiscard]] Variant copyOfPixels() const;
    void convertToBmp(const std::u16string& path, float exposure, float gamma);
    void saveFile(const std::u16string& path) const;
    [[nodiscard]] std::u16string failureOfWriting(const std::u16string& path) const;
    void writeFile(const std::u16string& path) const;
    [[nodiscard]] ComPtr<IPictureDisp> wholePicture();
    [[nodiscard]] ComPtr<IPictureDisp> pictureOf(const PictureRectangles& part);
    void readPixel(std::int32_t x, std::int32_t y, VARIANT& red, VARIANT& green, VARIANT& blue) const;

    const HdrDialogs& dialogs_;
    std::u16string regKey_;
    HdrPicture picture_;
    HdrLoader loader_;
    DrawingSurface surface_;
    MessageBreaks breaks_;
    bool loadDialogOpen_ = false;
    bool saveDialogOpen_ = false;
};

}  // namespace vrx
