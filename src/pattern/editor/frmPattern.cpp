#include "pattern/editor/frmPattern.h"

#include <algorithm>
#include <new>
#include <utility>

#include "com/variant_convert.h"
#include "common/device_context.h"
#include "common/message_box.h"
#include "common/modWinProc.h"
#include "common/owner_window.h"
#include "dialogs/dpi.h"
#include "dialogs/resource.h"
#include "dialogs/settings_store.h"
#include "dialogs/window_place.h"
#include "ground/decimal_text.h"
#include "ground/error.h"

namespace vrx {
namespace {

constexpr char16_t kErrorTitle[] = u"Errore";
constexpr std::int32_t kLongStep = 10;

SIZE innerSize(HWND window) {
    RECT inner{};
    GetClientRect(window, &inner);
    return {inner.right, inner.bottom};
}

bool isDown(int key) { return GetKeyState(key) < 0; }

/// Runs what may fail without an end to the editor. Why it failed; empty when it has not.
template <class Action>
std::u16string failureOf(Action action) {
    try {
        action();
        return {};
    } catch (const Error& error) {
        return error.description;
    } catch (const std::bad_alloc&) {
        return platformError(Platform::OutOfMemory).description;
    }
}

/// Runs what the user has asked for and tells why it failed.
template <class Action>
void orTell(std::u16string what, Action action) {
    const Held<std::u16string> failure(failureOf(action));
    if (failure->empty()) return;
    what += u": " + *failure;
    showMessage(std::move(what), MB_ICONERROR, kErrorTitle);
}

}  // namespace

frmPattern::frmPattern() : Form(IDD_FRMPATTERN) {}

frmPattern::~frmPattern() {
    if (isLoaded()) removePatternProc(window());
}

void frmPattern::prepare(const std::u16string& pattern) {
    load(ownerWindow());
    editor_.build(pattern);
    showStops();
    // The system gives the focus to the first control of the template.
    const HWND flag = flags_[editor_.selected()]->window();
    PostMessageW(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(flag), TRUE);
}

void frmPattern::onLoad() {
    installPatternProc(window());
    font_.attach(window());
    tip_.attach(window(), font_.get(), font_.percentage());
    ready_ = true;
    resizeTo(pixelsOf(readSettings(), screenDpi().x));
}

/// The window's width in twips.
std::int32_t frmPattern::readSettings() {
    if (regKey_.empty()) return settings::kPatternWidth.defaultValue;
    const SettingsStore store(regKey_);
    files_.setFolder(store.read(settings::kPatternPath));
    return store.read(settings::kPatternWidth);
}

void frmPattern::onUnload() {
    removePatternProc(window());
    if (regKey_.empty()) return;
    const SettingsStore store(regKey_);
    store.write(settings::kPatternPath, files_.folder());
    store.write(settings::kPatternWidth, twipsOf(outerSize(window()).cx, screenDpi().x));
}

/// Around the middle that the window has, within the screen.
void frmPattern::resizeTo(int wanted) {
    const LONG width = std::clamp<LONG>(wanted, kSmallestPatternWindow.x, kLargestPatternWindow.x);
    const LONG height = kSmallestPatternWindow.y;
    RECT outer{};
    GetWindowRect(window(), &outer);
    SetWindowPos(window(), nullptr, (outer.left + outer.right - width) / 2,
                 (outer.top + outer.bottom - height) / 2, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(window(), DM_REPOSITION, 0, 0);
    const SIZE inner = innerSize(window());
    layOut(inner.cx, inner.cy);
}

void frmPattern::onResize(int width, int height) {
    if (!ready_ || IsIconic(window())) return;
    layOut(width, height);
}

void frmPattern::layOut(int width, int height) {
    font_.fit(window(), {width, height});
    layout_ = layOutPattern(width, height, font_.texts());
    place(IDC_PICPATTERN, layout_.ramp);
    place(IDC_CMDPLUS, layout_.plus);
    place(IDC_CMDMINIUS, layout_.minus);
    place(IDC_LEGENDRED, layout_.legends[0]);
    place(IDC_LBLRED, layout_.values[0]);
    place(IDC_LEGENDGREEN, layout_.legends[1]);
    place(IDC_LBLGREEN, layout_.values[1]);
    place(IDC_LEGENDBLUE, layout_.legends[2]);
    place(IDC_LBLBLUE, layout_.values[2]);
    place(IDC_COMMAND3, layout_.ok);
    place(IDC_COMMAND4, layout_.cancel);
    editor_.setRampWidth(layout_.ramp.width);
    placeFlags();
    showRamp();
}

void frmPattern::place(int id, const Box& box) const {
    SetWindowPos(control(id), nullptr, box.left, box.top, box.width, box.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void frmPattern::onCommand(int id, int notification, HWND /*control*/) {
    if (notification != BN_CLICKED) return;
    switch (id) {
        case IDC_CMDPLUS:
            return addStop();
        case IDC_CMDMINIUS:
            return removeStop();
        case IDC_COMMAND3:
            return hide();
        case IDC_COMMAND4:
            return cancel();
        case IDM_ITEMLOAD:
            return loadFile();
        case IDM_ITEMSAVE:
            return saveFile();
        case IDM_ITEMCLEAR:
            editor_.build({});
            return showStops();
        default:
            return;
    }
}

bool frmPattern::onMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& /*answer*/) {
    switch (message) {
        case WM_PAINT:
            paintMarkers();
            return true;
        case WM_DRAWITEM: {
            const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(longer);
            ramp_.paint(item.hDC, item.rcItem);
            return true;
        }
        case kFlagOpened:
            chooseStopColor(static_cast<std::size_t>(longer));
            return true;
        case kFlagKey:
            onFlagKey(wide);
            return true;
        default:
            return false;
    }
}

/// The list of stops is another one: flags, values and ramp follow it. The focus stays with the flags when it
/// was there.
void frmPattern::showStops() {
    const HWND focus = GetFocus();
    const bool onFlag = IsChild(window(), focus) && GetDlgCtrlID(focus) >= IDC_PICFLAGUP;
    tip_.hide();
    makeFlags(editor_.count());
    flags_.resize(editor_.count());
    placeFlags();
    if (onFlag) SetFocus(flags_[editor_.selected()]->window());
    showSelection();
    showRamp();
}

/// At least so many; those that no stop has yet cannot be seen. Where the system has no windows for all of
/// them, it gets those back that were made.
void frmPattern::makeFlags(std::size_t count) {
    const std::size_t before = flags_.size();
    try {
        while (flags_.size() < count) addFlag();
    } catch (...) {
        flags_.resize(before);
        throw;
    }
}

void frmPattern::addFlag() {
    const std::size_t index = flags_.size();
    const int id = IDC_PICFLAGUP + static_cast<int>(index);
    flags_.push_back(std::make_unique<StopFlag>(static_cast<StopFlagOwner&>(*this), window(), id, index));
    flags_.back()->bringToFront();
}

void frmPattern::placeFlags() const {
    for (std::size_t i = 0; i < flags_.size() && i < editor_.count(); ++i) {
        const CVrxPatternColor& stop = editor_.stop(i);
        flags_[i]->moveTo(stop.position() + kFlagOffset, layout_.flagTop());
        flags_[i]->setName(percentText(stop.percPosition()));
    }
    const RECT markers{0, layout_.markerTop(), innerSize(window()).cx, layout_.flagTop()};
    InvalidateRect(window(), &markers, TRUE);
}

void frmPattern::showSelection() {
    for (std::size_t i = 0; i < flags_.size() && i < editor_.count(); ++i) {
        flags_[i]->setColor(editor_.stop(i).color());
        flags_[i]->setSelected(i == editor_.selected());
    }
    const std::int32_t color = editor_.stop(editor_.selected()).color();
    setText(IDC_LBLRED, decimalText(Get_Red(color)));
    setText(IDC_LBLGREEN, decimalText(Get_Green(color)));
    setText(IDC_LBLBLUE, decimalText(Get_Blue(color)));
    paintNow();
}

void frmPattern::showRamp() {
    if (!isLoaded() || !object_ || editor_.count() == 0) return;
    ramp_.expand(*object_, editor_.pattern(), editor_.rampWidth());
    InvalidateRect(control(IDC_PICPATTERN), nullptr, FALSE);
    paintNow();
}

/// What has to be painted does not wait until there is nothing else to do: a stop that is dragged keeps up
/// with the mouse.
void frmPattern::paintNow() const {
    if (isLoaded()) RedrawWindow(window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void frmPattern::showTip(std::size_t index) {
    const CVrxPatternColor& stop = editor_.stop(index);
    tip_.show(percentText(stop.percPosition()), layout_.ramp.left + stop.position(), layout_.ramp.top);
}

/// The line between each flag and its column.
void frmPattern::paintMarkers() const {
    const Painting painting(window());
    for (std::size_t i = 0; i < editor_.count(); ++i) {
        const LONG column = layout_.ramp.left + editor_.stop(i).position();
        const RECT marker{column, layout_.markerTop(), column + 1, layout_.flagTop()};
        FillRect(painting.dc(), &marker, GetSysColorBrush(COLOR_BTNTEXT));
    }
}

void frmPattern::flagPressed(std::size_t index) {
    if (index >= editor_.count()) return;
    selectFlag(index);
    showTip(index);
}

void frmPattern::flagDragged(std::size_t index, std::int32_t columns) {
    if (!editor_.move(index, columns)) return;
    placeFlags();
    showTip(index);
    showRamp();
}

void frmPattern::flagReleased() {
    tip_.hide();
    paintNow();
}

void frmPattern::flagFocused(std::size_t index) {
    if (index < editor_.count()) selectFlag(index);
}

void frmPattern::selectFlag(std::size_t index) {
    if (index == editor_.selected()) return;
    editor_.select(index);
    showSelection();
}

void frmPattern::cancel() {
    cancelled_ = true;
    editor_.clear();
    hide();
}

void frmPattern::addStop() {
    orTell(u"Cannot add a stop", [&] {
        makeFlags(editor_.count() + 1);
        editor_.add();
        showStops();
    });
}

void frmPattern::removeStop() {
    if (editor_.removeSelected()) showStops();
}

void frmPattern::onFlagKey(WPARAM key) {
    if (editor_.count() == 0 || flags_.size() < editor_.count()) return;
    const bool right = key == VK_RIGHT;
    switch (key) {
        case VK_LEFT:
        case VK_RIGHT:
            if (isDown(VK_CONTROL)) {
                const std::size_t next = editor_.neighbour(right);
                flags_[next]->bringToFront();
                SetFocus(flags_[next]->window());
                return;
            }
            return flagDragged(editor_.selected(), (right ? 1 : -1) * (isDown(VK_SHIFT) ? kLongStep : 1));
        case VK_INSERT:
            return addStop();
        case VK_DELETE:
            return removeStop();
        case VK_F2:
        case VK_RETURN:
            return chooseStopColor(editor_.selected());
        default:
            return flagReleased();
    }
}

void frmPattern::chooseStopColor(std::size_t index) {
    if (index >= editor_.count()) return;
    const auto color = chooseColor(window(), editor_.stop(index).color(), customColors_);
    if (!color || !isLoaded() || index >= editor_.count()) return;
    editor_.setColor(index, *color);
    // The stop has its colour, whether it can be shown now or not.
    static_cast<void>(failureOf([&] {
        showSelection();
        showRamp();
    }));
}

void frmPattern::loadFile() {
    const Held<ChosenFile> path(files_.choose(window(), PatternFileUse::Load));
    if (!*path || !isLoaded()) return;
    orTell(u"Cannot read " + **path, [&] {
        const auto pattern = readPatternFile(**path);
        if (!pattern) return;
        PatternEditor loaded = editor_;
        loaded.build(*pattern);
        makeFlags(loaded.count());
        editor_ = std::move(loaded);
        showStops();
    });
}

void frmPattern::saveFile() {
    const Held<ChosenFile> path(files_.choose(window(), PatternFileUse::Save));
    if (!*path || !isLoaded()) return;
    orTell(u"Cannot write " + **path, [&] { writePatternFile(**path, editor_.pattern()); });
}

}  // namespace vrx
