// Messages on their way from Qt to the program.
#pragma once

#include "toolkit/toolkit.h"

// Puts a message into the program's queue and ends its wait.
void Post(const Message& message);
void PostDropped(const std::string& path);
// Ends the wait for the sake of messages that the canvas holds back.
void WakeUp();
// Whether the program waits for a command: nothing runs and no dialog stands.
bool ReadyForCommands();
// Whether a command runs and asks nothing.
bool AtWork();
