#include "kvBeep.h"

kvBeep::~kvBeep() = default;
