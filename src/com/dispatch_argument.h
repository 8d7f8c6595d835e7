// One argument of a late-bound call on its way from the host's variant to a member and back.
#pragma once

#include "com/member_table.h"
#include "com/native_call.h"

namespace vrx {

class DispatchArgument {
  public:
    /// Prepares what the member gets; `source` is null for an argument that was left out. False where that
    /// needs a conversion: then nothing has happened. Takes possession of nothing and calls nobody.
    [[nodiscard]] bool bindAsItIs(const Parameter& parameter, VARIANTARG* source) noexcept;

    /// The same for every argument. Accepts, for a parameter by reference: a reference of the exact type, a
    /// reference to a variant, a reference of another type, a plain value, or nothing where it is optional.
    /// Throws vrx::Error or HresultFailure.
    void bind(const Parameter& parameter, VARIANTARG* source);

    /// Adds the argument to the member's call; for a parameter by reference, always a valid address.
    void pass(NativeCall& call) const;

    /// Gives the host's variable the value that the member left, after a call that succeeded: only where the
    /// member changed it.
    void writeBack();

  private:
    [[nodiscard]] bool bindReferenceAsItIs(const Parameter& parameter, VARIANTARG& source) noexcept;
    void bindOmitted(const Parameter& parameter);
    void bindReference(const Parameter& parameter, VARIANTARG& source);
    void bindVariant(VARIANTARG& source, VARIANT& inner);
    void bindArray(const Parameter& parameter, VARIANTARG& source, VARIANT& inner);
    void bindRecord(const VARIANT& source, VARIANT& inner);
    void passValue(VARTYPE type, const void* content);
    void passAddress(void* address);
    void receiveIn(const Parameter& parameter, VARIANTARG& source, VARIANT& inner) noexcept;
    [[nodiscard]] bool isChanged() const;

    Variant local_;   // what the member works on where it is not the host's own variable
    Variant before_;  // a text as it was before the call
    std::uint64_t bitsBefore_ = 0;
    VARTYPE type_ = VT_EMPTY;  // of a value; VT_EMPTY for an address
    const void* content_ = nullptr;
    VARIANT* receiver_ = nullptr;  // the host's variable that gets the value of local_ back
};

}  // namespace vrx
