// Members by their type information, and arguments at random: every type, by value and by reference, arrays
// of every shape, any number, named or not.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <deque>
#include <random>
#include <string>
#include <vector>

#include "com/com_ptr.h"
#include "com/variant_convert.h"

namespace faults {

struct Member {
    std::wstring name;
    DISPID id;
    WORD flags;  ///< as for Invoke
    unsigned parameters;
    bool opensDialog;
};

/// All of an object's.
std::vector<Member> membersOf(IDispatch& object);

/// Owns what it passes.
struct Arguments {
    Arguments() = default;
    Arguments(Arguments&&) = default;
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    WORD flags = DISPATCH_METHOD;
    std::vector<VARIANT> passed;  ///< owned by `owned`, and by the variables referred to
    std::deque<vrx::Variant> owned;
    std::vector<DISPID> named;

    [[nodiscard]] DISPPARAMS parameters() {
        return {passed.data(), named.data(), static_cast<UINT>(passed.size()),
                static_cast<UINT>(named.size())};
    }
};

class RandomValues {
  public:
    RandomValues(unsigned seed, std::wstring folder) : engine_(seed), folder_(std::move(folder)) {}

    /// An object that arguments may hold from now on.
    void add(const vrx::ComPtr<IDispatch>& object) { objects_.push_back(object); }
    void forget() { objects_.clear(); }

    /// From 0 to one less than the limit.
    std::size_t below(std::size_t limit) { return engine_() % limit; }
    Arguments arguments(const Member& member);

  private:
    double number();
    std::wstring text();
    vrx::Variant scalar();
    vrx::Variant array();
    VARIANT argument(Arguments& owner);

    std::mt19937 engine_;
    std::wstring folder_;
    std::vector<vrx::ComPtr<IDispatch>> objects_;
};

}  // namespace faults
