// What an action of the engine throws, as a value that tests compare.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>

#include "ground/error.h"

namespace vrx {

inline bool operator==(const Error& a, const Error& b) {
    return a.number == b.number && a.source == b.source && a.description == b.description;
}

inline void PrintTo(const Error& error, std::ostream* out) {
    *out << error.number << ' ' << testing::PrintToString(error.source) << ' '
         << testing::PrintToString(error.description);
}

namespace test {

/// Anything else than vrx::Error goes on and fails the test.
template <class Action>
std::optional<Error> failureOf(Action action) {
    try {
        action();
    } catch (const Error& error) {
        return error;
    }
    return std::nullopt;
}

/// The number of the failure, 0 where the action succeeds.
template <class Action>
int errorNumberOf(Action action) {
    const auto failure = failureOf(action);
    return failure ? failure->number : 0;
}

inline const Error kWrongFileType{1, u"CVrxHDR::Import", u"File Type Wrong!"};
inline const Error kFileError{1, u"CVrxHDR::Export", u"File Error!"};

}  // namespace test
}  // namespace vrx
