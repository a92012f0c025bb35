#pragma once

#include <stdint.h>

/// The process identifier of the management agent: of the first process in the kernel's table whose
/// short name is exactly "WUXAgent", whoever runs it. 0 when there is none, and when the table
/// could not be read. Asks the kernel at each call.
int32_t getPID() noexcept;
