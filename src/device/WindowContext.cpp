#include "device/WindowContext.h"

#include "domain/ControlView.h"

namespace rk31 {

int WindowContext::selectedPart() const {
    if (family != WindowFamily::OnePartPoint) {
        return 0;
    }
    return qMax(0, view.listIndex(ctl::PartSel));
}

}  // namespace rk31
