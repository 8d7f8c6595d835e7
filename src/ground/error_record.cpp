#include "ground/error_record.h"

namespace vrx {

void ErrorRecord::Clear_Error() {
    if (!recorded_) error_ = {};
}

void ErrorRecord::Record_Error(const Error& current, std::int32_t number, std::u16string_view source,
                               std::u16string_view description) {
    if (recorded_) return;
    error_.number = number != 0 ? number : current.number;
    if (error_.source.empty()) error_.source = source.empty() ? current.source : std::u16string(source);
    error_.description = description.empty() ? current.description : std::u16string(description);
    recorded_ = true;
}

void ErrorRecord::Raise_Error() {
    recorded_ = false;
    throw Error(error_);
}

}  // namespace vrx
