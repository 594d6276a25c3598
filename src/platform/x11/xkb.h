#pragma once

// The header has a field of a name that C++ keeps for itself.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
