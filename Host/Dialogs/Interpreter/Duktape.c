/* Duktape, compiled from the source text that its package brings: with a limit on the steps of a script, which the
   package's own library is built without. */

#define DUK_COMPILING_DUKTAPE
#include <duk_config.h>

/* Asked after every 262144 steps or so with what the heap was made with; non-zero ends the script. */
duk_bool_t tessavoyDialogScriptMustEnd(void* memory);

#define DUK_USE_INTERRUPT_COUNTER
#define DUK_USE_EXEC_TIMEOUT_CHECK(memory) tessavoyDialogScriptMustEnd(memory)

#include <duktape.c>
