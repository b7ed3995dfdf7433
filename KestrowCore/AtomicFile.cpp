#include "KestrowCore/AtomicFile.hpp"

#include "KestrowCore/Uuid.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

namespace kestrow::atomic_file {

namespace {

using Outcome = std::expected<void, std::error_code>;

std::unexpected<std::error_code> failure(int number) {
  return std::unexpected(std::error_code(number, std::generic_category()));
}

std::unexpected<std::error_code> lastFailure() {
  return failure(errno);
}

mode_t modeOf(std::filesystem::perms permissions) {
  return static_cast<mode_t>(permissions);
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { (void)close(); }

  bool isOpen() const { return number_ >= 0; }
  int number() const { return number_; }

  // Some file systems report only here that the bytes found no room.
  Outcome close() {
    if (!isOpen()) return {};
    if (::close(std::exchange(number_, -1)) != 0 && errno != EINTR) return lastFailure();
    return {};
  }

 private:
  int number_;
};

Outcome writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    if (count > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (count == 0) {
      return failure(EIO);
    } else if (errno != EINTR) {
      return lastFailure();
    }
  }
  return {};
}

Outcome fill(Descriptor& file, std::string_view bytes, mode_t mode) {
  if (::fchmod(file.number(), mode) != 0) return lastFailure();
  if (auto written = writeAll(file.number(), bytes); !written) return written;
  return file.close();
}

Outcome move(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0) return lastFailure();
  return {};
}

}  // namespace

Outcome write(const std::filesystem::path& file, std::string_view bytes,
              std::filesystem::perms permissions) {
  auto temporary = file;
  temporary.replace_filename("." + file.stem().string() + "." + randomUuid(LetterCase::upper) +
                             ".tmp");
  Descriptor descriptor(::open(temporary.c_str(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                               modeOf(permissions)));
  if (!descriptor.isOpen()) return lastFailure();
  auto outcome = fill(descriptor, bytes, modeOf(permissions));
  if (outcome) outcome = move(temporary, file);
  if (!outcome) (void)::unlink(temporary.c_str());
  return outcome;
}

std::expected<std::string, std::error_code> read(const std::filesystem::path& file,
                                                 std::size_t maxBytes) {
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!descriptor.isOpen()) return lastFailure();
  struct stat status{};
  if (::fstat(descriptor.number(), &status) != 0) return lastFailure();
  if (S_ISDIR(status.st_mode)) return failure(EISDIR);
  if (!S_ISREG(status.st_mode)) return failure(EINVAL);

  std::string bytes;
  std::array<char, 65536> block{};
  while (true) {
    const auto count = ::read(descriptor.number(), block.data(), block.size());
    if (count == 0) return bytes;
    if (count > 0) {
      bytes.append(block.data(), static_cast<std::size_t>(count));
      if (bytes.size() > maxBytes) return failure(EFBIG);
    } else if (errno != EINTR) {
      return lastFailure();
    }
  }
}

Outcome makeFolders(const std::filesystem::path& folder, std::filesystem::perms permissions) {
  std::error_code ignored;
  if (std::filesystem::is_directory(folder, ignored)) return {};
  const auto parent = folder.parent_path();
  if (!parent.empty() && parent != folder) {
    if (auto made = makeFolders(parent, permissions); !made) return made;
  }
  if (::mkdir(folder.c_str(), modeOf(permissions)) != 0) {
    const auto error = errno;
    // Another program may have made it meanwhile.
    if (std::filesystem::is_directory(folder, ignored)) return {};
    return failure(error);
  }
  if (::chmod(folder.c_str(), modeOf(permissions)) != 0) return lastFailure();
  return {};
}

}  // namespace kestrow::atomic_file
