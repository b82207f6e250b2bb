// The version of the library. CMake reads these three lines; nothing else states the number.
#pragma once

#define VRELIO_VERSION_MAJOR 0
#define VRELIO_VERSION_MINOR 1
#define VRELIO_VERSION_PATCH 0
