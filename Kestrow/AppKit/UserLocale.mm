#include "Kestrow/AppKit/UserLocale.hpp"

#import <Foundation/Foundation.h>

#include "Kestrow/AppKit/Strings.hpp"
#include "Kestrow/HourCycle.hpp"

namespace kestrow::appkit {

Locale userLocale() {
  NSLocale* locale = NSLocale.currentLocale;
  // "j" is the hour as the user has it; the pattern is ICU's.
  NSString* hour = [NSDateFormatter dateFormatFromTemplate:@"j" options:0 locale:locale];
  return withHourCycle({toUtf8(locale.localeIdentifier)}, toUtf8(hour));
}

Calendar userCalendar() {
  return {.system = toUtf8(NSCalendar.currentCalendar.calendarIdentifier),
          .timeZone = toUtf8(NSTimeZone.localTimeZone.name)};
}

}  // namespace kestrow::appkit
