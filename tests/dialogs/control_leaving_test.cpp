// Containers that leave the control's frames without returning, in one of the calls that they get.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "control_fixture.h"
#include "leaving.h"

namespace {

struct Leaving {
    const char* call;  ///< in which the container leaves
    LONG before;       ///< verbs that bring the control into the state for it
    LONG verb;         ///< that makes the control call; 0 for the end of the activation
};

constexpr LONG kNoVerb = OLEIVERB_DISCARDUNDOSTATE;
constexpr LONG kDeactivation = 0;

const Leaving kLeavings[] = {
    {"CanInPlaceActivate", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"OnInPlaceActivate", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"GetWindow", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"GetWindowContext", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"ShowObject", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"OnUIActivate", OLEIVERB_INPLACEACTIVATE, OLEIVERB_UIACTIVATE},
    {"SetActiveObject", OLEIVERB_INPLACEACTIVATE, OLEIVERB_UIACTIVATE},
    {"SetBorderSpace", OLEIVERB_INPLACEACTIVATE, OLEIVERB_UIACTIVATE},
    {"OnUIDeactivate", OLEIVERB_UIACTIVATE, kDeactivation},
    {"OnInPlaceDeactivate", OLEIVERB_UIACTIVATE, kDeactivation},
};

class LeftControl : public host::ControlTest, public testing::WithParamInterface<Leaving> {
  protected:
    HRESULT deactivate() { return as<IOleInPlaceObject>()->InPlaceDeactivate(); }

    /// Deeper in the stack than what the container calls later, as its own functions are.
    [[nodiscard, gnu::noinline]] bool endsByLeaving() {
        container_.onCall = [](const char* call) {
            if (std::string(call) == GetParam().call) host::leaveByJump();
            return S_OK;
        };
        const bool left = host::endsByJump([&] {
            static_cast<void>(GetParam().verb == kDeactivation ? deactivate() : verb(GetParam().verb));
        });
        container_.onCall = {};
        return left;
    }
};

TEST_P(LeftControl, CanBeActivatedAgainAndHoldsNoMoreReferences) {
    ASSERT_EQ(ole_->SetClientSite(container_.site()), S_OK);
    const ULONG references = container_.references();
    ASSERT_EQ(verb(GetParam().before), S_OK);
    EXPECT_TRUE(endsByLeaving());
    EXPECT_EQ(verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_TRUE(window());
    EXPECT_EQ(deactivate(), S_OK);
    EXPECT_EQ(container_.references(), references);
}

INSTANTIATE_TEST_SUITE_P(In, LeftControl, testing::ValuesIn(kLeavings),
                         [](const auto& tested) { return tested.param.call; });

}  // namespace
