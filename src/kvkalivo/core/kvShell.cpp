#include "kvShell.h"

kvShell::~kvShell() = default;
