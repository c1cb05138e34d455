#include "app/GlobalState.h"

namespace kelvora {

GlobalState &globalState()
{
    static GlobalState state;
    return state;
}

} // namespace kelvora
