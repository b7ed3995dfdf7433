// libcurl, loaded when the first request is sent. Included by the files of UrlSession alone.
#pragma once

#include <curl/curl.h>

#include <expected>
#include <string>

namespace kestrow {

// The functions of libcurl that a session uses. The linker is not told of them: libcurl brings two
// dozen libraries, which the system would load before the program begins, and so before its first
// picture.
struct Curl {
  // Loads the library and sets it up, for good. An empty file means the system's. Fails with
  // the reason. Any thread.
  static std::expected<Curl, std::string> load(const std::string& file);

  decltype(&curl_easy_cleanup) easyCleanup;
  decltype(&curl_easy_getinfo) easyGetinfo;
  decltype(&curl_easy_init) easyInit;
  decltype(&curl_easy_setopt) easySetopt;
  decltype(&curl_easy_strerror) easyStrerror;
  decltype(&curl_global_init) globalInit;
  decltype(&curl_multi_add_handle) multiAddHandle;
  decltype(&curl_multi_cleanup) multiCleanup;
  decltype(&curl_multi_info_read) multiInfoRead;
  decltype(&curl_multi_init) multiInit;
  decltype(&curl_multi_perform) multiPerform;
  decltype(&curl_multi_poll) multiPoll;
  decltype(&curl_multi_remove_handle) multiRemoveHandle;
  decltype(&curl_multi_wakeup) multiWakeup;
  decltype(&curl_slist_append) slistAppend;
  decltype(&curl_slist_free_all) slistFreeAll;
  decltype(&curl_strnequal) strnequal;
};

}  // namespace kestrow
