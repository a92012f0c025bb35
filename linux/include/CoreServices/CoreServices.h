#pragma once

/// The file manager and its result codes.

#include <CoreServices/CFURLFiles.h>
#include <CoreServices/Files.h>
#include <CoreServices/MacErrors.h>
#include <CoreServices/UTCUtils.h>
