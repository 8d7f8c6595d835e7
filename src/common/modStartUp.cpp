#include "common/modStartUp.h"

#include <new>

#include "com/per_thread.h"

namespace vrx {
namespace {

PerThread<ErrorRecord> records;

}  // namespace

ErrorRecord& errorRecord() {
    ErrorRecord* record = records.findOrMake();
    if (!record) throw std::bad_alloc();
    return *record;
}

}  // namespace vrx
