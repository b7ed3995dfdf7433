// Certificates made on the spot, good ones and bad ones.
#pragma once

#include <chrono>
#include <memory>
#include <string>

namespace kestrow {

// What a TLS server shows and proves itself with, as PEM.
struct TlsIdentity {
  std::string certificate;
  std::string key;
};

// A certificate authority of the test's own.
class TestAuthority {
 public:
  TestAuthority();
  TestAuthority(const TestAuthority&) = delete;
  TestAuthority& operator=(const TestAuthority&) = delete;
  ~TestAuthority();

  // Its own certificate as PEM; trusting this means trusting what it issues.
  std::string certificate() const;

  // A certificate for a server, named as a subjectAltName entry ("IP:127.0.0.1",
  // "DNS:example.com"), that was issued two days ago and ends the given time from now.
  TlsIdentity issue(const std::string& name,
                    std::chrono::seconds endsIn = std::chrono::hours(24)) const;

  // One that vouches for itself.
  static TlsIdentity selfSigned(const std::string& name);

 private:
  struct Keys;
  std::unique_ptr<Keys> keys_;
};

}  // namespace kestrow
