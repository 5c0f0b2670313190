#include "FuzzSupport.h"

// Qt's JSON parser leaks the earlier value of a key that repeats in an object
// when that value holds containers. Qt is built without frame pointers, so the
// fast unwinder stops inside Qt and the parser's frames never show, so the
// match is by module. That hides only blocks allocated inside Qt Core: what our
// code allocates has our frame on top and is still reported.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libQt" QT_STRINGIFY(QT_VERSION_MAJOR) "Core.so\n";
}
