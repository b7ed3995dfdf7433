// The state file, read and written by the store on a real file system.
#include "Fuzzers/Fuzzer.hpp"
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <optional>
#include <string>

namespace {

using kestrow::fuzz::require;

kestrow::Task<void> ask(kestrow::Task<kestrow::FeedResult<kestrow::ProMatchResult>> task) {
  (void)co_await task;
}

// What is stored goes into requests; nothing in it may reach the network but as a plain value.
void checkRequests(const kestrow::StoredState& state) {
  std::optional<kestrow::HttpRequest> sent;
  const kestrow::Transport transport = [&](kestrow::HttpRequest request) {
    sent = std::move(request);
    return kestrow::Pending<std::expected<kestrow::HttpResponse, kestrow::TransportError>>().task();
  };
  const kestrow::ScoreClient client{.installId = state.installId, .transport = transport};
  kestrow::TaskScope scope;
  scope.start(client.reportInstall());
  require(!sent || !kestrow::defect(*sent), "the install id fits a header");
  scope.start(ask(client.keyEvents(state.followedMatchId.value_or(""), std::nullopt)));
  require(sent && !kestrow::defect(*sent), "the match id fits a URL");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kestrow::TemporaryFolder folder;
  static kestrow::LocalStore store(folder.path());
  const auto file = store.fileUrl();
  kestrow::writeFile(file, kestrow::fuzz::textOf(data, size));

  const kestrow::StoredState state = store.load();
  (void)kestrow::Customisation(state.customisation).appearance();
  checkRequests(state);
  const auto saved = store.update([](kestrow::StoredState&) {});
  require(saved && *saved == state, "what was read can be saved");
  require(store.load() == state, "and read again");
  const std::string first = kestrow::fileContent(file);
  require(store.update([](kestrow::StoredState&) {}).has_value(), "and saved again");
  require(kestrow::fileContent(file) == first, "with the same bytes");
  return 0;
}
