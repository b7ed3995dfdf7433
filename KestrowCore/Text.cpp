#include "KestrowCore/Text.hpp"

#include <unicode/brkiter.h>
#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <utility>

namespace kestrow {
namespace {

icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

std::string utf8(const icu::UnicodeString& text) {
  std::string out;
  text.toUTF8String(out);
  return out;
}

icu::Locale icuLocale(const Locale& locale) {
  icu::Locale result = icu::Locale::createFromName(locale.id.c_str());
  return result.isBogus() ? icu::Locale::getRoot() : result;
}

// Lines and line ends aside, every ASCII character stands alone, which spares most texts a break
// iterator.
bool isOneByteEach(std::string_view text) {
  return std::ranges::all_of(text, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x80 && c != '\r';
  });
}

// A UTF-8 text as ICU reads it; the bytes must outlive it.
class Utf8Text {
 public:
  explicit Utf8Text(std::string_view bytes) {
    UErrorCode error = U_ZERO_ERROR;
    utext_openUTF8(&text_, bytes.data(), static_cast<std::int64_t>(bytes.size()), &error);
  }
  Utf8Text(const Utf8Text&) = delete;
  Utf8Text& operator=(const Utf8Text&) = delete;
  ~Utf8Text() { utext_close(&text_); }

  UText* get() { return &text_; }

  // The next code point, or a negative number at the end.
  UChar32 next() { return utext_next32(&text_); }

  // From the end on, backwards; a negative number at the start.
  UChar32 previous() { return utext_previous32(&text_); }
  void moveTo(std::size_t byte) { utext_setNativeIndex(&text_, static_cast<std::int64_t>(byte)); }

  std::size_t position() const { return static_cast<std::size_t>(utext_getNativeIndex(&text_)); }

 private:
  UText text_ = UTEXT_INITIALIZER;
};

// Walks a text's grapheme clusters lazily.
class CharacterWalk {
 public:
  explicit CharacterWalk(std::string_view text) : text_(text), size_(text.size()) {
    // Making an iterator reads ICU's data; copying one is cheap.
    static const std::unique_ptr<const icu::BreakIterator> prototype = makeIterator();
    if (prototype != nullptr) iterator_.reset(prototype->clone());
    UErrorCode error = U_ZERO_ERROR;
    if (iterator_ != nullptr) iterator_->setText(text_.get(), error);
    if (U_FAILURE(error)) iterator_.reset();
  }

  // The byte after the next character; the text's size at its end. Without ICU's data a code point
  // counts as a character.
  std::size_t next() {
    if (iterator_ != nullptr) {
      const std::int32_t end = iterator_->next();
      return end == icu::BreakIterator::DONE ? size_ : static_cast<std::size_t>(end);
    }
    text_.next();
    return text_.position();
  }

 private:
  static std::unique_ptr<const icu::BreakIterator> makeIterator() {
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<const icu::BreakIterator> made(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), error));
    return U_FAILURE(error) ? nullptr : std::move(made);
  }

  Utf8Text text_;
  std::size_t size_;
  std::unique_ptr<icu::BreakIterator> iterator_;
};

// How long the line break or tabulator is that the text starts with; 0 when it starts otherwise.
std::size_t breakAtStart(std::string_view utf8) {
  if (utf8.starts_with("\r\n")) return 2;
  if (utf8.front() >= '\t' && utf8.front() <= '\r') return 1;
  if (utf8.starts_with("\u0085")) return 2;
  return utf8.starts_with("\u2028") || utf8.starts_with("\u2029") ? 3 : 0;
}

bool isSpace(UChar32 c, text::WhiteSpace which) {
  if (which == text::WhiteSpace::withLineBreaks) return u_isUWhiteSpace(c) != 0;
  return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR;
}

// The zone by its name; UTC's rules for a name that is not known, which `isKnown` tells.
std::unique_ptr<icu::TimeZone> zoneNamed(const std::string& name) {
  return std::unique_ptr<icu::TimeZone>(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(piece(name))));
}

bool isKnown(const icu::TimeZone& zone) {
  return zone != icu::TimeZone::getUnknown();
}

std::unique_ptr<icu::Calendar> icuCalendar(const Calendar& calendar, icu::Locale locale) {
  UErrorCode error = U_ZERO_ERROR;
  locale.setKeywordValue("calendar", calendar.system.c_str(), error);
  // A system that is no keyword leaves the locale's own calendar.
  error = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> made(
      icu::Calendar::createInstance(zoneNamed(calendar.timeZone).release(), locale, error));
  return U_FAILURE(error) ? nullptr : std::move(made);
}

UDate icuDate(Date date) {
  return std::chrono::duration<double, std::milli>(date.time_since_epoch()).count();
}

// The civil day's number in the calendar's zone.
std::optional<std::int64_t> dayNumber(Date date, icu::Calendar& calendar) {
  UErrorCode error = U_ZERO_ERROR;
  calendar.setTime(icuDate(date), error);
  const std::int32_t day = calendar.get(UCAL_JULIAN_DAY, error);
  if (U_FAILURE(error)) return std::nullopt;
  return day;
}

// The setting that POSIX gives the forms of dates: LC_ALL over LC_TIME over LANG.
std::string timeLocaleSetting() {
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return "C";
}

// The C library writes a script as a modifier; ICU, inside the name.
std::string_view scriptOfModifier(std::string_view modifier) {
  if (modifier == "latin") return "Latn";
  if (modifier == "cyrillic") return "Cyrl";
  if (modifier == "devanagari") return "Deva";
  return {};
}

// The ICU id of a setting such as "sr_RS.UTF-8@latin".
std::string localeIdOf(std::string_view setting) {
  const std::string_view name = setting.substr(0, setting.find_first_of(".@"));
  // The C locale's words are English, its clock has 24 hours.
  if (name == "C" || name == "POSIX") return "en_US_POSIX@hours=h23";
  const std::size_t at = setting.find('@');
  const std::string_view script =
      at == std::string_view::npos ? std::string_view() : scriptOfModifier(setting.substr(at + 1));
  const std::size_t country = std::min(name.find('_'), name.size());
  std::string id(name.substr(0, country));
  if (!script.empty()) id.append("_").append(script);
  id.append(name.substr(country));
  return id;
}

// Seconds east of Greenwich, now, as the C library knows them.
long hostOffset() {
  ::tzset();
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  return local.tm_gmtoff;
}

// ICU caches its default zone at the start, but the user may travel: the zone is looked up anew.
// ICU does not know the POSIX forms of TZ, such as "IST-5:30"; the C library's offset stands in.
std::string hostZoneId() {
  const std::unique_ptr<icu::TimeZone> detected(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString name;
  std::string id = utf8(detected->getID(name));
  const std::unique_ptr<icu::TimeZone> zone = zoneNamed(id);
  const long offset = hostOffset();
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t raw = 0;
  std::int32_t daylight = 0;
  zone->getOffset(icu::Calendar::getNow(), 0, raw, daylight, error);
  if (isKnown(*zone) && U_SUCCESS(error) && (raw + daylight) / 1000 == offset) return id;
  const long minutes = std::abs(offset) / 60;
  std::array<char, 48> custom{};
  const int length = std::snprintf(custom.data(), custom.size(), "GMT%c%02ld:%02ld",
                                   offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
  return {custom.data(), static_cast<std::size_t>(length)};
}

}  // namespace

Locale Locale::current() {
  return {localeIdOf(timeLocaleSetting())};
}

Calendar Calendar::current() {
  Calendar result;
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::Calendar> calendar(
      icu::Calendar::createInstance(icuLocale(Locale::current()), error));
  if (U_SUCCESS(error)) result.system = calendar->getType();
  result.timeZone = hostZoneId();
  return result;
}

namespace text {

std::vector<std::string_view> characters(std::string_view utf8) {
  std::vector<std::string_view> out;
  if (isOneByteEach(utf8)) {
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size(); ++i) out.push_back(utf8.substr(i, 1));
    return out;
  }
  CharacterWalk walk(utf8);
  for (std::size_t start = 0; start < utf8.size();) {
    const std::size_t end = walk.next();
    out.push_back(utf8.substr(start, end - start));
    start = end;
  }
  return out;
}

std::string_view prefix(std::string_view utf8, std::size_t count) {
  // One more than the prefix, because what follows may belong to its last character.
  if (isOneByteEach(utf8.substr(0, count + 1))) return utf8.substr(0, count);
  CharacterWalk walk(utf8);
  std::size_t end = 0;
  for (; count > 0 && end < utf8.size(); --count) end = walk.next();
  return utf8.substr(0, end);
}

std::string_view firstBytes(std::string_view utf8, std::size_t bytes) {
  if (utf8.size() <= bytes) return utf8;
  const auto isWithinCodePoint = [&] { return (utf8[bytes] & '\xC0') == '\x80'; };
  while (bytes > 0 && isWithinCodePoint()) --bytes;
  return utf8.substr(0, bytes);
}

std::string readable(std::string utf8) {
  const bool isCut = utf8.size() > longestRead;
  if (isCut) utf8.resize(firstBytes(utf8, longestRead).size());
  std::ranges::replace(utf8, '\0', ' ');
  return isCut ? utf8 + "…" : utf8;
}

std::string onOneLine(std::string_view utf8) {
  std::string line;
  line.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::size_t bytes = breakAtStart(utf8);
    line += bytes > 0 ? ' ' : utf8.front();
    utf8.remove_prefix(std::max<std::size_t>(bytes, 1));
  }
  return line;
}

std::string_view trimmed(std::string_view utf8, WhiteSpace which) {
  Utf8Text text(utf8);
  std::size_t start = 0;
  for (UChar32 c = text.next(); c >= 0 && isSpace(c, which); c = text.next()) {
    start = text.position();
  }
  std::size_t end = utf8.size();
  text.moveTo(end);
  for (UChar32 c = text.previous(); end > start && isSpace(c, which); c = text.previous()) {
    end = text.position();
  }
  return utf8.substr(start, end - start);
}

std::string upperCased(std::string_view utf8) {
  return kestrow::utf8(icu::UnicodeString::fromUTF8(piece(utf8)).toUpper(icu::Locale::getRoot()));
}

std::string lowerCased(std::string_view utf8) {
  return kestrow::utf8(icu::UnicodeString::fromUTF8(piece(utf8)).toLower(icu::Locale::getRoot()));
}

std::string validated(std::string_view utf8) {
  return kestrow::utf8(icu::UnicodeString::fromUTF8(piece(utf8)));
}

std::string formatDate(Date date, std::string_view skeleton, const Calendar& calendar,
                       const Locale& locale) {
  // The internet's form stands in on a system without ICU's data.
  std::unique_ptr<icu::Calendar> days = icuCalendar(calendar, icuLocale(locale));
  if (days == nullptr) return formatInternetDate(date);
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createInstanceForSkeleton(
      days.release(), icu::UnicodeString::fromUTF8(piece(skeleton)), icuLocale(locale), error));
  if (U_FAILURE(error)) return formatInternetDate(date);
  icu::UnicodeString out;
  return utf8(format->format(icuDate(date), out));
}

std::optional<std::int64_t> daysBetween(Date from, Date to, const Calendar& calendar) {
  const std::unique_ptr<icu::Calendar> days = icuCalendar(calendar, icu::Locale::getRoot());
  if (days == nullptr || !isKnown(days->getTimeZone())) return std::nullopt;
  const std::optional<std::int64_t> first = dayNumber(from, *days);
  const std::optional<std::int64_t> last = dayNumber(to, *days);
  if (!first || !last) return std::nullopt;
  return *last - *first;
}

}  // namespace text
}  // namespace kestrow
