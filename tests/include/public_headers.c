/* A host written in plain C sees the public headers as this file does. */
#include "vorna/host_abi.h"
#include "vorna/ptz.h"

const char* const vorna_protocol_names[VORNA_PROTOCOL_COUNT] = {VORNA_PROTOCOL_NAMES};

int vorna_is_go_to_preset(const HostEvent* event, int opcode) {
    return event->type == VORNA_TYPE_EVENT && opcode == VORNA_OP_GO_TO_PRESET;
}
