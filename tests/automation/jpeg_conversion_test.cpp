// CVrxImage.Convert_BMP_to_JPG over and over: what stays behind.

#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>

#include "VrxCommon.h"
#include "common/message_box.h"
#include "failure.h"
#include "gdi_handles.h"
#include "host.h"
#include "kernel_handles.h"
#include "message_box_watcher.h"
#include "picture_bytes.h"
#include "raster/mIntelJPEGLibrary.h"
#include "throwaway_folder.h"

using vrx::Bstr;

namespace {

std::size_t committedMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

class JpegConversion : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const vrx::ComPtr<_CVrxImage> image_ = host::create(L"VrxCommon.CVrxImage").as<_CVrxImage>();
    const std::wstring input_ = folder_.write(L"in.bmp", host::bmpFile(64, 48, {10, 200, 90}));

    HRESULT convert(const std::wstring& output) const {
        const Bstr target(SysAllocString(output.c_str()));
        const Bstr source(SysAllocString(input_.c_str()));
        return image_->Convert_BMP_to_JPG(target.get(), 90, source.get());
    }
    void convertTimes(int count) const {
        for (int i = 0; i < count; ++i) ASSERT_EQ(convert(folder_ / L"out.jpg"), S_OK);
    }
};

TEST_F(JpegConversion, TwoThousandConversionsKeepTheProcessesMemoryFlat) {
    convertTimes(200);
    const std::size_t before = committedMemory();
    const DWORD start = GetTickCount();
    convertTimes(2000);
    RecordProperty("milliseconds", static_cast<int>(GetTickCount() - start));
    // A quarter of a kilobyte for each would be more than this.
    EXPECT_LT(committedMemory(), before + 512 * 1024);
}

/// What 50 times of an action take of the process's memory.
template <class Action>
std::ptrdiff_t memoryOf(Action action) {
    for (int i = 0; i < 10; ++i) action();
    const std::size_t before = committedMemory();
    for (int i = 0; i < 50; ++i) action();
    return static_cast<std::ptrdiff_t>(committedMemory() - before);
}

TEST_F(JpegConversion, ConversionsThatFailKeepHandlesAndNoMoreMemoryThanTheirMessageBoxes) {
    host::MessageBoxWatcher watcher;
    const auto fail = [&] { EXPECT_EQ(host::failureOf(convert(folder_ / L"no\\out.jpg")).number, 123); };
    const std::ptrdiff_t boxes = memoryOf([] { vrx::showMessage(vrx::kSaveJpgFailure, MB_ICONEXCLAMATION); });
    fail();
    const std::size_t kernel = host::kernelHandles();
    const std::size_t drawing = host::freeGdiHandles();
    EXPECT_LT(memoryOf(fail), boxes + 512 * 1024);
    EXPECT_LE(host::kernelHandles(), kernel);
    EXPECT_GE(host::freeGdiHandles(), drawing);
}

}  // namespace
