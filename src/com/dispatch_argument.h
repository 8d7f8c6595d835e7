// One argument of a late-bound call on its way from the host's variant to a member and back.
#pragma once

#include "com/member_table.h"

namespace vrx {

class DispatchArgument {
  public:
    /// Prepares what the member gets; `source` is null for an argument that was left out.
    /// Accepts, for a parameter by reference: a reference of the exact type, a reference to a variant, a
    /// reference of another type, a plain value, or nothing where it is optional. Throws vrx::Error or
    /// HresultFailure.
    void bind(const Parameter& parameter, VARIANTARG* source);

    /// The argument as the member's call takes it; for a parameter by reference, always a valid address.
    [[nodiscard]] VARIANTARG* passed() { return &passed_; }
    [[nodiscard]] VARTYPE passedType() const { return V_VT(&passed_); }

    /// Gives the host's variable the value that the member left, after a call that succeeded.
    void writeBack();

  private:
    void bindOmitted(const Parameter& parameter);
    void bindValue(const Parameter& parameter, const VARIANT& source);
    void bindReference(const Parameter& parameter, VARIANTARG& source);
    void bindVariant(VARIANTARG& source, VARIANT& inner);
    void bindArray(const Parameter& parameter, VARIANTARG& source, VARIANT& inner);
    void bindRecord(const VARIANT& source, VARIANT& inner);
    void passAddress(VARTYPE type, void* address);

    Variant local_;  // what the member works on where it is not the host's own variable
    VARIANTARG passed_{};
    VARIANT* receiver_ = nullptr;  // the host's variable that gets the value of local_ back
};

}  // namespace vrx
