// What the process has to be before and after the application object exists.
#pragma once

namespace kestrow::qt {

// Chooses the window system, switches accessibility on, and keeps memory small. Before the
// application object.
void prepareProcess();

// Names the program to the desktop and makes it an accessory: it goes on without windows. After the
// application object.
void describeProgram();

}  // namespace kestrow::qt
