// Makes calls of the system fail, for the calls of the component's own modules: their import tables are
// patched from outside.
#pragma once

#include <array>
#include <iosfwd>
#include <string>

namespace faults {

/// Whether the program was asked for everything, not for the fast selection.
bool everything();

/// What fails together.
enum class Kind { Memory, Automation, Drawing, Windows, Files, Registry, Pictures, Libraries };

inline constexpr std::array kKinds = {Kind::Memory, Kind::Automation, Kind::Drawing,  Kind::Windows,
                                      Kind::Files,  Kind::Registry,   Kind::Pictures, Kind::Libraries};

const char* nameOf(Kind kind);
void PrintTo(Kind kind, std::ostream* out);

/// Loads VrxCommon.dll, ijl10.dll and VrxSettings.dll beside the program and patches them for good.
void install();

/// While it exists, the n-th call (from 1) of a kind by the thread that made it fails, or that one and all
/// later ones.
class Injection {
  public:
    Injection(Kind kind, int nth, bool lasting);
    Injection(const Injection&) = delete;
    Injection& operator=(const Injection&) = delete;
    ~Injection() { end(); }

    /// No call fails any more.
    void end();
    /// How many calls failed.
    [[nodiscard]] int count() const;
    /// The function whose call failed first; empty for none.
    [[nodiscard]] std::string first() const;
};

/// Blocks of memory that the modules hold, less those that they held when they were patched.
long liveBlocks();

/// Calls of a kind that failed since the program began.
long total(Kind kind);

}  // namespace faults
