// The program's durable state: one small JSON file in the user's data folder.
#pragma once

#include "KestrowCore/Customisation.hpp"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>

namespace kestrow {

// What the file holds. Everything absent is the empty record, which also stands for a file that
// can't be read.
struct StoredState {
  std::optional<std::string> followedMatchId;
  std::optional<std::string> installId;
  std::optional<std::map<std::string, std::int64_t>> lastEventIdByMatch;
  std::optional<std::map<std::string, std::string>> customisation;
  bool operator==(const StoredState&) const = default;
};

// Why a save failed; the file is as it was before.
struct StoreError {
  enum class Kind {
    folder,            // the folder could not be made; `cause` says why
    encoding,          // the record can't be written as JSON (a text that is not UTF-8)
    fileWriteUnknown,  // the file could not be written or put in place
    unreadable,        // the file is there, but can't be read; see updateReadable()
  };
  Kind kind = Kind::fileWriteUnknown;
  std::error_code cause;
  bool operator==(const StoreError&) const = default;
};

// Any thread may call it; every read-modify-write is one step under one lock. Nothing is kept in
// memory: each read goes to the file. Another process writing the same file sees, and leaves, whole
// files only.
class LocalStore {
 public:
  explicit LocalStore(std::filesystem::path directory);
  LocalStore(const LocalStore&) = delete;
  LocalStore& operator=(const LocalStore&) = delete;

  // The folder "Kestrow" in the user's data folder.
  static std::filesystem::path defaultDirectory();

  const std::filesystem::path& directory() const { return directory_; }
  std::filesystem::path fileUrl() const;

  // The record, or the empty one when the file is missing, unreadable or not ours.
  StoredState load() const;

  // Changes the record and saves it; gives the record as saved. `change` must not call the store.
  std::expected<StoredState, StoreError> update(const std::function<void(StoredState&)>& change);

  // The same, except that a file that is there and can't be read is left alone: what the program
  // notes by itself must not cost the user's choices, should the file be readable again later.
  std::expected<StoredState, StoreError> updateReadable(
      const std::function<void(StoredState&)>& change);

  // This installation's random id, made and saved on first use. When it can't be saved, an id is
  // given all the same, another one each time.
  std::string installId();

  std::optional<std::string> followedMatchId() const;
  std::expected<void, StoreError> setFollowedMatchId(const std::optional<std::string>& id);

  Customisation customisation() const;
  std::expected<void, StoreError> setCustomisation(const Customisation& customisation);

 private:
  std::optional<StoredState> unlockedRead() const;
  StoredState unlockedLoad() const;
  std::expected<void, StoreError> unlockedSave(const StoredState& state);
  std::expected<StoredState, StoreError> unlockedUpdate(
      StoredState state, const std::function<void(StoredState&)>& change);

  std::filesystem::path directory_;
  mutable std::mutex lock_;
};

}  // namespace kestrow
