#include "services/host.h"

namespace browser {

const VX3Host* host = nullptr;

} // namespace browser
