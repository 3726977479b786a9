/* A recorder's view of an installed VORNA: the header found through
 * pkg-config, the module loaded by the path pkg-config names, one
 * Load/Open/Close/Unload round, and the announcement checked against the
 * version being installed. Usage: install_host MODULE VERSION */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include <vorna/host_abi.h>

static char announcement[256];

static int Receive(HostMessage* message, int zero) {
    (void)zero;
    if (message->type == VORNA_TYPE_CONFIG && message->flags == VORNA_FLAGS_ANNOUNCEMENT &&
        message->length < sizeof announcement) {
        memcpy(announcement, message->data, message->length);
        announcement[message->length] = '\0';
    }
    return 0;
}

static void* Entry(void* module, const char* name) {
    void* entry = dlsym(module, name);
    if (entry == NULL) fprintf(stderr, "install_host: no entry point %s\n", name);
    return entry;
}

int main(int argc, char** argv) {
    HostInterface host;
    ModuleRegistration registration;
    char expected[256];
    void* module;
    VornaLoadFn loadFn;
    VornaOpenFn openFn;
    VornaCloseFn closeFn;
    VornaUnloadFn unloadFn;

    if (argc != 3) return 2;
    module = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (module == NULL) {
        fprintf(stderr, "install_host: %s\n", dlerror());
        return 1;
    }
    *(void**)&loadFn = Entry(module, "Load");
    *(void**)&openFn = Entry(module, "Open");
    *(void**)&closeFn = Entry(module, "Close");
    *(void**)&unloadFn = Entry(module, "Unload");
    if (!loadFn || !openFn || !closeFn || !unloadFn) return 1;

    memset(&host, 0, sizeof host);
    memset(&registration, 0, sizeof registration);
    host.callback = Receive;
    loadFn(&host, &registration);
    openFn();
    closeFn();
    unloadFn();
    dlclose(module);

    snprintf(expected, sizeof expected,
             "<?xml ?><Tarn Delta=\"0\"><Modules><Module Name=\"VORNA\" ID=\"1048576\" Version=\"%s\" /></Modules></Tarn>",
             argv[2]);
    if (registration.moduleId != VORNA_MODULE_ID || strcmp(announcement, expected) != 0) {
        fprintf(stderr, "install_host: module id %llu, announcement '%s'\n",
                (unsigned long long)registration.moduleId, announcement);
        return 1;
    }
    printf("install_host: %s announced itself from %s\n", argv[2], argv[1]);
    return 0;
}
