#include "KestrowCore/LocalStore.hpp"

#include "KestrowCore/AtomicFile.hpp"
#include "KestrowCore/Identity.hpp"
#include "KestrowCore/JsonRecord.hpp"
#include "KestrowCore/UserFolders.hpp"
#include "KestrowCore/Uuid.hpp"

#include <cstddef>
#include <tuple>
#include <utility>

namespace kestrow {

template <>
struct json::Record<StoredState> {
  static auto fields(auto& state) {
    return std::tuple(optional("customisation", state.customisation),
                      optional("followedMatchId", state.followedMatchId),
                      optional("installId", state.installId),
                      optional("lastEventIdByMatch", state.lastEventIdByMatch));
  }
};

namespace {

// Far above what the program writes; a file beyond it is not ours.
constexpr std::size_t maxFileBytes = std::size_t{16} * 1024 * 1024;

std::unexpected<StoreError> failure(StoreError::Kind kind, std::error_code cause = {}) {
  return std::unexpected(StoreError{.kind = kind, .cause = cause});
}

std::expected<void, StoreError> outcome(const std::expected<StoredState, StoreError>& saved) {
  if (!saved) return std::unexpected(saved.error());
  return {};
}

}  // namespace

LocalStore::LocalStore(std::filesystem::path directory) : directory_(std::move(directory)) {}

std::filesystem::path LocalStore::defaultDirectory() {
  return user_folders::data() / identity::name;
}

std::filesystem::path LocalStore::fileUrl() const {
  return directory_ / "state.json";
}

StoredState LocalStore::load() const {
  const std::lock_guard guard(lock_);
  return unlockedLoad();
}

std::expected<StoredState, StoreError> LocalStore::update(
    const std::function<void(StoredState&)>& change) {
  const std::lock_guard guard(lock_);
  return unlockedUpdate(unlockedLoad(), change);
}

std::expected<StoredState, StoreError> LocalStore::updateReadable(
    const std::function<void(StoredState&)>& change) {
  const std::lock_guard guard(lock_);
  auto state = unlockedRead();
  if (!state) return failure(StoreError::Kind::unreadable);
  return unlockedUpdate(*std::move(state), change);
}

std::string LocalStore::installId() {
  const std::lock_guard guard(lock_);
  auto state = unlockedLoad();
  if (state.installId) return *std::move(state.installId);
  state.installId = randomUuid(LetterCase::lower);
  (void)unlockedSave(state);
  return *std::move(state.installId);
}

std::optional<std::string> LocalStore::followedMatchId() const {
  return load().followedMatchId;
}

std::expected<void, StoreError> LocalStore::setFollowedMatchId(
    const std::optional<std::string>& id) {
  return outcome(update([&](StoredState& state) { state.followedMatchId = id; }));
}

Customisation LocalStore::customisation() const {
  return Customisation(load().customisation);
}

std::expected<void, StoreError> LocalStore::setCustomisation(const Customisation& customisation) {
  return outcome(update([&](StoredState& state) { state.customisation = customisation.stored(); }));
}

// The record; the empty one when there is no file, nothing when the file can't be read.
std::optional<StoredState> LocalStore::unlockedRead() const {
  const auto bytes = atomic_file::read(fileUrl(), maxFileBytes);
  if (!bytes) {
    if (bytes.error() == std::errc::no_such_file_or_directory) return StoredState();
    return std::nullopt;
  }
  auto state = json::decode<StoredState>(*bytes);
  if (!state) return std::nullopt;
  return *std::move(state);
}

StoredState LocalStore::unlockedLoad() const {
  return unlockedRead().value_or(StoredState());
}

std::expected<void, StoreError> LocalStore::unlockedSave(const StoredState& state) {
  using std::filesystem::perms;
  if (const auto made = atomic_file::makeFolders(directory_, perms::owner_all); !made) {
    return failure(StoreError::Kind::folder, made.error());
  }
  const auto bytes = json::encode(state, json::Layout::prettySorted);
  if (!bytes) return failure(StoreError::Kind::encoding);
  const auto written =
      atomic_file::write(fileUrl(), *bytes, perms::owner_read | perms::owner_write);
  if (!written) return failure(StoreError::Kind::fileWriteUnknown, written.error());
  return {};
}

std::expected<StoredState, StoreError> LocalStore::unlockedUpdate(
    StoredState state, const std::function<void(StoredState&)>& change) {
  change(state);
  if (auto saved = unlockedSave(state); !saved) return std::unexpected(saved.error());
  return state;
}

}  // namespace kestrow
