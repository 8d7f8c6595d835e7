// Events: connecting and disconnecting, firing, and sinks that do their worst.

#include <gtest/gtest.h>

#include <olectl.h>

#include <array>

#include "host.h"
#include "probes.h"
#include "sink.h"

using host::Sink;
using vrx::ComPtr;

namespace {

const IID& kEvents = DIID___CVrxHDR;

class Connections : public testing::Test {
  protected:
    ComPtr<probe::Events> source_ = probe::make<probe::Events>();
    ComPtr<IConnectionPoint> point_ = host::connectionPoint(*source_.as<IDispatch>(), kEvents);
    int calls_ = 0;

    void SetUp() override { ASSERT_TRUE(point_); }

    ComPtr<Sink> counter() {
        return Sink::make(kEvents, [this](DISPID, const DISPPARAMS&) { return ++calls_, S_OK; });
    }
    DWORD advise(IUnknown& sink) {
        DWORD cookie = 0;
        EXPECT_EQ(point_->Advise(&sink, &cookie), S_OK);
        EXPECT_NE(cookie, 0u);
        return cookie;
    }
};

TEST_F(Connections, BringTheArgumentsInReverseOrder) {
    std::vector<long> seen;
    const auto sink = Sink::make(kEvents, [&](DISPID event, const DISPPARAMS& arguments) {
        seen = {event, static_cast<long>(arguments.cArgs), static_cast<long>(arguments.cNamedArgs),
                V_I4(&arguments.rgvarg[0]), V_I4(&arguments.rgvarg[1])};
        return S_OK;
    });
    advise(*sink);
    source_->fire(2, std::array{host::integer(640), host::integer(480)});
    EXPECT_EQ(seen, std::vector<long>({2, 2, 0, 480, 640}));
}

TEST_F(Connections, ReachEverySinkUntilItIsUnadvised) {
    const auto first = counter();
    const auto second = counter();
    const DWORD cookie = advise(*first);
    EXPECT_NE(cookie, advise(*second));
    source_->fire(3);
    EXPECT_EQ(calls_, 2);
    EXPECT_EQ(point_->Unadvise(cookie), S_OK);
    EXPECT_EQ(first->references(), 1u);
    source_->fire(3);
    EXPECT_EQ(calls_, 3);
    EXPECT_EQ(point_->Unadvise(cookie), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point_->Unadvise(0), CONNECT_E_NOCONNECTION);
}

TEST_F(Connections, AreRefusedToSinksWithoutTheEventInterface) {
    const auto stranger = Sink::make(IID_IStream, [](DISPID, const DISPPARAMS&) { return S_OK; });
    DWORD cookie = 7;
    EXPECT_EQ(point_->Advise(stranger.get(), &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0u);
    EXPECT_EQ(point_->Advise(nullptr, &cookie), E_POINTER);
    EXPECT_EQ(point_->Advise(stranger.get(), nullptr), E_POINTER);
    EXPECT_EQ(stranger->references(), 1u);
}

TEST_F(Connections, KnowTheirInterfaceAndTheirContainer) {
    IID events{};
    EXPECT_EQ(point_->GetConnectionInterface(&events), S_OK);
    EXPECT_TRUE(events == kEvents);
    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(point_->GetConnectionPointContainer(container.put()), S_OK);
    EXPECT_EQ(container.as<IUnknown>().get(), source_.as<IUnknown>().get());
    EXPECT_FALSE(point_.as<IConnectionPointContainer>());
    IConnectionPoint* none = nullptr;
    EXPECT_EQ(container->FindConnectionPoint(IID_IStream, &none), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(none, nullptr);
}

TEST_F(Connections, AreEnumerated) {
    const auto first = counter();
    const auto second = counter();
    const DWORD cookies[] = {advise(*first), advise(*second)};
    ComPtr<IEnumConnections> list;
    ASSERT_EQ(point_->EnumConnections(list.put()), S_OK);
    CONNECTDATA found[3] = {};
    ULONG fetched = 9;
    EXPECT_EQ(list->Next(3, found, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2u);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(found[i].dwCookie, cookies[i]);
        found[i].pUnk->Release();
    }
    EXPECT_EQ(list->Reset(), S_OK);
    EXPECT_EQ(list->Skip(1), S_OK);
    ComPtr<IEnumConnections> clone;
    ASSERT_EQ(list->Clone(clone.put()), S_OK);
    EXPECT_EQ(clone->Next(1, found, nullptr), S_OK);
    EXPECT_EQ(found[0].dwCookie, cookies[1]);
    found[0].pUnk->Release();
    EXPECT_EQ(list->Skip(2), S_FALSE);
}

TEST_F(Connections, AreFoundByEnumeratingThePoints) {
    const auto container = source_.as<IConnectionPointContainer>();
    ComPtr<IEnumConnectionPoints> list;
    ASSERT_EQ(container->EnumConnectionPoints(list.put()), S_OK);
    ComPtr<IConnectionPoint> found;
    ULONG fetched = 0;
    ASSERT_EQ(list->Next(1, found.put(), &fetched), S_OK);
    EXPECT_EQ(found.get(), point_.get());
    IConnectionPoint* none = nullptr;
    EXPECT_EQ(list->Next(1, &none, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
}

TEST_F(Connections, PassOverSinksThatFail) {
    const auto failing = Sink::make(kEvents, [](DISPID, const DISPPARAMS&) { return E_FAIL; });
    const auto raising = Sink::make(kEvents, [](DISPID, const DISPPARAMS&) { return DISP_E_EXCEPTION; });
    const auto last = counter();
    advise(*failing);
    advise(*raising);
    advise(*last);
    source_->fire(3);
    EXPECT_EQ(calls_, 1);
}

TEST_F(Connections, MayBeEndedFromInsideAnEvent) {
    DWORD cookies[2] = {};
    const auto killer = Sink::make(kEvents, [&](DISPID, const DISPPARAMS&) {
        for (DWORD cookie : cookies) point_->Unadvise(cookie);
        return S_OK;
    });
    const auto victim = counter();
    cookies[0] = advise(*killer);
    cookies[1] = advise(*victim);
    source_->fire(3);
    EXPECT_EQ(calls_, 0) << "a sink is not called once it is unadvised";
    EXPECT_EQ(victim->references(), 1u);
    source_->fire(3);
    EXPECT_EQ(calls_, 0);
}

TEST_F(Connections, MadeInsideAnEventBeginWithTheNextOne) {
    const auto late = counter();
    const auto inviting = Sink::make(kEvents, [&](DISPID, const DISPPARAMS&) {
        if (late->references() == 1) advise(*late);
        return S_OK;
    });
    advise(*inviting);
    source_->fire(3);
    EXPECT_EQ(calls_, 0);
    source_->fire(3);
    EXPECT_EQ(calls_, 1);
}

TEST_F(Connections, LetTheHostReleaseTheObjectInsideAnEvent) {
    bool destroyed = false;
    bool destroyedInside = true;
    source_->onEnd = [&] { destroyed = true; };
    source_->onLoad = [object = source_.get()] { object->fire(3); };
    IDispatch* last = source_.as<IDispatch>().detach();
    const auto releasing = Sink::make(kEvents, [&](DISPID, const DISPPARAMS&) {
        last->Release();
        destroyedInside = destroyed;
        return S_OK;
    });
    advise(*releasing);
    point_ = {};
    source_ = {};
    EXPECT_FALSE(destroyed);
    EXPECT_EQ(host::call(*last, L"Load", {host::Text(L"")}).code, S_OK);
    EXPECT_FALSE(destroyedInside);
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(releasing->references(), 1u);
}

TEST_F(Connections, CarryEventsOfTheObjectsEnd) {
    int ends = 0;
    source_->onEnd = [&, object = source_.get()] {
        ++ends;
        const ComPtr<IDispatch> reference = ComPtr<probe::Events>(object).as<IDispatch>();
        object->fire(3);
    };
    const auto sink = counter();
    advise(*sink);
    point_ = {};
    source_ = {};
    EXPECT_EQ(ends, 1) << "references taken by the destructor do not end the object again";
    EXPECT_EQ(calls_, 1);
    EXPECT_EQ(sink->references(), 1u);
}

TEST_F(Connections, FailWhenEventsAreNestedTooDeeply) {
    int depth = 0;
    int deepest = 0;
    std::vector<HRESULT> failures;
    source_->onLoad = [this] { source_->fire(3); };
    const auto recursive = Sink::make(kEvents, [&](DISPID, const DISPPARAMS&) {
        deepest = std::max(deepest, ++depth);
        const host::Outcome outcome = host::call(*source_, L"Load", {host::Text(L"")});
        if (outcome.code != S_OK) failures.push_back(outcome.scode);
        --depth;
        return S_OK;
    });
    advise(*recursive);
    source_->fire(3);
    EXPECT_EQ(deepest, 32);
    EXPECT_EQ(failures, std::vector<HRESULT>({static_cast<HRESULT>(0x800A001C)}));  // 28, once at the bottom
    EXPECT_EQ(depth, 0);
    source_->fire(3);
    EXPECT_EQ(failures.size(), 2u) << "the depth is counted anew";
}

TEST(PublishedClass, ConnectsSinksToItsEvents) {
    const ComPtr<IDispatch> object = host::create(L"VrxCommon.CVrxHDR");
    ASSERT_TRUE(object);
    const ComPtr<IConnectionPoint> point = host::connectionPoint(*object, kEvents);
    ASSERT_TRUE(point);
    const auto sink = Sink::make(kEvents, [](DISPID, const DISPPARAMS&) { return S_OK; });
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(sink.get(), &cookie), S_OK);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink->references(), 1u);
}

}  // namespace
