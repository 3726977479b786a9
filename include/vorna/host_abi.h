/*
 * VORNA host interface.
 *
 * A recorder (the host) loads libvorna.so at run time and drives it through
 * six entry points with C linkage. Everything the module produces comes back
 * through one callback that the host hands over at Load: serial output for the
 * camera lines, configuration notices, log lines and the module announcement.
 *
 * Calling order: Load, Open, then any number of Write and IOCTL calls, with
 * one IOCTL op 1 call running on a host thread of its own for as long as the
 * module is open (it is the module's worker cycle and returns only when Close
 * stops it), then Close and Unload. Every entry point returns 0.
 *
 * The record layouts below are binary contracts: every offset is checked at
 * compile time. Fields named opaque* belong to the host; the module never
 * reads or writes them.
 */
#ifndef VORNA_HOST_ABI_H
#define VORNA_HOST_ABI_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The module's identifier: registered at Load, the ID of the PTZ element in
 * event and configuration documents, and the stream of the module's own
 * messages (log, announcement, configuration notice). */
#define VORNA_MODULE_ID 0x100000u

/* Message types (single bits) and the flags that go with them. */
#define VORNA_TYPE_ALARM_EVENT 0x4u   /* host to module: start/end alarm commands */
#define VORNA_TYPE_EVENT 0x8u         /* host to module: immediate PTZ commands */
#define VORNA_TYPE_SERIAL 0x10u       /* module to host: bytes for a camera line */
#define VORNA_TYPE_LOG 0x40u          /* module to host: log line */
#define VORNA_TYPE_CONFIG 0x100u      /* module to host: configuration notice or announcement */

#define VORNA_FLAGS_EVENT 0x1000010u        /* both bits required on incoming events */
#define VORNA_FLAGS_SERIAL 0x1000001u
#define VORNA_FLAGS_NOTICE 0x1000010u       /* log lines and configuration notices */
#define VORNA_FLAGS_ANNOUNCEMENT 0x2000010u

/* IOCTL operations. */
#define VORNA_IOCTL_RUN_WORKER 1u
#define VORNA_IOCTL_UPDATE_CONFIG 2u

/* A record the module sends to the host. The module zeroes it whole, then
 * fills the named fields; the payload is not terminated and lives only until
 * the callback returns, so the host copies what it keeps. */
typedef struct HostMessage {
    uint32_t size;      /* 224 */
    uint32_t version;   /* 1 */
    uint32_t length;    /* payload bytes */
    uint32_t reserved0;
    const void* data;   /* payload, binary-safe */
    uint64_t stream;    /* VORNA_MODULE_ID, or a camera line's stream number */
    uint64_t reserved1;
    uint64_t type;
    uint64_t flags;
    uint8_t reserved2[168];
} HostMessage;

/* The host callback: 0 means accepted, anything else is an error code. */
typedef int (*HostCallback)(HostMessage* message, int zero);

/* First argument of Load; read once, never kept. */
typedef struct HostInterface {
    uint64_t opaque0;
    uint64_t opaque1;
    HostCallback callback;
} HostInterface;

/* Second argument of Load. The module writes exactly the five named fields
 * and leaves every other byte as the host prepared it. */
typedef struct ModuleRegistration {
    uint8_t opaque0[8];
    uint64_t moduleId;       /* VORNA_MODULE_ID */
    uint8_t opaque1[16];
    uint64_t firstMask;      /* VORNA_FLAGS_ANNOUNCEMENT */
    uint64_t secondMask;     /* VORNA_FLAGS_ANNOUNCEMENT */
    uint8_t opaque2[48];
    uint8_t firstFlag;       /* 1 */
    uint8_t opaque3[2];
    uint8_t secondFlag;      /* 1 */
    uint8_t opaque4[4];
} ModuleRegistration;

/* The record the host hands to Write: the same fields as HostMessage, eight
 * bytes further on. Only length, data, type and flags are read. */
typedef struct HostEvent {
    uint8_t opaque0[8];
    uint32_t size;
    uint32_t version;
    int32_t length;          /* payload bytes; 0 or less carries nothing */
    uint32_t opaque1;
    const void* data;        /* XML text, not necessarily terminated */
    uint64_t stream;
    uint64_t opaque2;
    uint64_t type;           /* VORNA_TYPE_EVENT or VORNA_TYPE_ALARM_EVENT */
    uint64_t flags;          /* must contain VORNA_FLAGS_EVENT */
    uint8_t opaque3[168];
} HostEvent;

/* The argument of IOCTL. */
typedef struct IoctlRequest {
    uint8_t opaque0[8];
    uint32_t op;             /* VORNA_IOCTL_* */
    uint32_t opaque1;
    uint8_t opaque2[8];
    uint32_t length;         /* op 2: configuration text length */
    uint32_t opaque3;
    const void* data;        /* op 2: configuration text, not necessarily terminated */
} IoctlRequest;

/* Entry points, exported with C linkage. Each returns 0. */
typedef int (*VornaLoadFn)(HostInterface* host, ModuleRegistration* registration);
typedef int (*VornaOpenFn)(void);
typedef int (*VornaWriteFn)(HostEvent* incoming);
typedef int (*VornaIoctlFn)(IoctlRequest* request);
typedef int (*VornaCloseFn)(void);
typedef int (*VornaUnloadFn)(void);

int Load(HostInterface* host, ModuleRegistration* registration);
int Open(void);
int Write(HostEvent* incoming);
int IOCTL(IoctlRequest* request);
int Close(void);
int Unload(void);

#ifdef __cplusplus
}
#define VORNA_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define VORNA_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

VORNA_STATIC_ASSERT(sizeof(void*) == 8, "the host records are laid out for 64-bit hosts");

VORNA_STATIC_ASSERT(sizeof(HostMessage) == 224, "HostMessage size");
VORNA_STATIC_ASSERT(offsetof(HostMessage, size) == 0, "HostMessage.size");
VORNA_STATIC_ASSERT(offsetof(HostMessage, version) == 4, "HostMessage.version");
VORNA_STATIC_ASSERT(offsetof(HostMessage, length) == 8, "HostMessage.length");
VORNA_STATIC_ASSERT(offsetof(HostMessage, reserved0) == 12, "HostMessage.reserved0");
VORNA_STATIC_ASSERT(offsetof(HostMessage, data) == 16, "HostMessage.data");
VORNA_STATIC_ASSERT(offsetof(HostMessage, stream) == 24, "HostMessage.stream");
VORNA_STATIC_ASSERT(offsetof(HostMessage, reserved1) == 32, "HostMessage.reserved1");
VORNA_STATIC_ASSERT(offsetof(HostMessage, type) == 40, "HostMessage.type");
VORNA_STATIC_ASSERT(offsetof(HostMessage, flags) == 48, "HostMessage.flags");
VORNA_STATIC_ASSERT(offsetof(HostMessage, reserved2) == 56, "HostMessage.reserved2");

VORNA_STATIC_ASSERT(offsetof(HostInterface, callback) == 16, "HostInterface.callback");

VORNA_STATIC_ASSERT(offsetof(ModuleRegistration, moduleId) == 8, "ModuleRegistration.moduleId");
VORNA_STATIC_ASSERT(offsetof(ModuleRegistration, firstMask) == 32, "ModuleRegistration.firstMask");
VORNA_STATIC_ASSERT(offsetof(ModuleRegistration, secondMask) == 40, "ModuleRegistration.secondMask");
VORNA_STATIC_ASSERT(offsetof(ModuleRegistration, firstFlag) == 96, "ModuleRegistration.firstFlag");
VORNA_STATIC_ASSERT(offsetof(ModuleRegistration, secondFlag) == 99, "ModuleRegistration.secondFlag");
VORNA_STATIC_ASSERT(sizeof(ModuleRegistration) == 104, "ModuleRegistration size");

VORNA_STATIC_ASSERT(offsetof(HostEvent, length) == 16, "HostEvent.length");
VORNA_STATIC_ASSERT(offsetof(HostEvent, data) == 24, "HostEvent.data");
VORNA_STATIC_ASSERT(offsetof(HostEvent, type) == 48, "HostEvent.type");
VORNA_STATIC_ASSERT(offsetof(HostEvent, flags) == 56, "HostEvent.flags");
VORNA_STATIC_ASSERT(sizeof(HostEvent) == 232, "HostEvent size");

VORNA_STATIC_ASSERT(offsetof(IoctlRequest, op) == 8, "IoctlRequest.op");
VORNA_STATIC_ASSERT(offsetof(IoctlRequest, length) == 24, "IoctlRequest.length");
VORNA_STATIC_ASSERT(offsetof(IoctlRequest, data) == 32, "IoctlRequest.data");

#endif /* VORNA_HOST_ABI_H */
