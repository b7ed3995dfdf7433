#include "KestrowCore/UrlSessionCurl.hpp"

#include <dlfcn.h>

namespace kestrow {

namespace {

#ifdef __APPLE__
constexpr auto systemFile = "/usr/lib/libcurl.4.dylib";
#else
constexpr auto systemFile = "libcurl.so.4";
#endif

// A function of a library, as whatever kind of function it is assigned to.
struct Found {
  void* address;

  template <class Function>
  operator Function*() const {  // NOLINT(google-explicit-constructor): stands for the function
    return reinterpret_cast<Function*>(address);
  }
};

}  // namespace

std::expected<Curl, std::string> Curl::load(const std::string& file) {
  void* const library = dlopen(file.empty() ? systemFile : file.c_str(), RTLD_LAZY | RTLD_LOCAL);
  if (library == nullptr) return std::unexpected(dlerror());
  std::string missing;
  const auto find = [&](const char* function) {
    const Found found{dlsym(library, function)};
    if (found.address == nullptr) missing = function;
    return found;
  };
  const Curl curl{
      .easyCleanup = find("curl_easy_cleanup"),
      .easyGetinfo = find("curl_easy_getinfo"),
      .easyInit = find("curl_easy_init"),
      .easySetopt = find("curl_easy_setopt"),
      .easyStrerror = find("curl_easy_strerror"),
      .globalInit = find("curl_global_init"),
      .multiAddHandle = find("curl_multi_add_handle"),
      .multiCleanup = find("curl_multi_cleanup"),
      .multiInfoRead = find("curl_multi_info_read"),
      .multiInit = find("curl_multi_init"),
      .multiPerform = find("curl_multi_perform"),
      .multiPoll = find("curl_multi_poll"),
      .multiRemoveHandle = find("curl_multi_remove_handle"),
      .multiWakeup = find("curl_multi_wakeup"),
      .slistAppend = find("curl_slist_append"),
      .slistFreeAll = find("curl_slist_free_all"),
      .strnequal = find("curl_strnequal"),
  };
  if (!missing.empty()) return std::unexpected("libcurl lacks " + missing);
  if (curl.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
    return std::unexpected("libcurl can't be set up");
  }
  return curl;
}

}  // namespace kestrow
