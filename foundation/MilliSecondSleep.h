#pragma once

/// Waits for `milliSeconds`: whole seconds with the system's sleep, then the rest with usleep,
/// whose argument must stay below one million. Returns what usleep returned, 0 on success. A signal
/// can end the wait early.
int MilliSecondSleep( unsigned int milliSeconds );
