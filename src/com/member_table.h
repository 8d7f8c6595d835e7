// The members of a dual interface as late-bound calls need them, read once from the type information.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <span>
#include <string>
#include <vector>

#include "com/variant_convert.h"

namespace vrx {

struct Parameter {
    std::u16string name;      ///< in small letters
    VARTYPE type = VT_EMPTY;  ///< without the by-reference bit; enumerations are VT_I4
    bool byReference = false;
    bool output = false;  ///< the host's variable receives the value
    bool optional = false;
    IID iid = {};          ///< for objects: the interface that the member wants
    Variant defaultValue;  ///< for optional ones, in the parameter's type
};

struct Member {
    std::u16string name;  ///< in small letters
    DISPID id;
    INVOKEKIND kind;
    std::size_t slot;                   ///< offset of the method in the interface's table, in bytes
    std::vector<Parameter> parameters;  ///< without the result
    VARTYPE resultType = VT_EMPTY;      ///< VT_EMPTY without a result
};

class MemberTable {
  public:
    /// From the dispatch description of a dual interface. Throws HresultFailure.
    explicit MemberTable(ITypeInfo& dispatchInfo);

    /// The member of this id for one of the kinds in `flags` (DISPATCH_...); null when there is none.
    [[nodiscard]] const Member* find(DISPID id, WORD flags) const;

    /// The ids for a member's name and the names of its parameters, as IDispatch::GetIDsOfNames finds them.
    [[nodiscard]] HRESULT findIds(std::span<const LPOLESTR> names, DISPID* ids) const noexcept;

  private:
    std::vector<Member> members_;        // by their ids
    std::vector<const Member*> byName_;  // sorted
};

}  // namespace vrx
