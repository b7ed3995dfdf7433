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

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "KestrowCore/Json.hpp"

namespace kestrow::json {

// Specialised for each record: `static auto fields(auto& record)`, a tuple of the fields below. The
// record comes const when it is encoded.
template <class T>
struct Record;

// Specialised for values that travel as text: `static std::expected<T, std::string>
// parse(std::string_view)`, whose error is the reason told, and `static std::string format(T)`.
template <class T>
struct Text;

enum class Presence { required, optional, withDefault };

template <class T, Presence presence>
struct Field {
  // Looks at a decoded value; a reason refuses it.
  using Check = std::optional<std::string> (*)(const std::remove_const_t<T>& value);

  static constexpr Presence presenceRule = presence;
  std::string_view key;
  T& value;
  Check check = nullptr;
};

// The key must be there, and not be null.
template <class T>
auto required(std::string_view key, T& value) {
  return Field<T, Presence::required>{key, value};
}

// Absent and null are alike; an absent value is left out in encoding. T is a std::optional.
template <class T>
auto optional(std::string_view key, T& value,
              typename Field<T, Presence::optional>::Check check = nullptr) {
  return Field<T, Presence::optional>{key, value, check};
}

// Absent and null leave the value that the record begins with; always encoded.
template <class T>
auto withDefault(std::string_view key, T& value) {
  return Field<T, Presence::withDefault>{key, value};
}

// Where decoding is: a chain through the callers' frames, turned into a path only on failure.
struct Place {
  const Place* outer = nullptr;  // none at the document's root
  std::string_view key;          // within an object; its address is null within an array
  std::size_t index = 0;         // within an array
};

// One decoding. Each `read` gives false once something is wrong; then `failure` tells it.
class Decoder {
 public:
  const Error& failure() const { return failure_; }

  bool read(const Value& value, bool& out, const Place& place);
  bool read(const Value& value, std::int64_t& out, const Place& place);
  bool read(const Value& value, double& out, const Place& place);
  bool read(const Value& value, std::string& out, const Place& place);

  template <class T>
    requires requires(std::string_view text) { Text<T>::parse(text); }
  bool read(const Value& value, T& out, const Place& place) {
    const auto text = value.text();
    if (!text) return mismatch(place, "a text", value);
    auto parsed = Text<T>::parse(*text);
    if (!parsed) return fail(place, std::move(parsed.error()));
    out = *std::move(parsed);
    return true;
  }

  template <class T>
  bool read(const Value& value, std::optional<T>& out, const Place& place) {
    out.reset();
    return value.isNull() || read(value, out.emplace(), place);
  }

  template <class T>
  bool read(const Value& value, std::vector<T>& out, const Place& place) {
    if (value.kind() != Kind::array) return mismatch(place, "a list", value);
    Items items(value);
    out.clear();
    // The count is taken at its word up to here only: a short text can hold very many bad items.
    constexpr std::size_t maxReserved = 1024;
    out.reserve(std::min(items.count(), maxReserved));
    for (Place inside{.outer = &place}; const auto item = items.next(); ++inside.index) {
      if (!read(*item, out.emplace_back(), inside)) return false;
    }
    return true;
  }

  template <class T>
  bool read(const Value& value, std::map<std::string, T>& out, const Place& place) {
    if (value.kind() != Kind::object) return mismatch(place, "an object", value);
    Entries entries(value);
    out.clear();
    while (const auto entry = entries.next()) {
      const auto [position, isNew] = out.try_emplace(std::string(entry->key));
      const Place inside{.outer = &place, .key = entry->key};
      if (isNew && !read(entry->value, position->second, inside)) return false;
    }
    return true;
  }

  template <class T>
    requires requires(T& record) { Record<T>::fields(record); }
  bool read(const Value& value, T& record, const Place& place) {
    if (value.kind() != Kind::object) return mismatch(place, "an object", value);
    const auto fields = Record<T>::fields(record);
    return readFields(Entries(value), fields, place,
                      std::make_index_sequence<std::tuple_size_v<decltype(fields)>>());
  }

 private:
  // Goes once through the entries; the bits of `seen` are the fields met.
  template <class Fields, std::size_t... index>
  bool readFields(Entries entries, const Fields& fields, const Place& place,
                  std::index_sequence<index...>) {
    static_assert(sizeof...(index) <= 64);
    std::uint64_t seen = 0;
    while (const auto entry = entries.next()) {
      bool isGood = true;
      const auto tryField = [&](const auto& field, std::uint64_t bit) {
        if (entry->key != field.key) return false;
        if ((seen & bit) == 0) {
          isGood = readField(entry->value, field, Place{.outer = &place, .key = field.key});
        }
        seen |= bit;
        return true;
      };
      (void)(tryField(std::get<index>(fields), std::uint64_t{1} << index) || ...);
      if (!isGood) return false;
    }
    return ((isPresent(std::get<index>(fields), (seen >> index) & 1U, place)) && ...);
  }

  template <class T, Presence presence>
  bool readField(const Value& value, const Field<T, presence>& field, const Place& place) {
    if constexpr (presence == Presence::withDefault) {
      if (value.isNull()) return true;
    }
    if (!read(value, field.value, place)) return false;
    if (!field.check) return true;
    auto problem = field.check(field.value);
    return !problem || fail(place, *std::move(problem));
  }

  template <class T, Presence presence>
  bool isPresent(const Field<T, presence>& field, bool wasSeen, const Place& place) {
    if (presence != Presence::required || wasSeen) return true;
    return fail(Place{.outer = &place, .key = field.key}, "missing");
  }

  // Both give false, so that a failing read can end with them.
  bool fail(const Place& place, std::string reason);
  bool mismatch(const Place& place, std::string_view expected, const Value& found);

  Error failure_;
};

// The whole text as one T. Fails with where and why.
template <class T>
std::expected<T, Error> decode(std::string_view body) {
  const auto document = Document::parse(body);
  if (!document) return std::unexpected(document.error());
  std::expected<T, Error> result;
  Decoder decoder;
  if (!decoder.read(document->root(), *result, Place{}))
    result = std::unexpected(decoder.failure());
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

template <class T, Presence presence>
void writeField(Writer& writer, const Field<T, presence>& field) {
  if constexpr (presence == Presence::optional) {
    if (!field.value) return;
    writer.key(field.key);
    write(writer, *field.value);
  } else {
    writer.key(field.key);
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
