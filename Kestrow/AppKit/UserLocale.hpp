// How the user wants dates written, as System Settings has it. Programs that the system starts have
// no such variables in their environment as programs in a terminal have.
#pragma once

#include "KestrowCore/Text.hpp"

namespace kestrow::appkit {

// With the choice between 12 and 24 hours, which may differ from the region's.
Locale userLocale();
Calendar userCalendar();

}  // namespace kestrow::appkit
