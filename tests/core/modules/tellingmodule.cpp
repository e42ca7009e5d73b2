// A module that writes each action to the console of the host, for tests of the loader.
#include <string>

#include "vx3/entry.h"

namespace {

const VX3Host* host = nullptr;

void Tell(int32_t action, const void* message)
{
    std::string words = action == VX3_ACTION_MESSAGE ? "message " + std::to_string(reinterpret_cast<intptr_t>(message))
                                                     : "action " + std::to_string(action);
    VX3String text = {};
    if (host->text->set(&text, words.c_str(), -1, VX3_ENCODING_PLAIN))
        host->console->line(&text);
    host->text->destruct(&text);
}

} // namespace

extern "C" __attribute__((visibility("default"))) int32_t vx3_main(int32_t action, void* arg1, void* arg2, void*)
{
    if (action == VX3_ACTION_LOAD)
        host = static_cast<const VX3Host*>(arg1);
    Tell(action, arg1);
    if (action == VX3_ACTION_MESSAGE && reinterpret_cast<intptr_t>(arg1) == VX3_MESSAGE_RESOURCES)
        static_cast<VX3ResourceRequest*>(arg2)->pending = 0;
    return VX3_RESULT_OK;
}
