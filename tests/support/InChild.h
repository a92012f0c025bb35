#pragma once

#include <functional>
#include <string>

/// Runs `action` in a forked child, where it can give up rights or change what is mounted without
/// harm to this process, and returns the text that it returned. What it throws and the signal that
/// ends it come back as a text as well: "threw ..." and "killed by signal N".
std::string InChild( std::function<std::string()> const& action );

/// For use in the child: makes a process of root one of an ordinary user, who has none of the
/// groups and no rights; others stay as they are.
void BecomeOrdinaryUser();

/// For use in the child: mounts a new file system in memory of `bytes` bytes on `folder`, seen by
/// this child only. False where the system does not let this user do it.
bool MountPrivately( std::string const& folder, std::string const& bytes );
