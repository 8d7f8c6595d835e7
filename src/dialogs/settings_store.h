// What the dialogs remember, read and written through the one SettingsRegistry component that the library
// shares; threads that the system cannot give it to have one each. Nothing is ever shown or thrown for want
// of it: reading then gives the default, writing does nothing.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "dialogs/engine/settings.h"

namespace vrx {

class SettingsStore {
  public:
    /// `root` is the subkey that the host chose; it may be empty.
    explicit SettingsStore(std::u16string root) : root_(std::move(root)) {}

    [[nodiscard]] std::u16string read(const FolderSetting& setting) const;
    [[nodiscard]] std::int32_t read(const NumberSetting& setting) const;
    void write(const FolderSetting& setting, const std::u16string& folder) const;
    void write(const NumberSetting& setting, std::int32_t value) const;

  private:
    std::u16string root_;
};

/// Gives the shared component back; the next use makes a new one.
void releaseSettingsComponent() noexcept;

}  // namespace vrx
