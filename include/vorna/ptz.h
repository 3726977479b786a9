/*
 * VORNA PTZ vocabulary.
 *
 * The numbers and names that the module, its host and the reference host
 * share: the PTZ command opcodes, the camera protocol names, the values of
 * the host's serial section and the levels of the module's log lines.
 * Everything here is a plain constant, usable from C89 on and from C++.
 */
#ifndef VORNA_PTZ_H
#define VORNA_PTZ_H

/* PTZ command opcodes carried in an event's Opcode attribute. The module
 * declares 0 to VORNA_OPCODE_MAX - 1; the opcodes named here have a command
 * of their own, every other one resends the camera's kept command. */
#define VORNA_OP_AUTO_IRIS 9
#define VORNA_OP_IRIS_OPEN 10              /* menu select while the menu is open */
#define VORNA_OP_IRIS_CLOSE 11
#define VORNA_OP_FOCUS_NEAR 12
#define VORNA_OP_FOCUS_FAR 13
#define VORNA_OP_AUTO_FOCUS 14
#define VORNA_OP_ZOOM_IN 17
#define VORNA_OP_ZOOM_OUT 18
#define VORNA_OP_SET_ZOOM_SPEED 30
#define VORNA_OP_STOP_ZOOM 31
#define VORNA_OP_STOP_PAN 32
#define VORNA_OP_PAN_LEFT 33               /* menu left while the menu is open */
#define VORNA_OP_PAN_RIGHT 34              /* menu right */
#define VORNA_OP_SET_PAN_SPEED 39
#define VORNA_OP_SET_TILT_SPEED 46
#define VORNA_OP_TILT_DOWN 52              /* menu down */
#define VORNA_OP_TILT_UP 53                /* menu up */
#define VORNA_OP_STOP_TILT 54
#define VORNA_OP_SET_PRESET 58
#define VORNA_OP_CLEAR_PRESET 59
#define VORNA_OP_GO_TO_PRESET 60
#define VORNA_OP_STOP_IRIS 62
#define VORNA_OP_STOP_FOCUS 63
#define VORNA_OP_RAW_COMMAND 64
#define VORNA_OP_MENU_ON 65
#define VORNA_OP_MENU_OFF 66
#define VORNA_OP_FLIP 67
#define VORNA_OP_APPLE_PEEL 68
#define VORNA_OP_RUN_PATTERN 69
#define VORNA_OP_START_PATTERN_RECORDING 70
#define VORNA_OP_STOP_PATTERN_RECORDING 71
#define VORNA_OP_PATTERN_ACTION_2 72
#define VORNA_OP_MENU_ENTER 73

/* The number of opcodes, published as the PTZ element's OPCODE_MAX. */
#define VORNA_OPCODE_MAX 74

/* Camera protocol names, exact in case and blanks. */
#define VORNA_PROTOCOL_PELCO_D "Pelco-D"
#define VORNA_PROTOCOL_HSD_PELCO_D "HSD-Pelco-D"
#define VORNA_PROTOCOL_PELCO_P "Pelco-P"
#define VORNA_PROTOCOL_PANASONIC "Panasonic"
#define VORNA_PROTOCOL_AD_RS422 "AD-RS422"
#define VORNA_PROTOCOL_BOSCH "Bosch"
#define VORNA_PROTOCOL_GE_ASCII "GE-ASCII"
#define VORNA_PROTOCOL_GE_IMPAC "GE-Impac"
#define VORNA_PROTOCOL_AD_M3200 "AD-M3200"
#define VORNA_PROTOCOL_AD_M3200_MULTI "AD-M3200 Multi"
#define VORNA_PROTOCOL_AD_MP48 "AD-MP48"
#define VORNA_PROTOCOL_AD_MP48_MULTI "AD-MP48 Multi"

/* Every protocol name, as an initializer list:
 * const char* const names[VORNA_PROTOCOL_COUNT] = {VORNA_PROTOCOL_NAMES}; */
#define VORNA_PROTOCOL_COUNT 12
#define VORNA_PROTOCOL_NAMES                                                                  \
    VORNA_PROTOCOL_PELCO_D, VORNA_PROTOCOL_HSD_PELCO_D, VORNA_PROTOCOL_PELCO_P,               \
        VORNA_PROTOCOL_PANASONIC, VORNA_PROTOCOL_AD_RS422, VORNA_PROTOCOL_BOSCH,              \
        VORNA_PROTOCOL_GE_ASCII, VORNA_PROTOCOL_GE_IMPAC, VORNA_PROTOCOL_AD_M3200,            \
        VORNA_PROTOCOL_AD_M3200_MULTI, VORNA_PROTOCOL_AD_MP48, VORNA_PROTOCOL_AD_MP48_MULTI

/* The host's Serial section (ID attribute) and, on its Device entries, the
 * Use value of a port that drives PTZ cameras. */
#define VORNA_SERIAL_ID 851968
#define VORNA_SERIAL_USE_PTZ 2

/* Levels of the module's log lines. */
#define VORNA_LOG_MISSING 50        /* a configured item refers to one that does not exist */
#define VORNA_LOG_UNPROCESSABLE 75  /* a document or command cannot be processed */

#endif /* VORNA_PTZ_H */
