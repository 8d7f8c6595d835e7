#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>

#include "dialogs/resource.h"
#include "plain_windows.h"
#include "registry_folder.h"
#include "scenarios.h"

using host::integer;
using host::number;
using host::reference;
using host::Text;
using host::truth;

namespace faults {
namespace {

constexpr wchar_t kKey[] = L"Software\\VrxFaults";

HWND item(HWND dialog, int id) { return GetDlgItem(dialog, id); }

void notify(HWND dialog, int id, int notification) {
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, notification)),
                 reinterpret_cast<LPARAM>(item(dialog, id)));
}

template <int button>
void press(HWND dialog) {
    PostMessageW(item(dialog, button), BM_CLICK, 0, 0);
}

void close(HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); }

/// The first file of the list, whose preview the dialog shows then.
void chooseFile(HWND dialog) {
    SendMessageW(item(dialog, IDC_FILE1), LB_SETCURSEL, 0, 0);
    notify(dialog, IDC_FILE1, LBN_SELCHANGE);
}

void clickPreview(HWND dialog) {
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP})
        PostMessageW(item(dialog, IDC_VRXPREVIMG), message, 0, MAKELPARAM(20, 20));
}

void goUp(HWND dialog) { notify(dialog, IDC_COMMAND3, BN_CLICKED); }

void resize(HWND dialog) {
    SetWindowPos(dialog, nullptr, 0, 0, 700, 500, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

template <int slider>
void moveSlider(HWND dialog) {
    SendMessageW(item(dialog, slider), TBM_SETPOS, TRUE, 3);
    PostMessageW(dialog, WM_HSCROLL, MAKEWPARAM(TB_ENDTRACK, 3),
                 reinterpret_cast<LPARAM>(item(dialog, slider)));
}

/// To be saved as a file of this row of the list of types.
template <int type>
void nameFile(HWND dialog) {
    SendMessageW(item(dialog, IDC_COMBO1), CB_SETCURSEL, type, 0);
    notify(dialog, IDC_COMBO1, CBN_SELCHANGE);
    SetWindowTextW(item(dialog, IDC_TEXT1), L"out");
}

void point(HWND viewer) { SendMessageW(item(viewer, IDC_IMGPREVIEW), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5)); }

template <int menuItem>
void choose(HWND dialog) {
    PostMessageW(dialog, WM_COMMAND, menuItem, 0);
}

void key(HWND editor, WPARAM code) { PostMessageW(item(editor, IDC_PICFLAGUP), WM_KEYDOWN, code, 1); }

/// What the dialogs remember: the folder of the stage.
void remember(Stage& stage) {
    const std::wstring key = kKey;
    for (const wchar_t* const dialog :
         {L"\\ImageSaver", L"\\ImageLoader", L"\\HDRSaver", L"\\ImageHDR", L"\\Pattern"}) {
        host::setRegistryText(HKEY_LOCAL_MACHINE, key + dialog, L"Path", stage.folder.path());
    }
    stage.put(L"REGKEY", Text(kKey));
}

void rememberAndLoad(Stage& stage) {
    remember(stage);
    stage.call(L"Load_HDR", {Text(stage.hdrFile.c_str()), truth(false)});
}

void loadHdr(Stage& stage) { stage.call(L"Load", {Text(stage.hdrFile.c_str())}); }
void loadImage(Stage& stage) { stage.call(L"Load", {Text(stage.bmpFile.c_str())}); }
void saveHdr(Stage& stage) { stage.call(L"Save", {Text(stage.hdrFile.c_str())}); }
void saveImage(Stage& stage) { stage.call(L"Save", {Text(stage.bmpFile.c_str())}); }

void editPattern(Stage& stage) {
    vrx::Variant text = vrx::makeText(u"0-255;500-65280;1000-16711680;");
    stage.call(L"Load", {reference(text.get())});
    stage.answer.value += std::to_string(SysStringLen(V_BSTR(&text.get())));
}

void chooseFileToSave() {
    wchar_t path[MAX_PATH] = L".VGR";
    OPENFILENAMEW choice{};
    choice.lStructSize = sizeof choice;
    choice.lpstrFilter = L"Pattern (VGR)\0*.VGR\0";
    choice.lpstrFile = path;
    choice.nMaxFile = MAX_PATH;
    choice.lpstrDefExt = L"VGR";
    choice.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    GetSaveFileNameW(&choice);
}

template <int... templates>
void plain() {
    makePlainWindows({templates...});
}

/// With the label of its tool tip.
void plainEditor() { makePlainWindows({IDD_FRMPATTERN}, 1); }

}  // namespace

const std::vector<Scenario>& dialogs() {
    // What a dialog cannot do it tells its user.
    static const std::vector<Scenario> all = {
        {"Hdr_LoadDialog",
         &CLSID_CVrxHDR,
         remember,
         loadHdr,
         true,
         {chooseFile, moveSlider<IDC_SLIDER1>, resize, press<IDC_COMMAND1>},
         nullptr,
         plain<IDD_FRMLOADHDR>},
        {"Hdr_LoadDialogZoom",
         &CLSID_CVrxHDR,
         remember,
         loadHdr,
         true,
         {chooseFile, clickPreview, point, close, press<IDC_COMMAND2>},
         nullptr,
         plain<IDD_FRMLOADHDR, IDD_FRMZOOM>},
        {"Hdr_SaveDialog",
         &CLSID_CVrxHDR,
         rememberAndLoad,
         saveHdr,
         true,
         {nameFile<0>, moveSlider<IDC_SLIDER2>, press<IDC_COMMAND1>, close},
         nullptr,
         plain<IDD_FRMSAVEHDR>},
        {"Hdr_SaveDialogJpeg",
         &CLSID_CVrxHDR,
         rememberAndLoad,
         saveHdr,
         true,
         {nameFile<1>, moveSlider<IDC_SLIDER1>, press<IDC_COMMAND1>, close},
         nullptr,
         plain<IDD_FRMSAVEHDR>},
        {"Hdr_Viewer",
         &CLSID_CVrxHDR,
         remember,
         [](Stage& s) {
             s.call(L"See", {Text(s.hdrFile.c_str()), number(0), number(1)});
         },
         true,
         {point, resize, close},
         nullptr,
         plain<IDD_FRMZOOM>},
        {"Image_LoadDialog",
         &CLSID_CVrxImage,
         remember,
         loadImage,
         true,
         {chooseFile, goUp, press<IDC_COMMAND1>},
         nullptr,
         plain<IDD_FRMLOADIMAGE>},
        {"Image_SaveDialog",
         &CLSID_CVrxImage,
         remember,
         saveImage,
         true,
         {nameFile<1>, resize, press<IDC_COMMAND1>, close},
         nullptr,
         plain<IDD_FRMSAVEIMAGE>},
        {"Image_SaveDialogJpeg",
         &CLSID_CVrxImage,
         remember,
         saveImage,
         true,
         {nameFile<0>, moveSlider<IDC_SLIDER1>, press<IDC_COMMAND1>, close},
         nullptr,
         plain<IDD_FRMSAVEIMAGE>},
        {"Image_Viewer",
         &CLSID_CVrxImage,
         remember,
         [](Stage& s) { s.call(L"See", {Text(s.bmpFile.c_str())}); },
         true,
         {point, resize, close},
         nullptr,
         plain<IDD_FRMZOOM>},
        {"Pattern_Editor",
         &CLSID_CVrxPattern,
         remember,
         editPattern,
         true,
         {press<IDC_CMDPLUS>, [](HWND editor) { key(editor, VK_RIGHT); }, resize, press<IDC_COMMAND3>},
         nullptr,
         plainEditor},
        {"Pattern_EditorsColor",
         &CLSID_CVrxPattern,
         remember,
         editPattern,
         true,
         {[](HWND editor) { key(editor, VK_RETURN); }, close},
         nullptr,
         plainEditor},
        {"Pattern_EditorsFile",
         &CLSID_CVrxPattern,
         remember,
         editPattern,
         true,
         {choose<IDM_ITEMSAVE>, close},
         chooseFileToSave,
         plainEditor},
        {"Fun_MessageBox",
         &CLSID_CVrxFun,
         nothing,
         [](Stage& s) {
             s.call(L"VrxMsgBox", {Text(L"Wait?"), integer(MB_YESNO)});
         },
         true,
         {close}},
    };
    return all;
}

}  // namespace faults
