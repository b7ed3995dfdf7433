// The score service in a process of its own, so that what is measured here is the client's alone.
#pragma once

#include "KestrowCore/Date.hpp"
#include "ScoreService/Faults.hpp"
#include "ScoreService/MatchFeed.hpp"

#include <sys/types.h>

#include <atomic>
#include <string>
#include <vector>

namespace kestrow {

// A copy of this process that serves the feed by a clock that this process sets. It ends with this
// object, or with this process. To be made while there is one thread; gives up the whole program
// when it can't be.
class ServiceProcess {
 public:
  ServiceProcess(const service::MatchFeed& feed, const std::vector<service::Fault>& faults,
                 Date now);
  ServiceProcess(const ServiceProcess&) = delete;
  ServiceProcess& operator=(const ServiceProcess&) = delete;
  ~ServiceProcess();

  void setClock(Date now) { *clock_ = now; }
  std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }

  // Nobody listens at the address until it is started again, with its faults counted anew.
  void stop();
  void start();

 private:
  // What one side tells the other: to listen at the port, or to stop with 0; and when that is done,
  // the port.
  int tell(int port);

  std::atomic<Date>* clock_;  // in memory that both processes have
  int channel_ = -1;
  pid_t process_ = -1;
  int port_ = 0;
};

}  // namespace kestrow
