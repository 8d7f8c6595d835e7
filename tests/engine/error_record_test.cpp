// The record that carries the innermost error out of nested public methods.
#include "ground/error_record.h"

#include <gtest/gtest.h>

#include "failure.h"

namespace vrx::test {
namespace {

const Error kNothing{0, u"", u""};
const Error kInner{53, u"Inner", u"File not found"};
const Error kOuter{9, u"Outer", u"Subscript out of range"};

Error errorIn(const ErrorRecord& record) {
    return {record.ErrNumber, record.ErrSource, record.ErrDescription};
}

Error raised(ErrorRecord& record) {
    const auto failure = failureOf([&record] { record.Raise_Error(); });
    return failure.value_or(kNothing);
}

TEST(ErrorRecord, IsClearAtFirst) {
    const ErrorRecord record;
    EXPECT_EQ(errorIn(record), kNothing);
    EXPECT_FALSE(record.ErrRecorded);
}

TEST(ErrorRecord, RaisesTheErrorObjectWhereNothingElseIsGiven) {
    ErrorRecord record;
    record.Record_Error(kInner);
    EXPECT_TRUE(record.ErrRecorded);
    EXPECT_EQ(raised(record), kInner);
    EXPECT_FALSE(record.ErrRecorded);
}

TEST(ErrorRecord, WhatIsGivenStandsInPlaceOfTheErrorObjects) {
    ErrorRecord record;
    record.Record_Error(kInner, 1, u"Given", u"Text");
    EXPECT_EQ(raised(record), (Error{1, u"Given", u"Text"}));
}

TEST(ErrorRecord, TheFirstRecordedErrorWins) {
    ErrorRecord record;
    record.Record_Error(kInner);
    record.Record_Error(kOuter, 5, u"Given", u"Text");
    EXPECT_EQ(raised(record), kInner);
}

TEST(ErrorRecord, ClearingLeavesATravellingErrorAlone) {
    ErrorRecord record;
    record.Record_Error(kInner);
    record.Clear_Error();
    EXPECT_EQ(errorIn(record), kInner);
    EXPECT_TRUE(record.ErrRecorded);
}

TEST(ErrorRecord, ClearingEmptiesARecordWhoseErrorHasBeenRaised) {
    ErrorRecord record;
    record.Record_Error(kInner);
    static_cast<void>(raised(record));
    EXPECT_EQ(errorIn(record), kInner);
    record.Clear_Error();
    EXPECT_EQ(errorIn(record), kNothing);
}

TEST(ErrorRecord, ASourceStoredAlreadyIsKept) {
    ErrorRecord record;
    record.Record_Error(kInner);
    static_cast<void>(raised(record));
    record.Record_Error(kInner, 0, u"Outer");
    EXPECT_EQ(raised(record), kInner);
}

/// The methods of one library, which share its record.
class RecordErrors : public testing::Test {
  protected:
    ErrorRecord record;

    void TearDown() override { EXPECT_FALSE(record.ErrRecorded); }
};

TEST_F(RecordErrors, ANestedFailureReachesTheHostWithTheInnerCallsNumberAndDescription) {
    const auto failure = failureOf([&] {
        recordErrors(record, u"OuterClass", [&] {
            recordErrors(record, u"InnerClass", [&] { throw platformError(Platform::FileNotFound); });
        });
    });
    EXPECT_EQ(failure, (Error{53, u"InnerClass", u"File not found"}));
}

TEST_F(RecordErrors, TheClassNameIsTheSourceOnlyOfErrorsWithoutOne) {
    const auto named = failureOf([&] { recordErrors(record, u"Class", [&] { throw Error(kInner); }); });
    EXPECT_EQ(named, kInner);
    const auto nameless =
        failureOf([&] { recordErrors(record, u"Class", [&] { throw platformError(Platform::DiskFull); }); });
    EXPECT_EQ(nameless, (Error{61, u"Class", u"Disk full"}));
}

TEST_F(RecordErrors, AFailureAfterAnotherIsReportedAsItself) {
    EXPECT_EQ(failureOf([&] { recordErrors(record, u"A", [&] { throw Error(kInner); }); }), kInner);
    EXPECT_EQ(failureOf([&] { recordErrors(record, u"B", [&] { throw Error(kOuter); }); }), kOuter);
    EXPECT_EQ(failureOf([&] { recordErrors(record, u"C", [&] {}); }), std::nullopt);
}

TEST_F(RecordErrors, AFailureCaughtInsideAnotherMethodIsForgotten) {
    const auto failure = failureOf([&] {
        recordErrors(record, u"Outer", [&] {
            EXPECT_EQ(failureOf([&] { recordErrors(record, u"Inner", [&] { throw Error(kInner); }); }),
                      kInner);
            throw Error(kOuter);
        });
    });
    EXPECT_EQ(failure, kOuter);
}

TEST_F(RecordErrors, TheRecordHoldsTheErrorUntilTheNextMethodBegins) {
    EXPECT_EQ(failureOf([&] { recordErrors(record, u"A", [] { throw Error(kInner); }); }), kInner);
    EXPECT_EQ(errorIn(record), kInner);
    recordErrors(record, u"B", [&] { EXPECT_EQ(errorIn(record), kNothing); });
}

TEST(PlatformError, CarriesTheTextsThatHostsKnow) {
    EXPECT_EQ(platformError(Platform::InvalidCall), (Error{5, u"", u"Invalid procedure call or argument"}));
    EXPECT_EQ(platformError(Platform::Overflow), (Error{6, u"", u"Overflow"}));
    EXPECT_EQ(platformError(Platform::OutOfMemory), (Error{7, u"", u"Out of memory"}));
    EXPECT_EQ(platformError(Platform::SubscriptOutOfRange), (Error{9, u"", u"Subscript out of range"}));
    EXPECT_EQ(platformError(Platform::DivisionByZero), (Error{11, u"", u"Division by zero"}));
    EXPECT_EQ(platformError(Platform::TypeMismatch), (Error{13, u"", u"Type mismatch"}));
    EXPECT_EQ(platformError(Platform::BadFileName), (Error{52, u"", u"Bad file name or number"}));
    EXPECT_EQ(platformError(Platform::FileNotFound), (Error{53, u"", u"File not found"}));
    EXPECT_EQ(platformError(Platform::DeviceIoError), (Error{57, u"", u"Device I/O error"}));
    EXPECT_EQ(platformError(Platform::FileAlreadyExists), (Error{58, u"", u"File already exists"}));
    EXPECT_EQ(platformError(Platform::DiskFull), (Error{61, u"", u"Disk full"}));
    EXPECT_EQ(platformError(Platform::PermissionDenied), (Error{70, u"", u"Permission denied"}));
    EXPECT_EQ(platformError(Platform::DiskNotReady), (Error{71, u"", u"Disk not ready"}));
    EXPECT_EQ(platformError(Platform::PathFileAccess), (Error{75, u"", u"Path/File access error"}));
    EXPECT_EQ(platformError(Platform::PathNotFound), (Error{76, u"", u"Path not found"}));
    EXPECT_EQ(platformError(Platform::ObjectNotSet), (Error{91, u"", u"Object variable not set"}));
    EXPECT_EQ(platformError(Platform::InvalidPicture), (Error{481, u"", u"Invalid picture"}));
}

}  // namespace
}  // namespace vrx::test
