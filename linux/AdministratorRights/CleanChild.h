#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// Starts words[0], an absolute path, with `words` as its arguments, in the clean surroundings that
/// AdministratorCommand describes.
///
/// Returns the child's process identifier once the program runs, or -1 if it could not be started;
/// then no child is left. May be called while other threads run.
pid_t StartCleanChild( std::vector<std::string> words );
