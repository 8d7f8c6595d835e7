// Hosts that stop, restart, replace or fail a load from inside its events.
#include "hdr/engine/hdr_loader.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "failure.h"
#include "recording_host.h"

namespace vrx::test {
namespace {

using Calls = std::vector<std::string>;

/// A row of 4 * 60 literal runs of one byte each.
void appendRowOfManyRuns(FileBytes& file) {
    append(file, {2, 2, 0, 60});
    for (int i = 0; i < 4 * 60; ++i) append(file, {1, 77});
}

struct LoaderEvents : testing::Test, LoadingObject {
    LoaderEvents() {
        host.files[u"a"] = pictureFile(4, 3);
        host.files[u"b"] = pictureFile(5, 2);
        host.files[u"flat"] = headerFile(2, 1);
        append(host.files[u"flat"], {9, 9, 9, 136, 9, 9, 9, 136});
        host.files[u"many"] = headerFile(60, 2);
        appendRowOfManyRuns(host.files[u"many"]);
        appendRowOfManyRuns(host.files[u"many"]);
    }

    [[nodiscard]] bool holdsA() const { return holds(4, 3); }
    [[nodiscard]] bool holdsB() const { return holds(5, 2); }

  private:
    [[nodiscard]] bool holds(int dimX, int dimY) const {
        if (picture.dimX() != dimX || picture.dimY() != dimY || picture.store().dimX() != dimX) return false;
        for (int y = 0; y < dimY; ++y) {
            if (!holdsScanline(picture.store(), y, y)) return false;
        }
        return true;
    }
};

// Stopping.

TEST_F(LoaderEvents, EndHdrDuringAPreviewLoadEndsItAfterTheCurrentRowOnFinishIsStillRaised) {
    host.at("refresh", [this] { loader.end(); });
    preview(u"a");
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3", "yield", "refresh", "refresh", "finished"}));
    EXPECT_TRUE(holdsScanline(picture.store(), 0, 0));
    EXPECT_TRUE(isZeroRow(picture.store(), 1));
    EXPECT_FALSE(loader.loading());
}

TEST_F(LoaderEvents, EndInTheFirstYieldOfARowSkipsItsRefresh) {
    host.at("yield", [this] { loader.end(); });
    preview(u"a");
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3", "yield", "refresh", "finished"}));
}

TEST_F(LoaderEvents, EndInTheSecondYieldOfARowComesBeforeTheNextRow) {
    host.at("yield", 4, [this] { loader.end(); });
    preview(u"a");
    EXPECT_EQ(host.count("yield"), 4);
    EXPECT_TRUE(holdsScanline(picture.store(), 1, 1));
    EXPECT_TRUE(isZeroRow(picture.store(), 2));
}

TEST_F(LoaderEvents, EndAtTheHeaderLeavesAPreviewAfterTheFirstRow) {
    host.at("header", [this] { loader.end(); });
    preview(u"a");
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "refresh", "finished"}));
    EXPECT_TRUE(holdsScanline(picture.store(), 0, 0));
    EXPECT_TRUE(isZeroRow(picture.store(), 1));
}

TEST_F(LoaderEvents, EndAtTheHeaderDoesNotStopAFullLoadOfRowsBelow50Runs) {
    host.at("header", [this] { loader.end(); });
    load(u"a");
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3", "finished"}));
    EXPECT_TRUE(holdsA());
}

TEST_F(LoaderEvents, EndAtTheHeaderStopsAFullLoadAtTheFirst50thRunOfARow) {
    host.at("header", [this] { loader.end(); });
    load(u"many");
    EXPECT_EQ(host.calls, (Calls{"read many", "header 60x2", "yield", "finished"}));
    EXPECT_EQ(picture.store().row(0, 0)[49], 77);
    EXPECT_EQ(picture.store().row(0, 0)[50], 0);
    EXPECT_TRUE(isZeroRow(picture.store(), 1));
}

TEST_F(LoaderEvents, ARowThatAPreviewLeavesAtIts50thRunIsNotPainted) {
    host.at("header", [this] { loader.end(); });
    preview(u"many");
    EXPECT_EQ(host.events(), (Calls{"read many", "header 60x2", "refresh", "finished"}));
    EXPECT_EQ(picture.store().row(0, 0)[49], 77);
    // Without exposure and gamma every pixel that is painted has the bytes 1. Row 0 is the second in memory.
    EXPECT_EQ(picture.preview().data()[180], 0);
}

TEST_F(LoaderEvents, RowsOfManyRunsAreReadWholeWhenNothingIsToStop) {
    load(u"many");
    EXPECT_EQ(host.calls, (Calls{"read many", "header 60x2", "finished"}));
    EXPECT_EQ(picture.store().row(3, 1)[59], 77);
}

TEST_F(LoaderEvents, AnEndFromBeforeDoesNotStopTheNextLoad) {
    loader.end();
    preview(u"a");
    EXPECT_TRUE(holdsA());
    EXPECT_EQ(host.count("yield"), 6);
}

TEST_F(LoaderEvents, EndAtTheFinishChangesNothing) {
    host.at("finished", [this] { loader.end(); });
    preview(u"a");
    EXPECT_TRUE(holdsA());
    EXPECT_EQ(host.count("finished"), 1);
}

TEST_F(LoaderEvents, InitEndsALoadAndForgetsARestart) {
    host.at("refresh", [this] {
        loader.parameterChanged();
        loader.cancel();
        EXPECT_FALSE(loader.loading());
    });
    preview(u"a");
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "refresh", "refresh", "finished"}));
    EXPECT_TRUE(isZeroRow(picture.store(), 1));
}

// Restarting.

TEST_F(LoaderEvents, AssigningExposureDuringALoadMakesTheLoadStartAgainFromTheFirstRowAfterItEnds) {
    host.at("yield", 3, [this] {
        picture.setExposure(2.0F);
        loader.parameterChanged();
    });
    preview(u"a");
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "refresh", "refresh", "finished",  //
                                    "read a", "header 4x3", "refresh", "refresh", "finished"}));
    EXPECT_TRUE(holdsA());
}

TEST_F(LoaderEvents, AssigningGammaDoesNotRestart) {
    host.at("refresh", [this] { picture.setGamma(2.0F); });
    preview(u"a");
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "refresh", "refresh", "finished"}));
}

TEST_F(LoaderEvents, AssigningExposureDuringALoadEndsItEarlyAndThenTheWholeLoadRunsAgain) {
    host.at("refresh", [this] { loader.parameterChanged(); });
    host.at("finished", 1, [this] { EXPECT_TRUE(isZeroRow(picture.store(), 1)); });
    preview(u"a");
    // 1 yield in the run that is left, 2 for each of 3 rows in the other.
    EXPECT_EQ(host.count("yield"), 7);
    EXPECT_TRUE(holdsA());
}

TEST_F(LoaderEvents, EveryEventCanAskForARestart) {
    for (const char* kind : {"read", "header", "refresh", "yield", "finished"}) {
        LoadingObject object;
        object.host.files = host.files;
        object.host.at(kind, [&object] { object.loader.parameterChanged(); });
        object.preview(u"a");
        EXPECT_EQ(object.host.count("read a"), 2) << kind;
        EXPECT_EQ(object.host.count("finished"), 2) << kind;
        EXPECT_TRUE(holdsScanline(object.picture.store(), 2, 2)) << kind;
        EXPECT_FALSE(object.loader.loading()) << kind;
    }
}

TEST_F(LoaderEvents, AFullLoadRestartsFromItsHeader) {
    host.at("header", [this] { loader.parameterChanged(); });
    load(u"a", true);
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3", "finished", "read a", "header 4x3", "finished"}));
    EXPECT_TRUE(holdsScanline(picture.store(), 1, 2));
}

TEST_F(LoaderEvents, ALoadRestartsAsOftenAsItIsAskedTo) {
    for (int nth = 1; nth <= 5; ++nth) host.at("header", nth, [this] { loader.parameterChanged(); });
    load(u"a");
    EXPECT_EQ(host.count("finished"), 6);
}

TEST_F(LoaderEvents, AParameterChangedWhileIdleRestartsNothing) {
    loader.parameterChanged();
    load(u"a");
    loader.parameterChanged();
    load(u"a");
    EXPECT_EQ(host.count("finished"), 2);
}

TEST_F(LoaderEvents, AFileNameSetDuringALoadIsTheNextOneRead) {
    host.at("refresh", [this] { loader.setFileName(u"b"); });
    preview(u"a");
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "refresh", "refresh", "finished",  //
                                    "read b", "header 5x2", "refresh", "refresh", "finished"}));
    EXPECT_TRUE(holdsB());
    EXPECT_EQ(loader.fileName(), u"b");
}

TEST_F(LoaderEvents, AFileNameSetWhileIdleIsOnlyKept) {
    loader.setFileName(u"b");
    EXPECT_EQ(loader.fileName(), u"b");
    EXPECT_EQ(host.calls, Calls{});
    load(u"a");
    EXPECT_EQ(loader.fileName(), u"a");
    EXPECT_EQ(host.count("finished"), 1);
}

TEST_F(LoaderEvents, ABlankFileNameSetDuringALoadEndsIt) {
    host.at("refresh", [this] { loader.setFileName(u" "); });
    preview(u"a");
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "refresh", "refresh", "finished"}));
    EXPECT_FALSE(loader.loading());
}

TEST_F(LoaderEvents, TheNameErrorSetDuringALoadFailsIt) {
    host.at("refresh", [this] { loader.setFileName(u"Error"); });
    EXPECT_EQ(failureOf([this] { preview(u"a"); }), kWrongFileType);
    EXPECT_FALSE(loader.loading());
}

TEST_F(LoaderEvents, ARestartReplacesAFailure) {
    host.at("header", [this] { loader.setFileName(u"b"); });
    EXPECT_EQ(failureOf([this] { load(u"flat"); }), std::nullopt);
    EXPECT_EQ(host.calls, (Calls{"read flat", "header 2x1", "read b", "header 5x2", "finished"}));
    EXPECT_TRUE(holdsB());
}

TEST_F(LoaderEvents, OnlyTheLastRunsFailureLeaves) {
    host.at("header", [this] { loader.setFileName(u"missing"); });
    EXPECT_EQ(errorNumberOf([this] { load(u"flat"); }), 53);
    EXPECT_EQ(errorNumberOf([this] { load(u"flat"); }), 1);
}

// Loads inside events.

TEST_F(LoaderEvents, ALoadStartedAtTheHeaderTakesThePlaceOfTheOneThatRuns) {
    host.at("header", [this] { load(u"b"); });
    load(u"a");
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3",              //
                                 "read b", "header 5x2", "finished",  //
                                 "finished"}));
    EXPECT_TRUE(holdsB());
    EXPECT_EQ(loader.fileName(), u"b");
    EXPECT_FALSE(loader.loading());
}

TEST_F(LoaderEvents, APreviewStartedInAnyEventIsTheOneShownInTheEnd) {
    for (const char* kind : {"header", "refresh", "yield", "finished"}) {
        LoadingObject object;
        object.host.files = host.files;
        object.host.at(kind, [&object] {
            object.loader.cancel();
            object.preview(u"b");
        });
        object.preview(u"a");
        EXPECT_EQ(object.picture.dimX(), 5) << kind;
        EXPECT_EQ(object.picture.preview().width(), 5U) << kind;
        EXPECT_TRUE(holdsScanline(object.picture.store(), 1, 1)) << kind;
        EXPECT_EQ(object.host.count("finished"), 2) << kind;
        EXPECT_FALSE(object.loader.loading()) << kind;
    }
}

TEST_F(LoaderEvents, ALoadOfTheSameFileInsideALoadLeavesItWhole) {
    host.at("yield", [this] { preview(u"a"); });
    preview(u"a");
    EXPECT_TRUE(holdsA());
    EXPECT_EQ(host.count("read a"), 2);
}

TEST_F(LoaderEvents, AFailedPreviewInsideAnEventEndsTheOneThatRuns) {
    host.at("refresh", [this] { EXPECT_EQ(errorNumberOf([this] { preview(u"missing"); }), 53); });
    preview(u"a");
    EXPECT_EQ(host.events(),
              (Calls{"read a", "header 4x3", "refresh", "read missing", "refresh", "finished"}));
    EXPECT_TRUE(isZeroRow(picture.store(), 1));
}

TEST_F(LoaderEvents, TheNameErrorPreviewedInsideAnEventEndsTheOneThatRuns) {
    host.at("refresh", [this] { EXPECT_EQ(errorNumberOf([this] { preview(u"Error"); }), 1); });
    preview(u"a");
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "refresh", "refresh", "finished"}));
    EXPECT_TRUE(isZeroRow(picture.store(), 1));
}

TEST_F(LoaderEvents, ABlankNamePreviewedInsideAnEventChangesNothing) {
    host.at("refresh", [this] { preview(u""); });
    preview(u"a");
    EXPECT_TRUE(holdsA());
}

TEST_F(LoaderEvents, ALoadCalledInsideAnEventOfARunningPreviewLeavesNoFurtherRefreshToTheOuterRun) {
    for (const char16_t* name : {u"b", u"", u"Error", u"missing"}) {
        for (const char* kind : {"header", "refresh", "yield"}) {
            LoadingObject object;
            object.host.files = host.files;
            int refreshes = -1;
            object.host.at(kind, [&] {
                refreshes = object.host.count("refresh");
                const auto failure = failureOf([&] { object.load(name); });
                EXPECT_EQ(failure.has_value(), name[0] == 'E' || name[0] == 'm');
            });
            object.preview(u"a");
            EXPECT_EQ(object.host.count("refresh"), refreshes) << kind;
            EXPECT_EQ(object.host.calls.back(), "finished") << kind;
            EXPECT_EQ(object.host.count("finished"), name[0] == 'b' ? 2 : 1) << kind;
            EXPECT_FALSE(object.loader.loading()) << kind;
            EXPECT_EQ(object.picture.dimX(), name[0] == 'b' ? 5 : 4) << kind;
            EXPECT_EQ(object.picture.store().dimX(), object.picture.dimX()) << kind;
        }
    }
}

TEST_F(LoaderEvents, APreviewOfABlankNameAtTheHeaderMakesALoadOneWithAPreview) {
    host.at("header", [this] { preview(u""); });
    load(u"a", true);
    EXPECT_TRUE(holdsA()) << "not inverted";
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "refresh", "refresh", "finished"}));
    EXPECT_EQ(picture.preview().data()[0], 1) << "without exposure and gamma";
}

TEST_F(LoaderEvents, WhetherALoadRunsIsToldByTheLastOneThatEnded) {
    host.at("refresh", [this] {
        preview(u"b");
        EXPECT_FALSE(loader.loading());
        loader.parameterChanged();
    });
    preview(u"a");
    EXPECT_EQ(host.count("read a") + host.count("read b"), 2) << "nothing that runs is to begin again";
}

TEST_F(LoaderEvents, TheSizesAreTheLastAnnouncedOnes) {
    host.at("header", [this] {
        EXPECT_EQ(errorNumberOf([this] { load(u"missing"); }), 53);
        EXPECT_EQ(picture.dimX(), 4);
        picture.setStore(RgbeStore(9, 8));
        EXPECT_EQ(picture.dimX(), 9);
    });
    preview(u"a");
    EXPECT_EQ(picture.dimX(), 9);
    EXPECT_EQ(picture.dimY(), 8);
}

TEST_F(LoaderEvents, ARestartAskedForInAnInnerLoadRunsTheInnerFileAgain) {
    host.at("header", 1, [this] { preview(u"b"); });
    host.at("header", 2, [this] { loader.parameterChanged(); });
    preview(u"a");
    EXPECT_EQ(host.count("read a"), 1);
    EXPECT_EQ(host.count("read b"), 2);
    EXPECT_TRUE(holdsB());
}

// Pixels exchanged inside events.

TEST_F(LoaderEvents, ClearingInAnyEventEndsTheLoadWithAnEmptyPicture) {
    for (const char* kind : {"header", "refresh", "yield", "finished"}) {
        LoadingObject object;
        object.host.files = host.files;
        object.host.at(kind, [&object] { object.picture.clear(); });
        object.preview(u"a");
        EXPECT_EQ(object.picture.dimX(), 0) << kind;
        EXPECT_EQ(object.picture.dimY(), 0) << kind;
        EXPECT_TRUE(object.picture.store().empty()) << kind;
        EXPECT_EQ(object.host.count("finished"), 1) << kind;
    }
}

TEST_F(LoaderEvents, PixelsSetInAnyEventStayAsTheHostGaveThem) {
    for (const char* kind : {"header", "refresh", "yield", "finished"}) {
        LoadingObject object;
        object.host.files = host.files;
        object.host.at(kind, [&object] {
            RgbeStore store(1, 7);
            store.row(0, 1)[0] = 99;
            object.picture.setStore(std::move(store));
        });
        object.preview(u"a");
        EXPECT_EQ(object.picture.dimX(), 1) << kind;
        EXPECT_EQ(object.picture.dimY(), 7) << kind;
        EXPECT_TRUE(isZeroRow(object.picture.store(), 0)) << kind;
        EXPECT_EQ(object.picture.store().row(0, 1)[0], 99) << kind;
        EXPECT_EQ(object.host.count("finished"), 1) << kind;
    }
}

TEST_F(LoaderEvents, ClearingWhereALoadStopsInsideARowIsSafe) {
    for (const bool preview : {false, true}) {
        LoadingObject object;
        object.host.files = host.files;
        object.host.at("header", [&object] { object.loader.end(); });
        object.host.at("yield", [&object] { object.picture.clear(); });
        if (preview) {
            object.preview(u"many");
        } else {
            object.load(u"many");
        }
        EXPECT_TRUE(object.picture.store().empty());
        EXPECT_TRUE(object.picture.preview().empty());
        EXPECT_EQ(object.host.count("finished"), 1);
    }
}

// Events that fail.

TEST_F(LoaderEvents, AFailureOfAnyEventEndsTheLoadAndReachesTheCaller) {
    const Error failure{99, u"host", u"no"};
    for (const char* kind : {"read", "header", "refresh", "yield", "finished"}) {
        LoadingObject object;
        object.host.files = host.files;
        object.host.at(kind, [&failure] { throw Error(failure); });
        EXPECT_EQ(failureOf([&object] { object.preview(u"a"); }), failure) << kind;
        EXPECT_FALSE(object.loader.loading()) << kind;
        object.preview(u"b");
        EXPECT_TRUE(holdsScanline(object.picture.store(), 1, 1)) << kind;
    }
}

TEST_F(LoaderEvents, AnyOtherExceptionOfAHostEndsTheLoadAsWell) {
    host.at("refresh", [] { throw std::runtime_error("host"); });
    EXPECT_THROW(preview(u"a"), std::runtime_error);
    EXPECT_FALSE(loader.loading());
    EXPECT_EQ(host.count("finished"), 0);
    EXPECT_TRUE(holdsScanline(picture.store(), 0, 0));
}

TEST_F(LoaderEvents, ARestartReplacesAFailureOfAnEvent) {
    host.at("refresh", [this] {
        loader.parameterChanged();
        throw platformError(Platform::DiskNotReady);
    });
    EXPECT_EQ(failureOf([this] { preview(u"a"); }), std::nullopt);
    EXPECT_TRUE(holdsA());
}

}  // namespace
}  // namespace vrx::test
