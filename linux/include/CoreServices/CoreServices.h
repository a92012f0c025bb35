#pragma once

/// The file manager and its result codes.

#include <CoreServices/Aliases.h>
#include <CoreServices/CFURLFiles.h>
#include <CoreServices/Files.h>
#include <CoreServices/Folders.h>
#include <CoreServices/MacErrors.h>
#include <CoreServices/UTCUtils.h>
