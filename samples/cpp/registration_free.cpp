// Creates every class without registration: the program's manifest names the component's manifests, and they
// and the DLLs stand in the program's folder.
//   registration_free.exe

#include <windows.h>

#include <objbase.h>

#include <cstdio>

namespace {

const wchar_t* const kClasses[] = {L"VrxCommon.CVrxHDR",           L"VrxCommon.CVrxImage",
                                   L"VrxCommon.ImageFX",           L"VrxCommon.CVrxPattern",
                                   L"VrxCommon.CVrxFun",           L"VrxCommon.VrxPreviewImg",
                                   L"VrxSettings.SettingsRegistry"};

bool creates(const wchar_t* programId) {
    CLSID classId;
    IDispatch* object = nullptr;
    HRESULT result = CLSIDFromProgID(programId, &classId);
    if (SUCCEEDED(result))
        result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object));
    UINT typeInfos = 0;
    if (SUCCEEDED(result)) result = object->GetTypeInfoCount(&typeInfos);
    std::printf("%ls: %s (0x%08lX)\n", programId, SUCCEEDED(result) ? "created" : "failed", result);
    if (object) object->Release();
    return SUCCEEDED(result);
}

}  // namespace

int wmain() {
    CoInitialize(nullptr);
    bool allCreated = true;
    for (const wchar_t* const programId : kClasses) allCreated = creates(programId) && allCreated;
    CoUninitialize();
    return allCreated ? 0 : 1;
}
