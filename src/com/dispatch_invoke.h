// Late-bound calls: IDispatch::Invoke on the members of a dual interface, through its table of methods.
// Own code, because script hosts must be able to pass variables, values or nothing for typed by-reference
// parameters.
#pragma once

#include "com/member_table.h"

namespace vrx {

/// A call as IDispatch::Invoke receives it.
struct DispatchCall {
    DISPID id;
    const IID* iid;
    WORD flags;
    DISPPARAMS* arguments;
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* badArgument;
};

/// `object` is the dual interface whose members the table describes, of the class of that name.
/// A value that does not suit its parameter fails with the numbers that script hosts know (13, 6) in the
/// EXCEPINFO of the call, and with DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW in a call without one.
HRESULT invokeMember(IDispatch& object, const char16_t* className, const MemberTable& members,
                     const DispatchCall& call) noexcept;

}  // namespace vrx
