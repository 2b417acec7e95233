// The program's version, for the window and for the resource script: plain definitions only.
#pragma once

#define CORVINA_VERSION_NUMBERS 1, 0, 0, 0
#define CORVINA_VERSION_TEXT "1.0.0"
