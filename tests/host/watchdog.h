// Ends the program when a test hangs.
#pragma once

namespace host {

/// A long test is alive. One that has not told so for three minutes hangs.
void noteProgress();

}  // namespace host
