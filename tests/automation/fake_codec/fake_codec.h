// What the recording codec library writes down, and what it is told to answer.
#pragma once

#include "record_offsets.h"

namespace fake_codec {

/// In every byte of a record that the library has initialised.
constexpr unsigned char kDefault = 0x5A;

using vrx::test::kRecordSize;
using vrx::test::RecordField;

struct Journal {
    /// One letter for each call: I for ijlInit, W for ijlWrite, F for ijlFree, R for ijlRead.
    char calls[32];
    unsigned char recordAtInit[kRecordSize];
    unsigned char recordAtWrite[kRecordSize];
    long request;
    char fileName[1024];

    long initResult;
    long writeResult;
};

}  // namespace fake_codec
