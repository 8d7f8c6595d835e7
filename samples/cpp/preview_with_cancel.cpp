// preview_with_cancel PICTURE.hdr [REFRESHES]
// Shows a picture in a window while it loads. Esc or closing the window ends the load. With REFRESHES, the
// event handler ends it after so many refreshes, and the program ends with the load.
#include <cstdlib>

#include "sample.h"

namespace {

/// What window and event handler share.
struct Session {
    Pointer<_CVrxHDR> hdr;
    Pointer<IPicture> picture;
    HWND window = nullptr;
    int refreshes = 0;
    int cancelAfter = 0;
    bool closing = false;
};

// [endhdr]
/// Called from an event handler or by a key, while the preview runs.
void cancel(Session& session) {
    session.closing = true;
    session.hdr->EndHDR();
}
// [/endhdr]

void sizeWindow(const Session& session, long dimX, long dimY) {
    RECT outer{0, 0, dimX, dimY};
    AdjustWindowRect(&outer, WS_OVERLAPPEDWINDOW, FALSE);
    SetWindowPos(session.window, nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
                 SWP_NOMOVE | SWP_NOZORDER);
}

// [sink]
/// Receives the events. The component calls Invoke on the thread that called Get_Preview, while that call
/// runs.
class Events : public IDispatch {
  public:
    explicit Events(Session& session) : session_(session) {}

    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        if (event == 1) refreshed(arguments->rgvarg[0]);  // OnRefresh(PicHDR)
        // [onheaderloaded]
        if (event == 2) {  // OnHeaderLoaded(DimX, DimY): the last one stands first
            const long dimX = V_I4(&arguments->rgvarg[1]);
            const long dimY = V_I4(&arguments->rgvarg[0]);
            std::printf("header: %ld x %ld\n", dimX, dimY);
            // > header: 768 x 384
            sizeWindow(session_, dimX, dimY);
        }
        // [/onheaderloaded]
        // [onfinish]
        if (event == 3) std::puts("finished");  // OnFinish()
        // > finished
        // [/onfinish]
        return S_OK;
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___CVrxHDR;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    // Lives on the stack, longer than the connection.
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

  private:
    // [onrefresh]
    void refreshed(const VARIANT& picture) {
        std::printf("refresh %d\n", ++session_.refreshes);
        // > refresh 1
        V_DISPATCH(&picture)->QueryInterface(IID_IPicture, reinterpret_cast<void**>(session_.picture.put()));
        InvalidateRect(session_.window, nullptr, FALSE);
        UpdateWindow(session_.window);
        if (session_.refreshes == session_.cancelAfter) cancel(session_);
    }
    // [/onrefresh]

    Session& session_;
};
// [/sink]

void paint(HWND window, const Session& session) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    OLE_HANDLE handle = 0;
    if (session.picture && SUCCEEDED(session.picture->get_Handle(&handle))) {
        HDC source = CreateCompatibleDC(dc);
        // Pictures tell their handles as numbers of 32 bits, in 64-bit programs too.
        const auto bitmap = reinterpret_cast<HGDIOBJ>(static_cast<INT_PTR>(static_cast<LONG>(handle)));
        if (const HGDIOBJ old = SelectObject(source, bitmap)) {
            BITMAP size{};
            GetObjectW(bitmap, sizeof size, &size);
            BitBlt(dc, 0, 0, size.bmWidth, size.bmHeight, source, 0, 0, SRCCOPY);
            SelectObject(source, old);
        }
        DeleteDC(source);
    }
    EndPaint(window, &paint);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    auto* session = reinterpret_cast<Session*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (session && message == WM_PAINT) {
        paint(window, *session);
        return 0;
    }
    if (session && (message == WM_CLOSE || (message == WM_KEYDOWN && wide == VK_ESCAPE))) {
        cancel(*session);
        return 0;
    }
    return DefWindowProcW(window, message, wide, longer);
}

HWND makeWindow(Session& session) {
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.lpszClassName = L"preview_with_cancel";
    RegisterClassW(&description);
    HWND window = CreateWindowW(description.lpszClassName, L"Preview (Esc ends)", WS_OVERLAPPEDWINDOW, 40, 40,
                                640, 480, nullptr, nullptr, description.hInstance, nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&session));
    ShowWindow(window, SW_SHOW);
    return window;
}

void show(const wchar_t* path, int cancelAfter) {
    Session session;
    session.cancelAfter = cancelAfter;
    create(CLSID_CVrxHDR, session.hdr);
    session.window = makeWindow(session);

    // [connect]
    Events events(session);
    Pointer<IConnectionPointContainer> container;
    Pointer<IConnectionPoint> point;
    DWORD connection = 0;
    check(session.hdr->QueryInterface(IID_IConnectionPointContainer,
                                      reinterpret_cast<void**>(container.put())));
    check(container->FindConnectionPoint(DIID___CVrxHDR, point.put()));
    check(point->Advise(&events, &connection));
    // [/connect]

    check(session.hdr->put_Gamma(2.2F));
    check(session.hdr->put_Exposure(16));
    check(session.hdr->Get_Preview(Text(path).get()));
    std::puts(session.closing ? "ended early" : "complete");

    MSG message;
    while (cancelAfter == 0 && !session.closing && GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    point->Unadvise(connection);
    DestroyWindow(session.window);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2 && count != 3) {
        std::fputs("usage: preview_with_cancel PICTURE.hdr [REFRESHES]\n", stderr);
        return 2;
    }
    const int cancelAfter = count == 3 ? _wtoi(arguments[2]) : 0;
    return runSample("preview_with_cancel", [&] { show(arguments[1], cancelAfter); });
}
