// The factory function of a ".component" bundle.
#include "Misbehaviour.h"

#include <QWPlatform/plugins/AudioComponent.h>

extern "C" [[gnu::visibility("default")]] void *QWTestFactory(const platform::AudioComponent *component)
{
    static int instance = 0;
    const bool isKnown =
        component->type == platform::fourCharCode("aufx") && component->manufacturer == platform::fourCharCode("QTst");
    return behaviour == Behaviour::Good && isKnown ? &instance : nullptr;
}
