#include "state.h"

namespace Main {
qint16 ComposeMode = 0;

void resetState()
{
    ComposeMode = 0;
}
}  // namespace Main
