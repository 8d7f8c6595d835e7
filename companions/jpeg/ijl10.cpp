// Functions of ijl10.dll. Each answers 0 or a negative number, and lets no exception out.

#include <windows.h>

#include <cstring>
#include <new>

#include "com/runtime_calls.h"
#include "ground/error.h"
#include "jpeg/codec_calls.h"
#include "jpeg/engine/record_check.h"
#include "jpeg/engine/status.h"
#include "jpeg/host_memory.h"
#include "raster/engine/jpeg_core_properties.h"

using vrx::JpegCoreProperties;
using vrx::JpegRequest;
using vrx::jpeg::Failure;
using vrx::jpeg::Status;

namespace {

/// Runs `body` on a copy of the host's record, and gives the host what became of it when all went well.
template <class Body>
std::int32_t onRecord(void* address, Status fileFailure, Body body) noexcept {
    try {
        const auto bytes =
            vrx::jpeg::writableBytes(reinterpret_cast<vrx::Address>(address), sizeof(JpegCoreProperties));
        JpegCoreProperties record;
        std::memcpy(&record, bytes.data(), sizeof record);
        body(record);
        std::memcpy(bytes.data(), &record, sizeof record);
        return static_cast<std::int32_t>(Status::Ok);
    } catch (const Failure& failure) {
        return static_cast<std::int32_t>(failure.status);
    } catch (const std::bad_alloc&) {
        return static_cast<std::int32_t>(Status::OutOfMemory);
    } catch (const vrx::Error& error) {
        const bool noMemory = error.number == static_cast<std::int32_t>(vrx::Platform::OutOfMemory);
        return static_cast<std::int32_t>(noMemory ? Status::OutOfMemory : fileFailure);
    } catch (...) {
        return static_cast<std::int32_t>(Status::InternalError);
    }
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
    if (reason == DLL_THREAD_DETACH) vrx::releaseThreadAtItsEnd();
    if (reason == DLL_PROCESS_DETACH && !processEnds) vrx::releaseRuntimeAtUnload();
    return TRUE;
}

std::int32_t WINAPI ijlInit(void* record) {
    return onRecord(record, Status::InternalError, vrx::jpeg::initialise);
}

/// The codec keeps nothing between calls.
std::int32_t WINAPI ijlFree(void* record) {
    return onRecord(record, Status::InternalError, [](JpegCoreProperties&) {});
}

std::int32_t WINAPI ijlRead(void* record, std::int32_t request) {
    return onRecord(record, Status::NotReadable, [&](JpegCoreProperties& copy) {
        vrx::jpeg::read(copy, static_cast<JpegRequest>(request));
    });
}

std::int32_t WINAPI ijlWrite(void* record, std::int32_t request) {
    return onRecord(record, Status::NotWritable, [&](JpegCoreProperties& copy) {
        vrx::jpeg::write(copy, static_cast<JpegRequest>(request));
    });
}

const char* WINAPI ijlGetLibVersion() { return VRX_CODEC_VERSION; }

const char* WINAPI ijlGetErrorString(std::int32_t code) {
    return vrx::jpeg::textOf(static_cast<Status>(code));
}

}  // extern "C"
