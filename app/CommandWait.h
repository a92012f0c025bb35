#pragma once

#include <string>

/// Runs `commandLine` with administrator rights after the system's own authentication, and returns
/// when it has ended: true when it ran and reported success (see AdministratorCommand).
///
/// The caller is blocked meanwhile, but the window is still painted; that it does not respond is
/// the business of the InputGate that the caller runs under. Main thread only.
bool RunWhileWindowWaits( std::string const& commandLine );
