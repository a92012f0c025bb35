#include "streams/IgnoreDataReceiver.h"

void IgnoreDataReceiver::Start() {}

void IgnoreDataReceiver::Receive( ConstData ) {}

void IgnoreDataReceiver::ReceiveEnd() {}
