#pragma once

/// Truth value of the platform's C functions: 0 is false, anything else true.
using BOOL = int;
