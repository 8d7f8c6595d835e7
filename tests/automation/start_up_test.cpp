// The library's error record, which its public methods share, in the program's own copy of the component.
#include "common/modStartUp.h"

#include <gtest/gtest.h>

#include <thread>

#include "com/com_ptr.h"
#include "com/error_info.h"
#include "com/variant_convert.h"
#include "dialogs/modal_dialogs.h"
#include "hdr/CVrxHDR.h"

namespace {

using vrx::errorRecord;

HRESULT loadMissingFile() {
    const vrx::ComPtr<_CVrxHDR> picture(new vrx::CVrxHDR(vrx::modalHdrDialogs()));
    VARIANT_BOOL invert = VARIANT_TRUE;
    return picture->Load_HDR(vrx::toBstr(u"Z:\\there is no such folder\\sky.hdr").get(), &invert);
}

TEST(ErrorRecordOfTheLibrary, HoldsWhatAMethodHasFailedWith) {
    errorRecord().Clear_Error();
    const HRESULT result = loadMissingFile();
    EXPECT_EQ(result, vrx::hresultOf(76));
    EXPECT_EQ(errorRecord().ErrNumber, 76);
    EXPECT_EQ(errorRecord().ErrSource, u"CVrxHDR");
    EXPECT_EQ(errorRecord().ErrDescription, u"Path not found");
    EXPECT_FALSE(errorRecord().ErrRecorded);
}

TEST(ErrorRecordOfTheLibrary, KeepsAnErrorThatIsTravellingWhileAnotherMethodFails) {
    errorRecord().Clear_Error();
    errorRecord().Record_Error({9, u"First", u"Subscript out of range"});
    EXPECT_EQ(loadMissingFile(), vrx::hresultOf(9));
    EXPECT_EQ(errorRecord().ErrSource, u"First");
    EXPECT_FALSE(errorRecord().ErrRecorded);
}

TEST(ErrorRecordOfTheLibrary, IsOneForEachThread) {
    errorRecord().Clear_Error();
    std::thread([] {
        EXPECT_EQ(errorRecord().ErrNumber, 0);
        errorRecord().Record_Error({9, u"Other", u"Subscript out of range"});
    }).join();
    EXPECT_EQ(errorRecord().ErrNumber, 0);
    EXPECT_FALSE(errorRecord().ErrRecorded);
}

}  // namespace
