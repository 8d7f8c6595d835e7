// Host code that leaves the library's frames without returning to them.

#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>

#include "hdr_host.h"
#include "leaving.h"

using host::Hdr;
using host::Listener;
using host::RgbePicture;

namespace {

/// How a handler leaves, and how the host notices.
struct Way {
    const char* name;
    void (*leave)();
    bool (*arrives)(const std::function<void()>& action);
};

template <DWORD Code>
bool arrivesByException(const std::function<void()>& action) {
    return host::exceptionEnding(action) == Code;
}

template <DWORD Code>
void leaveByException() {
    host::leaveByException(Code);
}

#ifdef _WIN64
/// The test's own run-time is another one than the component's. In 32 bits it finds no way through foreign
/// frames.
bool arrivesByThrow(const std::function<void()>& action) {
    try {
        action();
        return false;
    } catch (int) {
        return true;
    }
}
#endif

const Way kWays[] = {
#ifdef _WIN64
    {"CppException", [] { throw 1; }, arrivesByThrow},
#endif
    {"Jump", [] { host::leaveByJump(); }, host::endsByJump},
    {"MicrosoftException", leaveByException<host::kMicrosoftCpp>, arrivesByException<host::kMicrosoftCpp>},
    {"DelphiException", leaveByException<host::kDelphi>, arrivesByException<host::kDelphi>},
};

template <class Object>
long referencesOf(Object& object) {
    object.AddRef();
    return static_cast<long>(object.Release());
}

std::size_t ownMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

class LeftFrames : public testing::TestWithParam<Way> {
  protected:
    const host::ThrowawayFolder folder_;
    const RgbePicture picture_{20, 10};
    const std::wstring file_ = folder_.write(L"picture.hdr", picture_.file());
    Hdr hdr_;
    Listener listener_{hdr_};

    [[nodiscard]] bool isLeft(const std::function<void()>& action) const {
        return GetParam().arrives(action);
    }
    void preview() { static_cast<void>(hdr_.preview(file_)); }
    void load() { static_cast<void>(hdr_.load(file_)); }

    /// The object works like a new one.
    void expectWhole() {
        listener_.onHeader = listener_.onFinish = nullptr;
        listener_.onRefresh = nullptr;
        EXPECT_FALSE(hdr_.loading());
        listener_.log.clear();
        EXPECT_EQ(hdr_.preview(file_), S_OK);
        EXPECT_EQ(listener_.log, "header(20,10) refresh refresh finish ");
        EXPECT_EQ(hdr_.store(), picture_.store());
    }
};

TEST_P(LeftFrames, OfEveryEventLeaveAnIdleObjectThatLoadsAgain) {
    const auto leave = GetParam().leave;
    const long references = referencesOf(*hdr_.operator->());
    listener_.onHeader = leave;
    EXPECT_TRUE(isLeft([&] { preview(); }));
    EXPECT_FALSE(hdr_.loading());
    EXPECT_TRUE(isLeft([&] { load(); }));
    listener_.onHeader = nullptr;
    listener_.onRefresh = [&](IDispatch&) { leave(); };
    EXPECT_TRUE(isLeft([&] { preview(); }));
    EXPECT_TRUE(isLeft([&] { hdr_->Get_BMP(); }));
    listener_.onRefresh = nullptr;
    listener_.onFinish = leave;
    EXPECT_TRUE(isLeft([&] { load(); }));
    EXPECT_EQ(referencesOf(*hdr_.operator->()), references);
    expectWhole();
    EXPECT_EQ(referencesOf(*hdr_.operator->()), references);
}

TEST_P(LeftFrames, OfLateBoundCallsLeaveAnIdleObject) {
    const long references = referencesOf(*hdr_.operator->());
    listener_.onHeader = GetParam().leave;
    const host::Text name(file_.c_str());
    for (int i = 0; i < 40; ++i) {
        EXPECT_TRUE(isLeft([&] { host::call(hdr_.late(), L"Load_HDR", {name}); }));
        EXPECT_TRUE(isLeft([&] { host::call(hdr_.late(), L"Load_HDR", {name, host::truth(false)}); }));
    }
    EXPECT_EQ(referencesOf(*hdr_.operator->()), references);
    expectWhole();
}

TEST_P(LeftFrames, OfALoadWithinALoadEndOnlyThatOne) {
    listener_.onHeader = [&] {
        if (listener_.headers > 1) GetParam().leave();
        EXPECT_TRUE(isLeft([&] { load(); }));
        EXPECT_FALSE(hdr_.loading());
    };
    // The load within has taken the preview from the one around it.
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, "header(20,10) header(20,10) finish ");
    expectWhole();
}

/// Calls from a frame that covers all of the stack that the left ones had, without a gap.
[[gnu::noinline]] bool fromDeeperFrames(const std::function<bool()>& call) {
    volatile char room[30000];
    for (volatile char& byte : room) byte = 1;
    return call();
}

TEST_P(LeftFrames, AreGivenBackByACallThatTheHostMakesFromDeeperFrames) {
    listener_.onHeader = GetParam().leave;
    EXPECT_TRUE(isLeft([&] { preview(); }));
    EXPECT_FALSE(fromDeeperFrames([&] { return hdr_.loading(); }));
    expectWhole();
}

TEST_P(LeftFrames, OfAHundredThousandHandlersLeaveTheReferenceCountAndTheMemoryAsTheyWere) {
    const host::ThrowawayFolder folder;
    const vrx::Bstr small(SysAllocString(folder.write(L"small.hdr", RgbePicture(8, 1).file()).c_str()));
    listener_.onHeader = GetParam().leave;
    const auto leaveOften = [&](int times) {
        for (int i = 0; i < times; ++i) {
            listener_.log.clear();
            if (!isLeft([&] { hdr_->Load_HDR(small.get(), nullptr); })) FAIL() << i;
        }
    };
    leaveOften(1000);
    const long references = referencesOf(*hdr_.operator->());
    const std::size_t memory = ownMemory();
    leaveOften(100000);
    EXPECT_EQ(referencesOf(*hdr_.operator->()), references);
    EXPECT_LT(ownMemory(), memory + 400000);
    expectWhole();
}

/// Its value is asked for by a conversion.
class Value final : public IDispatch {
  public:
    explicit Value(void (*leave)()) : leave_(leave) {}
    virtual ~Value() = default;

    ULONG references = 1;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
        if (*object) AddRef();
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        leave_();
        return E_FAIL;
    }

  private:
    void (*leave_)();
};

TEST_P(LeftFrames, OfADefaultValueThatRaisesHoldNeitherTheArgumentsNorTheObject) {
    const auto effects = host::create(L"VrxCommon.ImageFX");
    ASSERT_TRUE(effects);
    const long references = referencesOf(*effects);
    Value value(GetParam().leave);
    VARIANT argument{};
    V_VT(&argument) = VT_DISPATCH;
    V_DISPATCH(&argument) = &value;
    const host::Text file(L"file");
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(isLeft([&] { host::call(*effects, L"ColorToBN", {file, host::integer(0), argument}); }));
    }
    EXPECT_EQ(referencesOf(*effects), references);
    EXPECT_EQ(value.references, 1u);
}

INSTANTIATE_TEST_SUITE_P(By, LeftFrames, testing::ValuesIn(kWays),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
