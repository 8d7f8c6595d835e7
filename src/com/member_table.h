// The members of a dual interface as late-bound calls need them, read from the type information.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

#include "com/variant_convert.h"

namespace vrx {

struct Parameter {
    VARTYPE type = VT_EMPTY;  ///< without the by-reference bit; enumerations are VT_I4
    bool byReference = false;
    bool output = false;  ///< the host's variable receives the value
    bool optional = false;
    IID iid = {};          ///< for objects: the interface that the member wants
    Variant defaultValue;  ///< for optional ones
};

struct Member {
    DISPID id;
    INVOKEKIND kind;
    ULONG_PTR slot;                     ///< offset of the method in the interface's table, in bytes
    std::vector<Parameter> parameters;  ///< without the result
    VARTYPE resultType = VT_EMPTY;      ///< VT_EMPTY without a result
};

class MemberTable {
  public:
    /// From the dispatch description of a dual interface. Throws HresultFailure.
    explicit MemberTable(ITypeInfo& dispatchInfo);

    /// The member of this id for one of the kinds in `flags` (DISPATCH_...); null when there is none.
    [[nodiscard]] const Member* find(DISPID id, WORD flags) const;

  private:
    std::vector<Member> members_;
};

}  // namespace vrx
