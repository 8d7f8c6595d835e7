// The pattern editor: a ramp of colours with a flag for each stop below it.
// On a flag, Left and Right move its stop by a column, with Shift by ten; with Ctrl they select the
// neighbour. Insert adds a stop, Delete removes it, Enter and F2 choose its colour.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "VrxCommon.h"
#include "com/com_ptr.h"
#include "dialogs/form.h"
#include "pattern/editor/editor_font.h"
#include "pattern/editor/pattern_dialogs.h"
#include "pattern/editor/pattern_files.h"
#include "pattern/editor/pattern_ramp.h"
#include "pattern/editor/percent_tip.h"
#include "pattern/editor/stop_flag.h"
#include "pattern/engine/pattern_editor.h"
#include "pattern/engine/pattern_layout.h"

namespace vrx {

class frmPattern final : public Form, private StopFlagOwner {
  public:
    frmPattern();
    ~frmPattern() override;

    /// Where the settings are kept; without it there are none.
    void setREGKEY(std::u16string key) { regKey_ = std::move(key); }
    /// Expands patterns for the ramp. Without one the ramp stays as it is.
    void setObjPattern(ComPtr<_CVrxPattern> object) { object_ = std::move(object); }
    /// Makes the window, hidden, with the stops of this pattern.
    void prepare(const std::u16string& pattern);

    [[nodiscard]] bool cancelled() const { return cancelled_; }
    /// Also when the window is gone.
    [[nodiscard]] std::u16string pattern() const { return editor_.pattern(); }

  private:
    void onLoad() override;
    void onUnload() override;
    void onEscape() override { cancel(); }
    void onCommand(int id, int notification, HWND control) override;
    void onResize(int width, int height) override;
    bool onMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer) override;

    void flagPressed(std::size_t index) override;
    void flagDragged(std::size_t index, std::int32_t columns) override;
    void flagReleased() override;
    void flagFocused(std::size_t index) override;

    [[nodiscard]] std::int32_t readSettings();
    void resizeTo(int width);
    void layOut(int width, int height);
    void place(int id, const Box& box) const;

    void showStops();
    void makeFlags(std::size_t count);
    void addFlag();
    void placeFlags() const;
    void showSelection();
    void showRamp();
    void paintNow() const;
    void showTip(std::size_t index);
    void paintMarkers() const;

    void cancel();
    void addStop();
    void removeStop();
    void onFlagKey(WPARAM key);
    void selectFlag(std::size_t index);
    void chooseStopColor(std::size_t index);
    void loadFile();
    void saveFile();

    std::u16string regKey_;
    ComPtr<_CVrxPattern> object_;
    PatternEditor editor_;
    std::vector<std::unique_ptr<StopFlag>> flags_;
    PatternRamp ramp_;
    PercentTip tip_;
    EditorFont font_;
    PatternLayout layout_{};
    CustomColors customColors_{};
    PatternFiles files_;
    bool cancelled_ = false;
    bool ready_ = false;
};

}  // namespace vrx
