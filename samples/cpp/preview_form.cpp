// preview_form PICTURE.hdr
// The preview control on a window of the program's own, in the system's container for controls (atl.dll),
// with sliders for exposure and gamma. A click on the picture is told; Esc closes the window.
#include "sample.h"

#include <commctrl.h>

namespace {

constexpr int kRow = 32;         // of a slider, at 96 dots per inch
constexpr int kLabelWidth = 80;  // of its label

// [atl]
/// Windows of the class "AtlAxWin" make the control that their caption names.
class AtlLibrary {
  public:
    AtlLibrary() : module_(LoadLibraryW(L"atl.dll")) {
        using Init = BOOL(WINAPI*)();
        const auto init = find<Init>("AtlAxWinInit");
        if (!init || !init()) check(HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
    }

    template <class Interface>
    void getControl(HWND window, Pointer<Interface>& control) const {
        using GetControl = HRESULT(WINAPI*)(HWND, IUnknown**);
        Pointer<IUnknown> object;
        check(find<GetControl>("AtlAxGetControl")(window, object.put()));
        check(object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(control.put())));
    }

  private:
    template <class Function>
    Function find(const char* name) const {
        const FARPROC found = module_ ? GetProcAddress(module_, name) : nullptr;
        return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
    }

    HMODULE module_;  // for as long as the program runs
};
// [/atl]

/// What the window shows.
struct Form {
    Pointer<_CVrxHDR> hdr;
    Pointer<_VrxPreviewImg> preview;
    std::wstring path;
    HWND window = nullptr;
    HWND frame = nullptr;  // the control's
    HWND exposure = nullptr;
    HWND gamma = nullptr;
    HWND labels[2] = {};
};

// [click]
/// Receives the control's event.
class Clicks : public IDispatch {
  public:
    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        if (event == 1) std::puts("click");  // Click()
        // > click
        return S_OK;
    }
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___VrxPreviewImg;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    // Lives on the stack, longer than the connection.
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
};
// [/click]

int valueOf(HWND slider) { return static_cast<int>(SendMessageW(slider, TBM_GETPOS, 0, 0)); }

// [sliders]
/// Gives the object the values of the sliders, and the preview the picture with them.
void apply(Form& form) {
    form.hdr->put_Exposure(static_cast<float>(valueOf(form.exposure)) / 10);  // in stops
    form.hdr->put_Gamma(static_cast<float>(valueOf(form.gamma)) / 100);
    VARIANT_BOOL loading = VARIANT_FALSE;
    form.hdr->get_HDRLoading(&loading);
    // A load that runs begins again by itself; afterwards the picture is made anew.
    if (loading == VARIANT_FALSE) form.hdr->Get_BMP();
}
// [/sliders]

/// The sliders below the control.
void arrange(const Form& form) {
    RECT inner{};
    GetClientRect(form.window, &inner);
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    const int row = MulDiv(kRow, dpi, 96);
    const int label = MulDiv(kLabelWidth, dpi, 96);
    const int top = inner.bottom - 2 * row;
    MoveWindow(form.frame, 0, 0, inner.right, top > 0 ? top : 0, TRUE);
    const HWND sliders[] = {form.exposure, form.gamma};
    for (int i = 0; i < 2; ++i) {
        MoveWindow(form.labels[i], 8, top + i * row + row / 4, label - 8, row - row / 4, TRUE);
        MoveWindow(sliders[i], label, top + i * row, inner.right - label, row, TRUE);
    }
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    auto* form = reinterpret_cast<Form*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (form && message == WM_SIZE) arrange(*form);
    if (form && message == WM_HSCROLL) apply(*form);
    if (message == WM_COMMAND && LOWORD(wide) == IDCANCEL) DestroyWindow(window);
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(window, message, wide, longer);
}

HWND makeChild(const Form& form, const wchar_t* kind, const wchar_t* caption, DWORD style) {
    const HWND child = CreateWindowW(kind, caption, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, form.window,
                                     nullptr, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    return child;
}

HWND makeSlider(const Form& form, int lowest, int highest, int value) {
    const HWND slider = makeChild(form, TRACKBAR_CLASSW, L"", WS_TABSTOP | TBS_NOTICKS);
    SendMessageW(slider, TBM_SETRANGE, FALSE, MAKELPARAM(lowest, highest));
    SendMessageW(slider, TBM_SETPOS, TRUE, value);
    return slider;
}

void makeWindow(Form& form) {
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = L"preview_form";
    RegisterClassW(&description);
    form.window =
        CreateWindowW(description.lpszClassName, L"Preview form", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 40,
                      40, 640, 480, nullptr, nullptr, description.hInstance, nullptr);
    InitCommonControls();
    // [frame]
    form.frame = makeChild(form, L"AtlAxWin", L"VrxCommon.VrxPreviewImg", WS_TABSTOP);
    // [/frame]
    form.labels[0] = makeChild(form, L"STATIC", L"Exposure", 0);
    form.exposure = makeSlider(form, 0, 320, 160);
    form.labels[1] = makeChild(form, L"STATIC", L"Gamma", 0);
    form.gamma = makeSlider(form, 100, 300, 220);
    SetWindowLongPtrW(form.window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&form));
    arrange(form);
    ShowWindow(form.window, SW_SHOW);
}

// [show]
void showPicture(Form& form) {
    check(form.preview->putref_objHDR(form.hdr.get()));
    check(form.preview->put_HDRFile(VARIANT_TRUE));
    check(form.preview->put_File(Text(form.path.c_str()).get()));  // loads, and shows the rows as they come
    Text shown;
    check(form.preview->get_File(shown.put()));
    if (std::wcscmp(shown.c_str(), L"Error") == 0) std::puts("cannot be shown");
}
// [/show]

void show(const wchar_t* path) {
    const AtlLibrary atl;
    Form form;
    form.path = path;
    create(CLSID_CVrxHDR, form.hdr);
    makeWindow(form);
    atl.getControl(form.frame, form.preview);
    apply(form);

    Clicks clicks;
    Pointer<IConnectionPointContainer> container;
    Pointer<IConnectionPoint> point;
    DWORD connection = 0;
    check(form.preview->QueryInterface(IID_IConnectionPointContainer,
                                       reinterpret_cast<void**>(container.put())));
    check(container->FindConnectionPoint(DIID___VrxPreviewImg, point.put()));
    check(point->Advise(&clicks, &connection));

    showPicture(form);
    long dimX = 0;
    long dimY = 0;
    form.hdr->get_DimX(&dimX);
    form.hdr->get_DimY(&dimY);
    std::printf("%ld x %ld\n", dimX, dimY);

    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (IsDialogMessageW(form.window, &message)) continue;  // Tab, Esc
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    point->Unadvise(connection);
    std::puts("closed");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2) {
        std::fputs("usage: preview_form PICTURE.hdr\n", stderr);
        return 2;
    }
    return runSample("preview_form", [&] { show(arguments[1]); });
}
