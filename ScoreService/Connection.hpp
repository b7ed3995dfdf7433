// What the HTTP library keeps to itself about a connection.
#pragma once

namespace kestrow::service {

// Ends this process's TCP connection between two ports, in both directions and without another
// byte. Does nothing when there is none.
void cutConnection(int localPort, int remotePort);

}  // namespace kestrow::service
