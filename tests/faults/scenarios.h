// What hosts do with the component, piece by piece: each public method, registration, creation, each dialog
// opened, used and closed, the control on a form.
#pragma once

#include <string>
#include <vector>

#include "VrxCommon.h"
#include "hdr_host.h"
#include "host.h"
#include "throwaway_folder.h"
#include "user.h"

namespace faults {

/// How a scenario ended for the host.
struct Answer {
    long number = 0;    ///< of the error; 0 for none
    std::string value;  ///< what came back, the bytes of pictures included

    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out);

/// A fresh object and the files that it works with.
class Stage {
  public:
    Stage();

    const host::ThrowawayFolder folder;
    const host::RgbePicture picture{16, 12};
    const std::wstring hdrFile = folder.write(L"in.hdr", picture.file());
    const std::wstring bmpFile;
    const std::wstring jpgFile;
    /// Files that scenarios write over.
    const std::wstring outHdr = folder / L"out.hdr";
    const std::wstring outBmp = folder / L"out.bmp";
    const std::wstring outJpg = folder / L"out.jpg";

    vrx::ComPtr<IDispatch> object;
    vrx::Variant variable;  ///< a host's variable that a call gets by reference

    /// Old bytes in all files to write over.
    void resetFiles() const;
    [[nodiscard]] std::vector<host::FileBytes> files() const;

    /// A late-bound call; further calls of the scenario go on behind a failed one.
    void call(const wchar_t* name, std::initializer_list<VARIANT> arguments = {});
    void get(const wchar_t* name) { note(host::get(*object, name)); }
    void put(const wchar_t* name, VARIANT value) { note(host::put(*object, name, value)); }
    void note(HRESULT result);
    void noteBytes(const host::FileBytes& bytes);
    Answer answer;

  private:
    void note(host::Outcome outcome);
};

using Step = void (*)(Stage& stage);

struct Scenario {
    const char* name;
    const CLSID* classId;  ///< of the stage's object; null for none
    Step prepare;          ///< without faults
    Step act;
    /// Failures may also end in another answer without an error: the member promises never to fail, or takes
    /// another way.
    bool neverFails = false;
    std::vector<UserStep> user = {};  ///< what is done with the dialogs that are shown
    /// A part of the system's that may leave kernel and USER handles behind: the same without the component.
    void (*ofSystem)() = nullptr;
    /// Windows like those that are opened, without the component: the system may keep memory for each.
    void (*plainWindows)() = nullptr;
};

inline void nothing(Stage&) {}

const std::vector<Scenario>& methods();
const std::vector<Scenario>& dialogs();
const std::vector<Scenario>& controls();

/// All of them, or in the fast selection the first and each so many behind it.
std::vector<Scenario> selected(const std::vector<Scenario>& all, std::size_t step);

void PrintTo(const Scenario& scenario, std::ostream* out);

}  // namespace faults
