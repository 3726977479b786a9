#include "protocol_limits.h"

#include <cmath>
#include <cstdio>

#include "vorna/ptz.h"

namespace vorna_host {

namespace {

// A frame field that carries no speed for an axis still takes the setting
// through the module's arithmetic; this keeps it far from overflow.
constexpr int kNoSpeedField = 255;

// The highest speed setting per axis whose frame field still holds it (the
// module sends setting + 1 as the magnitude):
// Pelco: pan and tilt bytes are the setting itself, 0x00 to 0x3F; the zoom
// speed command carries it in a byte.
// Panasonic: sixteen pan and tilt steps of four magnitudes; four zoom speeds.
// AD-RS422: the speed byte is the magnitude; zoom frames carry no speed.
// Bosch: tilt shares its byte with the zoom nibble, so (magnitude >> 2) - 1
// stays within 15 (and pan with it); the zoom nibble is 2 x magnitude - 1.
// GE-ASCII: two decimal digits hold magnitude / 2 - 1 and 8 x magnitude - 1.
// GE-Impac: seven bits hold magnitude / 2 and 8 x magnitude.
// AD MegaPower: keyboard speed digits up to magnitude 55 (AD-M3200) or 63
// (AD-MP48); zoom keys carry no speed.
// The usual baud rate rides along: a switcher keyboard port (AD MegaPower)
// runs at 1200.
struct WireLimits {
    const char* protocol;
    int pan, tilt, zoom;
    int usualBaud;
};

const WireLimits kWireLimits[] = {
    {VORNA_PROTOCOL_PELCO_D, 63, 63, 255, 2400},
    {VORNA_PROTOCOL_HSD_PELCO_D, 63, 63, 255, 2400},
    {VORNA_PROTOCOL_PELCO_P, 63, 63, 255, 4800},
    {VORNA_PROTOCOL_PANASONIC, 63, 63, 3, 9600},
    {VORNA_PROTOCOL_AD_RS422, 254, 254, kNoSpeedField, 4800},
    {VORNA_PROTOCOL_BOSCH, 66, 66, 7, 9600},
    {VORNA_PROTOCOL_GE_ASCII, 200, 200, 11, 9600},
    {VORNA_PROTOCOL_GE_IMPAC, 254, 254, 14, 9600},
    {VORNA_PROTOCOL_AD_M3200, 54, 54, kNoSpeedField, 1200},
    {VORNA_PROTOCOL_AD_M3200_MULTI, 54, 54, kNoSpeedField, 1200},
    {VORNA_PROTOCOL_AD_MP48, 62, 62, kNoSpeedField, 1200},
    {VORNA_PROTOCOL_AD_MP48_MULTI, 62, 62, kNoSpeedField, 1200},
};

struct Surprise {
    const char* protocol;
    int opcode;
    const char* effect;
};

const Surprise kSurprises[] = {
    {VORNA_PROTOCOL_AD_RS422, VORNA_OP_CLEAR_PRESET, "AD-RS422 cannot clear a preset: 'preset clear %d' stores the current position as "
                               "preset %d"},
};

const WireLimits* FindWireLimits(const std::string& protocol) {
    for (const WireLimits& limits : kWireLimits)
        if (protocol == limits.protocol) return &limits;
    return nullptr;
}

// The module takes the integer part of the parameter, truncated toward zero.
double IntegerPart(double parm) { return std::trunc(parm); }

std::string Range(long low, long high) { return std::to_string(low) + " to " + std::to_string(high); }

std::string CheckSpeed(const char* axis, double setting, int highest, const std::string& protocol) {
    if (IntegerPart(setting) >= 0 && IntegerPart(setting) <= highest) return std::string();
    return std::string("speed ") + axis + " must be " + Range(0, highest) + " on " + protocol;
}

std::string CheckCall(const OpcodeCall& call, const std::string& protocol, const ProtocolLimits& limits) {
    if (call.opcode < 0 || call.opcode >= VORNA_OPCODE_MAX) return "opcodes are " + Range(0, VORNA_OPCODE_MAX - 1);
    if (protocol.empty()) return std::string();
    const WireLimits* speeds = FindWireLimits(protocol);
    switch (call.opcode) {
        case VORNA_OP_SET_PAN_SPEED:
            return speeds ? CheckSpeed("pan", call.parm, speeds->pan, protocol) : std::string();
        case VORNA_OP_SET_TILT_SPEED:
            return speeds ? CheckSpeed("tilt", call.parm, speeds->tilt, protocol) : std::string();
        case VORNA_OP_SET_ZOOM_SPEED:
            return speeds ? CheckSpeed("zoom", call.parm, speeds->zoom, protocol) : std::string();
        case VORNA_OP_SET_PRESET:
        case VORNA_OP_CLEAR_PRESET:
        case VORNA_OP_GO_TO_PRESET:
            if (IntegerPart(call.parm) >= 1 && IntegerPart(call.parm) <= limits.presets) return std::string();
            return "preset numbers on " + protocol + " are " + Range(1, limits.presets);
        default:
            return std::string();
    }
}

}  // namespace

std::string CheckCalls(const std::vector<OpcodeCall>& calls, const std::string& protocol,
                       const ProtocolLimits& limits) {
    for (const OpcodeCall& call : calls) {
        const std::string error = CheckCall(call, protocol, limits);
        if (!error.empty()) return error;
    }
    return std::string();
}

std::string CheckAddress(int address, const std::string& protocol, const ProtocolLimits& limits) {
    if (address >= limits.minAddress && address <= limits.maxAddress) return std::string();
    return "address " + std::to_string(address) + " is outside " + protocol + "'s addresses " +
           Range(limits.minAddress, limits.maxAddress);
}

std::string SurprisingEffect(const std::vector<OpcodeCall>& calls, const std::string& protocol) {
    for (const OpcodeCall& call : calls) {
        for (const Surprise& surprise : kSurprises) {
            if (protocol != surprise.protocol || call.opcode != surprise.opcode) continue;
            const int number = static_cast<int>(IntegerPart(call.parm));
            char text[256];
            std::snprintf(text, sizeof text, surprise.effect, number, number);
            return text;
        }
    }
    return std::string();
}

SpeedRange SpeedRangeOf(const std::string& protocol) {
    const WireLimits* limits = FindWireLimits(protocol);
    if (limits == nullptr) return SpeedRange();
    return SpeedRange{limits->pan, limits->tilt, limits->zoom};
}

int UsualBaud(const std::string& protocol) {
    const WireLimits* limits = FindWireLimits(protocol);
    return limits ? limits->usualBaud : 9600;
}

bool OnlySettings(const std::vector<OpcodeCall>& calls) {
    for (const OpcodeCall& call : calls)
        if (call.opcode != VORNA_OP_SET_PAN_SPEED && call.opcode != VORNA_OP_SET_TILT_SPEED &&
            call.opcode != VORNA_OP_SET_ZOOM_SPEED)
            return false;
    return true;
}

}  // namespace vorna_host
