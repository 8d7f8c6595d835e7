#include "ground/error_record.h"

namespace vrx {

void ErrorRecord::Clear_Error() {
    if (ErrRecorded) return;
    ErrNumber = 0;
    ErrSource.clear();
    ErrDescription.clear();
}

void ErrorRecord::Record_Error(const Error& current, std::int32_t number, std::u16string_view source,
                               std::u16string_view description) {
    if (ErrRecorded) return;
    ErrNumber = number != 0 ? number : current.number;
    if (ErrSource.empty()) ErrSource = source.empty() ? std::u16string_view(current.source) : source;
    ErrDescription = description.empty() ? std::u16string_view(current.description) : description;
    ErrRecorded = true;
}

void ErrorRecord::Raise_Error() {
    ErrRecorded = false;
    throw Error{ErrNumber, ErrSource, ErrDescription};
}

}  // namespace vrx
