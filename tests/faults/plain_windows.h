// The component's windows without the component: what stays behind of them, the system keeps.
#pragma once

#include <initializer_list>

namespace faults {

/// Makes and destroys a dialog of each of the component's templates, with the common controls that the
/// component asks for and a procedure that does nothing. The first also gets so many labels with its font.
void makePlainWindows(std::initializer_list<int> templates, int labels = 0);

}  // namespace faults
