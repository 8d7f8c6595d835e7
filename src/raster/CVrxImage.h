// Raster image: the published class around the bits of a bitmap, its files and its dialogs.
#pragma once

#include <string>

#include "VrxCommon.h"
#include "com/object_base.h"
#include "raster/image_dialogs.h"
#include "raster/raster_image.h"

namespace vrx {

class CVrxImage final : public ObjectBase<_CVrxImage> {
  public:
    explicit CVrxImage(const ImageDialogs& dialogs);

    STDMETHODIMP get_REGKEY(BSTR* value) override;
    STDMETHODIMP put_REGKEY(BSTR value) override;
    STDMETHODIMP get_DimX(long* value) override;
    STDMETHODIMP get_DimY(long* value) override;
    STDMETHODIMP Load(BSTR strPath, BSTR* value) override;
    STDMETHODIMP Get_Picture(float srcPX, long srcPY, float srcDX, long srcDY, float destPX, long destPY,
                             float destDX, long destDY, IPictureDisp** value) override;
    STDMETHODIMP See(BSTR strFileName) override;
    STDMETHODIMP Set_BMP(SAFEARRAY** r_arBMP, BmpInfo* r_BmpInfo) override;
    STDMETHODIMP Get_BMP(SAFEARRAY** r_arBMP, BmpInfo* r_BmpInfo) override;
    STDMETHODIMP Cls() override;
    STDMETHODIMP Save(BSTR strInputFile) override;
    STDMETHODIMP Convert_BMP_to_JPG(BSTR strOutPutFile, long lQuality, BSTR strInputFile) override;
    STDMETHODIMP Save_BMP(BSTR* strOutPutFile, BSTR* value) override;
    STDMETHODIMP Load_BMP(BSTR strFileName) override;

  private:
    ~CVrxImage() override = default;

    [[nodiscard]] std::u16string chooseFile(BSTR suggestion);
    void save(BSTR inputFile);

    const ImageDialogs& dialogs_;
    std::u16string regKey_;
    RasterImage image_;
    bool loadDialogOpen_ = false;
    bool saveDialogOpen_ = false;
};

}  // namespace vrx
