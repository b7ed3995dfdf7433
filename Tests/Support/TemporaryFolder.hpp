// A folder of a test's own, gone when the test ends.
#pragma once

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace kestrow {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kestrow-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
      throw std::filesystem::filesystem_error("can't make a folder for a test", name,
                                              {errno, std::generic_category()});
    }
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline std::string fileContent(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline void writeFile(const std::filesystem::path& file, std::string_view content) {
  std::ofstream(file, std::ios::binary) << content;
}

}  // namespace kestrow
