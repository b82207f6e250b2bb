// Names of integer types that interfaces use.
#pragma once

/// Positions and sizes in bytes.
using u64 = unsigned long long;
