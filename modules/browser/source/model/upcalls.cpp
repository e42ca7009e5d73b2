#include "model/upcalls.h"

namespace browser {

Upcalls upcalls;

Preview* MakeIcon(Icon number, int32_t size)
{
    return upcalls.makeIcon ? upcalls.makeIcon(number, size) : nullptr;
}

} // namespace browser
