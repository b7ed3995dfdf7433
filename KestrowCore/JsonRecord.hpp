// Records to and from JSON. A record lists its keys once, and that list is both its decoder and its
// encoder:
//
//   template <>
//   struct kestrow::json::Record<Team> {
//     static auto fields(auto& team) {
//       return std::tuple(required("name", team.name), required("short", team.shortName));
//     }
//   };
//
//   std::expected<Team, json::Error> team = json::decode<Team>(body);
//   std::string body = json::encodeReplacing(team);
//
// Decoding is strict: a wrong type or a missing key fails the whole document, and the first failure
// is the one told. Unknown keys are skipped. Of a key that comes twice, the first counts.
#pragma once

#include "KestrowCore/Json.hpp"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace kestrow::json {

// Specialised for each record: `static auto fields(auto& record)`, a tuple of the fields below. The
// record comes const when it is encoded.
template <class T>
struct Record;

// Specialised for values that travel as text: `static std::string format(T)`, and `static T
// parse(std::string_view)` where every text is one. Where not, `parse` gives a std::optional<T>,
// and `static std::string refusal(std::string_view)` the reason told for a text that is none.
template <class T>
struct Text;

enum class Presence { required, optional, withDefault };

// `size` is the key's length: known in compiling, it makes comparing a key a matter of a few
// instructions.
template <class T, Presence presence, std::size_t size>
struct Field {
  // Looks at a decoded value; a reason refuses it, null takes it.
  using Check = const char* (*)(const std::remove_const_t<T>& value);

  const char* text;  // the key's characters
  T& value;
  Check check = nullptr;

  std::string_view key() const { return {text, size}; }
  bool isCalled(std::string_view name) const {
    return name.size() == size && std::memcmp(name.data(), text, size) == 0;
  }
};

// The key must be there, and not be null.
template <class T, std::size_t size>
auto required(const char (&key)[size], T& value) {
  return Field<T, Presence::required, size - 1>{key, value};
}

// Absent and null are alike; an absent value is left out in encoding. T is a std::optional.
template <class T, std::size_t size>
auto optional(const char (&key)[size], T& value,
              const char* (*check)(const std::remove_const_t<T>& value) = nullptr) {
  return Field<T, Presence::optional, size - 1>{key, value, check};
}

// Absent and null leave the value that the record begins with; always encoded.
template <class T, std::size_t size>
auto withDefault(const char (&key)[size], T& value) {
  return Field<T, Presence::withDefault, size - 1>{key, value};
}

// One decoding. Each `read` gives false once something is wrong; then `failure` tells it. The path
// is put together on the way out, so a decoding that succeeds does nothing for it.
class Decoder {
 public:
  // Longer lists, and texts of more bytes, are refused. None of ours comes near, and what is done
  // with them keeps the main thread from answering clicks.
  static constexpr std::size_t longestList = 10'000;
  static constexpr std::size_t longestText = 65'536;

  const Error& failure() const { return failure_; }

  bool read(const Value& value, bool& out) {
    return value.get(out) || mismatch("a boolean", value);
  }
  bool read(const Value& value, double& out) {
    return value.get(out) || mismatch("a number", value);
  }
  bool read(const Value& value, std::int64_t& out) {
    return value.get(out) || mismatch("an integer of 64 bits", value);
  }
  bool read(const Value& value, std::string& out) {
    std::string_view text;
    if (!value.get(text)) return mismatch("a text", value);
    if (text.size() > longestText) return fail("a text that is too long");
    out.assign(text);
    return true;
  }

  template <class T>
    requires requires(std::string_view text) {
      { Text<T>::parse(text) } -> std::same_as<T>;
    }
  bool read(const Value& value, T& out) {
    std::string_view text;
    if (!value.get(text)) return mismatch("a text", value);
    out = Text<T>::parse(text);
    return true;
  }

  template <class T>
    requires requires(std::string_view text) { Text<T>::refusal(text); }
  bool read(const Value& value, T& out) {
    std::string_view text;
    if (!value.get(text)) return mismatch("a text", value);
    const auto parsed = Text<T>::parse(text);
    if (!parsed) return fail(Text<T>::refusal(text));
    out = *parsed;
    return true;
  }

  template <class T>
  bool read(const Value& value, std::optional<T>& out) {
    out.reset();
    return value.isNull() || read(value, out.emplace());
  }

  template <class T>
  bool read(const Value& value, std::vector<T>& out) {
    if (value.kind() != Kind::array) return mismatch("a list", value);
    Items items(value);
    if (items.count() > longestList) return fail("a list that is too long");
    out.clear();
    out.reserve(items.count());
    for (Value item; items.next(item);) {
      if (!read(item, out.emplace_back())) return failedAt(out.size() - 1);
    }
    return true;
  }

  template <class T>
  bool read(const Value& value, std::map<std::string, T>& out) {
    if (value.kind() != Kind::object) return mismatch("an object", value);
    Entries entries(value);
    out.clear();
    for (Entry entry; entries.next(entry);) {
      const auto [position, isNew] = out.try_emplace(std::string(entry.key));
      if (isNew && !read(entry.value, position->second)) return failedAt(entry.key);
    }
    return true;
  }

  template <class T>
    requires requires(T& record) { Record<T>::fields(record); }
  bool read(const Value& value, T& record) {
    if (value.kind() != Kind::object) return mismatch("an object", value);
    Entries entries(value);
    return readFields(entries, record, std::make_index_sequence<std::tuple_size_v<FieldsOf<T>>>());
  }

 private:
  template <class T>
  using FieldsOf = decltype(Record<T>::fields(std::declval<T&>()));

  // Goes once through the entries; the bits of `seen` are the fields met. Entries mostly come in
  // the order of the fields, so behind a field that was met the next one is tried on the next
  // entry; an entry that no field took in a whole round is unknown.
  template <class T, std::size_t... index>
  bool readFields(Entries& entries, T& record, std::index_sequence<index...>) {
    static_assert(sizeof...(index) <= 64);
    const auto fields = Record<T>::fields(record);
    std::uint64_t seen = 0;
    Entry entry;
    bool isMore = entries.next(entry);
    bool isTaken = false;
    const auto offer = [&](const auto& field, std::uint64_t bit) {
      if (!isMore || !field.isCalled(entry.key)) return true;
      if ((seen & bit) == 0 && !readField(entry.value, field)) return failedAt(entry.key);
      seen |= bit;
      isTaken = true;
      isMore = entries.next(entry);
      return true;
    };
    while (isMore) {
      isTaken = false;
      if (!(offer(std::get<index>(fields), std::uint64_t{1} << index) && ...)) return false;
      if (!isTaken) isMore = entries.next(entry);
    }
    return ((isPresent(std::get<index>(fields), (seen >> index) & 1U)) && ...);
  }

  template <class T, Presence presence, std::size_t size>
  bool readField(const Value& value, const Field<T, presence, size>& field) {
    if constexpr (presence == Presence::withDefault) {
      if (value.isNull()) return true;
    }
    if (!read(value, field.value)) return false;
    if (!field.check) return true;
    const char* problem = field.check(field.value);
    return !problem || fail(problem);
  }

  template <class T, Presence presence, std::size_t size>
  bool isPresent(const Field<T, presence, size>& field, bool wasSeen) {
    if (presence != Presence::required || wasSeen) return true;
    fail("missing");
    return failedAt(field.key());
  }

  // These give false, so that a failing read can end with them. The first two begin a failure, the
  // others put the container's key or index before its path.
  bool fail(std::string reason);
  bool mismatch(std::string_view expected, const Value& found);
  bool failedAt(std::string_view key);
  bool failedAt(std::size_t index);
  bool failedUnder(std::string step);

  Error failure_;
};

// The whole text as one T. Fails with where and why.
template <class T>
std::expected<T, Error> decode(std::string_view body) {
  const auto document = Document::parse(body);
  if (!document) return std::unexpected(document.error());
  std::expected<T, Error> result;
  Decoder decoder;
  if (!decoder.read(document->root(), *result)) result = std::unexpected(decoder.failure());
  return result;
}

inline void write(Writer& writer, bool value) {
  writer.boolean(value);
}
inline void write(Writer& writer, std::int64_t value) {
  writer.integer(value);
}
inline void write(Writer& writer, double value) {
  writer.number(value);
}
inline void write(Writer& writer, const std::string& value) {
  writer.text(value);
}

template <class T>
  requires requires(const T& value) { Text<T>::format(value); }
void write(Writer& writer, const T& value) {
  writer.text(Text<T>::format(value));
}

template <class T>
  requires requires(const T& record) { Record<T>::fields(record); }
void write(Writer& writer, const T& record);

template <class T>
void write(Writer& writer, const std::vector<T>& values) {
  writer.beginArray();
  for (const auto& value : values) write(writer, value);
  writer.endArray();
}

template <class T>
void write(Writer& writer, const std::map<std::string, T>& entries) {
  writer.beginObject();
  for (const auto& [key, value] : entries) {
    writer.key(key);
    write(writer, value);
  }
  writer.endObject();
}

template <class T, Presence presence, std::size_t size>
void writeField(Writer& writer, const Field<T, presence, size>& field) {
  if constexpr (presence == Presence::optional) {
    if (!field.value) return;
    writer.key(field.key());
    write(writer, *field.value);
  } else {
    writer.key(field.key());
    write(writer, field.value);
  }
}

template <class T>
  requires requires(const T& record) { Record<T>::fields(record); }
void write(Writer& writer, const T& record) {
  writer.beginObject();
  std::apply([&](const auto&... field) { (writeField(writer, field), ...); },
             Record<T>::fields(record));
  writer.endObject();
}

// The record as a whole document; fails when a text in it is not UTF-8.
template <class T>
std::expected<std::string, Error> encode(const T& record, Layout layout = Layout::compact) {
  Writer writer;
  write(writer, record);
  return writer.finish(layout);
}

// The same with U+FFFD for bytes that are not UTF-8.
template <class T>
std::string encodeReplacing(const T& record, Layout layout = Layout::compact) {
  Writer writer;
  write(writer, record);
  return writer.finishReplacing(layout);
}

}  // namespace kestrow::json
