#include "ScoreService/Connection.hpp"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

namespace kestrow::service {
namespace {

using NameOf = int (*)(int, sockaddr*, socklen_t*);

// The port of one end of a socket; -1 when it has none.
int portOf(int socket, NameOf nameOf) {
  sockaddr_storage name{};
  socklen_t size = sizeof(name);
  // The sockets' own way from one kind of address to another.
  auto* const generic = reinterpret_cast<sockaddr*>(&name);
  if (nameOf(socket, generic, &size) != 0) return -1;
  if (name.ss_family == AF_INET)
    return ntohs(reinterpret_cast<const sockaddr_in*>(&name)->sin_port);
  if (name.ss_family == AF_INET6)
    return ntohs(reinterpret_cast<const sockaddr_in6*>(&name)->sin6_port);
  return -1;
}

}  // namespace

void cutConnection(int localPort, int remotePort) {
  // A server on loopback has few descriptors; the bound is against a limit set to millions.
  constexpr long mostDescriptors = 65536;
  const auto count = static_cast<int>(std::clamp(sysconf(_SC_OPEN_MAX), 256L, mostDescriptors));
  for (int socket = 0; socket < count; ++socket) {
    if (portOf(socket, getpeername) == remotePort && portOf(socket, getsockname) == localPort) {
      shutdown(socket, SHUT_RDWR);
      return;
    }
  }
}

}  // namespace kestrow::service
