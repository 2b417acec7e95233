// The system's controls; their header needs the one of the system before it.
#pragma once

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on
