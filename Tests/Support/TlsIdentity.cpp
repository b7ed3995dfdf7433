#include "Tests/Support/TlsIdentity.hpp"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <stdexcept>

namespace kestrow {

namespace {

template <auto Function>
struct Delete {
  template <class T>
  void operator()(T* object) const {
    Function(object);
  }
};
using Key = std::unique_ptr<EVP_PKEY, Delete<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Delete<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Delete<X509_EXTENSION_free>>;
using Memory = std::unique_ptr<BIO, Delete<BIO_free>>;

void require(bool isDone) {
  if (!isDone) throw std::runtime_error("OpenSSL refused to make a certificate");
}

Key makeKey() {
  Key key(EVP_EC_gen("P-256"));
  require(key != nullptr);
  return key;
}

void extend(X509* certificate, int kind, const std::string& value) {
  const Extension extension(X509V3_EXT_conf_nid(nullptr, nullptr, kind, value.c_str()));
  require(extension != nullptr);
  require(X509_add_ext(certificate, extension.get(), -1) == 1);
}

// A certificate for the key, not signed yet.
Certificate makeCertificate(EVP_PKEY* key, const std::string& commonName,
                            std::chrono::seconds endsIn) {
  Certificate certificate(X509_new());
  require(certificate != nullptr);
  constexpr std::chrono::seconds age = std::chrono::hours(48);
  static long serial = 0;
  X509_set_version(certificate.get(), X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), ++serial);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -age.count());
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), endsIn.count());
  X509_set_pubkey(certificate.get(), key);
  X509_NAME* const name = X509_get_subject_name(certificate.get());
  const auto* const bytes = reinterpret_cast<const unsigned char*>(commonName.c_str());
  require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, bytes, -1, -1, 0) == 1);
  return certificate;
}

void sign(X509* certificate, const X509_NAME* issuer, EVP_PKEY* issuerKey) {
  require(X509_set_issuer_name(certificate, issuer) == 1);
  require(X509_sign(certificate, issuerKey, EVP_sha256()) > 0);
}

std::string text(const Memory& memory) {
  char* bytes = nullptr;
  const long size = BIO_get_mem_data(memory.get(), &bytes);
  return {bytes, static_cast<std::size_t>(size)};
}

std::string pem(X509* certificate) {
  const Memory memory(BIO_new(BIO_s_mem()));
  require(PEM_write_bio_X509(memory.get(), certificate) == 1);
  return text(memory);
}

std::string pem(EVP_PKEY* key) {
  const Memory memory(BIO_new(BIO_s_mem()));
  require(PEM_write_bio_PrivateKey(memory.get(), key, nullptr, nullptr, 0, nullptr, nullptr) == 1);
  return text(memory);
}

}  // namespace

struct TestAuthority::Keys {
  Key key = makeKey();
  Certificate certificate = makeCertificate(key.get(), "Test authority", std::chrono::hours(24));
};

TestAuthority::TestAuthority() : keys_(std::make_unique<Keys>()) {
  X509* const own = keys_->certificate.get();
  extend(own, NID_basic_constraints, "critical,CA:TRUE");
  sign(own, X509_get_subject_name(own), keys_->key.get());
}

TestAuthority::~TestAuthority() = default;

std::string TestAuthority::certificate() const {
  return pem(keys_->certificate.get());
}

TlsIdentity TestAuthority::issue(const std::string& name, std::chrono::seconds endsIn) const {
  const Key key = makeKey();
  const Certificate certificate = makeCertificate(key.get(), "Test server", endsIn);
  extend(certificate.get(), NID_subject_alt_name, name);
  sign(certificate.get(), X509_get_subject_name(keys_->certificate.get()), keys_->key.get());
  return {.certificate = pem(certificate.get()), .key = pem(key.get())};
}

TlsIdentity TestAuthority::selfSigned(const std::string& name) {
  const Key key = makeKey();
  const Certificate certificate = makeCertificate(key.get(), "Test server", std::chrono::hours(24));
  extend(certificate.get(), NID_subject_alt_name, name);
  sign(certificate.get(), X509_get_subject_name(certificate.get()), key.get());
  return {.certificate = pem(certificate.get()), .key = pem(key.get())};
}

}  // namespace kestrow
