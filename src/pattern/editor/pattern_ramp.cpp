#include "pattern/editor/pattern_ramp.h"

#include <span>

#include "com/variant_convert.h"
#include "pattern/engine/modPattern.h"

namespace vrx {
namespace {

/// The elements of an array, locked in their place as long as the view exists.
class VariantArrayView {
  public:
    explicit VariantArrayView(SAFEARRAY* array) : array_(array) {
        LONG upper = -1;
        VARIANT* elements = nullptr;
        if (!array_ || FAILED(SafeArrayGetUBound(array_, 1, &upper))) return;
        if (FAILED(SafeArrayAccessData(array_, reinterpret_cast<void**>(&elements)))) return;
        elements_ = {elements, static_cast<std::size_t>(upper + 1)};
    }
    VariantArrayView(const VariantArrayView&) = delete;
    VariantArrayView& operator=(const VariantArrayView&) = delete;
    ~VariantArrayView() {
        if (elements_.data()) SafeArrayUnaccessData(array_);
    }

    [[nodiscard]] std::span<const VARIANT> elements() const { return elements_; }

  private:
    SAFEARRAY* array_;
    std::span<const VARIANT> elements_;
};

std::uint32_t bitmapColor(std::int32_t color) {
    return Get_Blue(color) | std::uint32_t{Get_Green(color)} << 8 | std::uint32_t{Get_Red(color)} << 16;
}

}  // namespace

void PatternRamp::expand(_CVrxPattern& object, const std::u16string& pattern, std::int32_t width) {
    Variant table;
    if (FAILED(object.Get_PatternFromString(toBstr(pattern).get(), width, &table.get()))) return;
    if (V_VT(&table.get()) != (VT_ARRAY | VT_VARIANT)) return;
    columns_.clear();
    const VariantArrayView view(V_ARRAY(&table.get()));
    for (const VARIANT& element : view.elements()) columns_.push_back(bitmapColor(V_I4(&element)));
}

void PatternRamp::paint(HDC dc, const RECT& area) const {
    if (columns_.empty()) return;
    const auto width = static_cast<LONG>(columns_.size());
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, 1, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    SetStretchBltMode(dc, COLORONCOLOR);
    StretchDIBits(dc, area.left, area.top, width, area.bottom - area.top, 0, 0, width, 1, columns_.data(),
                  &info, DIB_RGB_COLORS, SRCCOPY);
}

}  // namespace vrx
