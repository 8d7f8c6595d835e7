#include "com/error_info.h"

#include <new>

#include "com/class_table.h"
#include "com/com_ptr.h"
#include "com/hresult_failure.h"
#include "com/module.h"
#include "com/variant_convert.h"

namespace vrx {
namespace {

/// Help contexts of errors: this and the number, which leads to the number's row of the error page.
constexpr DWORD kFirstHelpContext = 10000;

DWORD helpContextOf(const Error& error) { return kFirstHelpContext + static_cast<DWORD>(error.number); }

std::wstring helpFile() { return folderOf(modulePath()) + L'\\' + kPublication.helpFileName; }

void setThreadError(const IID& iid, const Error& error, const char16_t* className) {
    ComPtr<ICreateErrorInfo> created;
    if (FAILED(CreateErrorInfo(created.put()))) return;
    const std::wstring source = toWide(error.source.empty() ? className : error.source);
    const std::wstring description = toWide(error.description);
    std::wstring help = helpFile();
    created->SetGUID(iid);
    created->SetSource(const_cast<wchar_t*>(source.c_str()));
    created->SetDescription(const_cast<wchar_t*>(description.c_str()));
    created->SetHelpFile(help.data());
    created->SetHelpContext(helpContextOf(error));
    if (const ComPtr<IErrorInfo> info = created.as<IErrorInfo>()) SetErrorInfo(0, info.get());
}

/// `makeError` may fail for want of memory as well; the number alone must do then.
template <class MakeError>
HRESULT publish(const IID& iid, std::int32_t number, const char16_t* className,
                MakeError makeError) noexcept {
    try {
        setThreadError(iid, makeError(), className);
    } catch (...) {
        SetErrorInfo(0, nullptr);
    }
    return hresultOf(number);
}

HRESULT publish(const IID& iid, Platform number, const char16_t* className) noexcept {
    return publish(iid, static_cast<std::int32_t>(number), className, [&] { return platformError(number); });
}

}  // namespace

HRESULT publishCurrentException(const IID& iid, const char16_t* className) noexcept {
    try {
        throw;
    } catch (const Error& error) {
        return publish(iid, error.number, className, [&]() -> const Error& { return error; });
    } catch (const std::bad_alloc&) {
        return publish(iid, Platform::OutOfMemory, className);
    } catch (...) {
        return publish(iid, Platform::InternalError, className);
    }
}

HRESULT hresultOfCurrentException() noexcept {
    try {
        throw;
    } catch (const HresultFailure& failure) {
        return failure.code;
    } catch (const Error& error) {
        return hresultOf(error.number);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

HRESULT reportFailure(HRESULT failure, EXCEPINFO* exception) {
    if (!exception) return DISP_E_EXCEPTION;
    *exception = {};
    exception->scode = failure;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) == S_OK) {
        info->GetSource(&exception->bstrSource);
        info->GetDescription(&exception->bstrDescription);
        info->GetHelpFile(&exception->bstrHelpFile);
        info->GetHelpContext(&exception->dwHelpContext);
    }
    return DISP_E_EXCEPTION;
}

HRESULT reportError(const Error& error, const char16_t* className, EXCEPINFO& exception) noexcept {
    exception = {};
    exception.scode = hresultOf(error.number);
    exception.bstrSource = SysAllocString(asWide(error.source.empty() ? className : error.source.c_str()));
    exception.bstrDescription = SysAllocString(asWide(error.description.c_str()));
    exception.dwHelpContext = helpContextOf(error);
    try {
        exception.bstrHelpFile = SysAllocString(helpFile().c_str());
    } catch (...) {
        // The error is worth more than its help.
    }
    return DISP_E_EXCEPTION;
}

void checkCall(HRESULT result) {
    if (SUCCEEDED(result)) return;
    // A result without error information: what the thread has is of another call.
    if (HRESULT_FACILITY(result) != FACILITY_CONTROL) throw platformError(Platform::InternalError);
    Error error{HRESULT_CODE(result), {}, {}};
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) == S_OK) {
        Bstr source;
        Bstr description;
        info->GetSource(source.put());
        info->GetDescription(description.put());
        error.source = toText(source.get());
        error.description = toText(description.get());
    }
    throw error;
}

}  // namespace vrx
