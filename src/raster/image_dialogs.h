// The dialogs of a CVrxImage, as the object asks for them. Who shows them is bound in the class table.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace vrx {

/// Each is modal: it returns when the dialog is closed. It may be left by the host's code (com/entry.h), so
/// the caller's frame owns nothing that is given here.
class ImageDialogs {
  public:
    /// Chooses a picture file. Its full name; empty when the user cancels.
    [[nodiscard]] virtual std::u16string load(const std::u16string& regKey, BSTR suggestedFile) const = 0;
    /// Saves the picture that stands in a BMP file.
    virtual void save(const std::u16string& regKey, std::u16string&& bitmapFile) const = 0;
    /// Shows a picture file in its own size.
    virtual void see(BSTR file) const = 0;

  protected:
    ~ImageDialogs() = default;
};

}  // namespace vrx
