// Codec libraries for tests of the binding: one that writes down how it is called, and one without all of its
// entry points.

#include <windows.h>

#include <cstring>

#include "fake_codec.h"

namespace {

fake_codec::Journal journal;

void note(char call) {
    const std::size_t length = std::strlen(journal.calls);
    if (length + 1 < sizeof journal.calls) journal.calls[length] = call;
}

}  // namespace

extern "C" {

fake_codec::Journal* WINAPI codecJournal() { return &journal; }

long WINAPI ijlInit(unsigned char* record) {
    note('I');
    std::memcpy(journal.recordAtInit, record, sizeof journal.recordAtInit);
    std::memset(record, fake_codec::kDefault, sizeof journal.recordAtInit);
    return journal.initResult;
}

#ifndef VRX_INCOMPLETE_CODEC
long WINAPI ijlWrite(unsigned char* record, long request) {
    note('W');
    journal.request = request;
    std::memcpy(journal.recordAtWrite, record, sizeof journal.recordAtWrite);
    const char* name;
    std::memcpy(&name, record + static_cast<std::size_t>(fake_codec::RecordField::JPGFile), sizeof name);
    std::strncpy(journal.fileName, name, sizeof journal.fileName - 1);
    return journal.writeResult;
}
#endif

long WINAPI ijlFree(unsigned char*) {
    note('F');
    return 0;
}

long WINAPI ijlRead(unsigned char*, long) {
    note('R');
    return -1;
}

const char* WINAPI ijlGetLibVersion() { return "fake"; }
const char* WINAPI ijlGetErrorString(long) { return "fake"; }

}  // extern "C"
