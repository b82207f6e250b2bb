// VRELIO_EXPORT marks what leaves the shared library; everything else is hidden.
#pragma once

#define VRELIO_EXPORT __attribute__((visibility("default")))
