// Small files that are read, and replaced, as a whole: whoever reads one sees the old content or
// the new, never a part, however the writer ends.
#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace kestrow::atomic_file {

// Writes the file beside its place, as ".<stem>.<UUID>.tmp", then moves it there. The file has
// exactly these permissions, whatever the process's mask. After a failure the old file is as it
// was, and nothing is left beside it.
std::expected<void, std::error_code> write(const std::filesystem::path& file,
                                           std::string_view bytes,
                                           std::filesystem::perms permissions);

// The content of a regular file, or of the one that a link leads to. Fails for anything else (a
// pipe could keep the reader waiting) and for a file of more than `maxBytes`.
std::expected<std::string, std::error_code> read(const std::filesystem::path& file,
                                                 std::size_t maxBytes);

// Makes the folder, and the folders above it that are missing, each with exactly these permissions.
// A folder that is there already is left as it is.
std::expected<void, std::error_code> makeFolders(const std::filesystem::path& folder,
                                                 std::filesystem::perms permissions);

}  // namespace kestrow::atomic_file
