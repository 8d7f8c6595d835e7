#include "com/class_table.h"

#include "VrxCommon.h"
#include "com/object_base.h"
#include "common/CVrxFun.h"
#include "dialogs/settings_store.h"
#include "effects/ImageFX.h"
#include "hdr/CVrxHDR.h"
#include "pattern/CVrxPattern.h"
#include "raster/CVrxImage.h"
#include "raster/mIntelJPEGLibrary.h"

namespace vrx {

std::span<const ClassRow> classTable() {
    static const ClassRow rows[] = {
        {CLSID_CVrxHDR, L"CVrxHDR", L"VrxCommon high-dynamic-range picture", createObject<CVrxHDR>},
        {CLSID_CVrxImage, L"CVrxImage", L"VrxCommon raster image", createObject<CVrxImage>},
        {CLSID_ImageFX, L"ImageFX", L"VrxCommon image effects", createObject<ImageFX>},
        {CLSID_CVrxPattern, L"CVrxPattern", L"VrxCommon colour pattern", createObject<CVrxPattern>},
        {CLSID_CVrxFun, L"CVrxFun", L"VrxCommon general functions", createObject<CVrxFun>},
    };
    return rows;
}

const wchar_t* libraryName() { return L"VrxCommon"; }

const wchar_t* helpFileName() { return L"VrxCommon.chm"; }

int typeLibraryCount() { return 2; }

void releaseHeldObjects() noexcept {
    releaseSettingsComponent();
    releaseCodec();
}

}  // namespace vrx
