// What VrxCommon.dll publishes.
#include "com/class_table.h"

#include <windows.h>

#include <oleidl.h>

#include "BmpInfo.h"
#include "VrxCommon.h"
#include "com/object_base.h"
#include "common/CVrxFun.h"
#include "dialogs/VrxPreviewImg.h"
#include "dialogs/modal_dialogs.h"
#include "dialogs/resource.h"
#include "dialogs/settings_store.h"
#include "effects/ImageFX.h"
#include "hdr/CVrxHDR.h"
#include "pattern/CVrxPattern.h"
#include "pattern/editor/modal_editor.h"
#include "raster/CVrxImage.h"
#include "raster/mIntelJPEGLibrary.h"

namespace vrx {
namespace {

/// The manifest for registration-free use takes the OLEMISC names from here.
constexpr ControlTraits kVrxPreviewImg{OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE |
                                           OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                           OLEMISC_SETCLIENTSITEFIRST,
                                       IDB_VRXPREVIEWIMG};

HRESULT createHdr(REFIID iid, void** object) { return createObject<CVrxHDR>(iid, object, modalHdrDialogs()); }

HRESULT createImage(REFIID iid, void** object) {
    return createObject<CVrxImage>(iid, object, modalImageDialogs());
}

HRESULT createPattern(REFIID iid, void** object) {
    return createObject<CVrxPattern>(iid, object, modalPatternDialog());
}

const ClassRow kClasses[] = {
    {CLSID_CVrxHDR, L"CVrxHDR", L"VrxCommon high-dynamic-range picture", createHdr},
    {CLSID_CVrxImage, L"CVrxImage", L"VrxCommon raster image", createImage},
    {CLSID_ImageFX, L"ImageFX", L"VrxCommon image effects", createObject<ImageFX>},
    {CLSID_CVrxPattern, L"CVrxPattern", L"VrxCommon colour pattern", createPattern},
    {CLSID_CVrxFun, L"CVrxFun", L"VrxCommon general functions", createObject<CVrxFun>},
    {CLSID_VrxPreviewImg, L"VrxPreviewImg", L"VrxCommon preview", createObject<VrxPreviewImg>,
     &kVrxPreviewImg},
};

constexpr GUID kBmpInfoId = {0x7008D90C, 0x4753, 0x463B, {0x83, 0xDA, 0x3D, 0x8B, 0x32, 0xD9, 0x26, 0x9E}};
constexpr RecordRow kBmpInfo{kBmpInfoId, 2, sizeof(BmpInfo)};

void releaseHeldObjects() noexcept {
    releaseSettingsComponent();
    releaseCodec();
}

}  // namespace

const Publication kPublication = {
    .classes = kClasses,
    .libraryName = L"VrxCommon",
    .helpFileName = L"VrxCommon.chm",
    .typeLibraryCount = 2,
    .record = &kBmpInfo,
    .releaseHeldObjects = releaseHeldObjects,
};

}  // namespace vrx
