#include "kvCountingBeep.h"

void kvCountingBeep::Beep()
{
    ++m_count;
}
