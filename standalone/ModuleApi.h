/* What a plug-in module may ask of the stand-alone host. Plain C: a module includes this header and links nothing;
   the host process supplies the functions. All texts are UTF-8 and end with a zero byte. */
#ifndef KEST_STANDALONE_MODULE_API_H
#define KEST_STANDALONE_MODULE_API_H

#ifdef __cplusplus
extern "C" {
#endif

/* A command. `context` is what was given at registration. A C++ exception that leaves it is reported, not fatal. */
typedef void (*KestCommandFunction)(void* context); /* NOLINT(modernize-use-using): plain C */

/* Registers `function` under `name` (letter case does not matter). Returns 1, or 0 when the name is empty, is not
   UTF-8, or has a function already. May be called from the module's entry and from commands. */
int kestRegisterCommand(const char* name, KestCommandFunction function, void* context);

/* Prints `text` to the host's console as it stands; the caller supplies line ends. */
void kestPrint(const char* text);

/* The host's version text, the value of "VERNUM". Valid as long as the host runs. */
const char* kestHostVersion(void);

/* The entry that every native module (".krx") exports. Called once, when the module is loaded. Returns 0 on success;
   any other value, and a C++ exception, is a failed load, and the module is closed again. */
int kestModuleEntry(void);

#ifdef __cplusplus
}
#endif

#endif
