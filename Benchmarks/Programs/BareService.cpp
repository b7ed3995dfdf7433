// The least that a service on the same library is, which the score service's requests are measured
// beside: the body on standard input, sent to whoever asks for the match list.
#include <httplib.h>

#include <cstdio>
#include <iostream>
#include <iterator>
#include <string>

int main() {
  const std::string body(std::istreambuf_iterator<char>(std::cin), {});
  httplib::Server server;
  server.set_tcp_nodelay(true);
  server.set_keep_alive_max_count(1'000'000'000);
  server.Get("/api/matches", [&](const httplib::Request&, httplib::Response& response) {
    response.set_content(body, "application/json");
  });
  const int port = server.bind_to_any_port("127.0.0.1");
  std::printf("listening on http://127.0.0.1:%d\n", port);
  std::fflush(stdout);
  return server.listen_after_bind() ? 0 : 1;
}
