#include "kvModalRunner.h"

kvModalRunner::~kvModalRunner() = default;
