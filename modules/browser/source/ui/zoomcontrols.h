// The slider and the two buttons that set how large icons are, in percent of the largest.
#pragma once

#include "services/gedialog.h"

namespace browser {

class ZoomControls
{
public:
    explicit ZoomControls(DialogBase& owner)
        : dialog(owner)
    {
    }

    void Fill(double zoom); // when the dialog opens
    void Show(double zoom);
    // True if a gadget of these was used; `zoom` is then what the user wants.
    bool Command(int32_t id, double& zoom);

private:
    DialogBase& dialog;
};

} // namespace browser
