// Which of Apple's systems the compiler builds for, for libraries that ask.
#pragma once
#define TARGET_OS_MAC 1
#define TARGET_OS_OSX 1
#define TARGET_OS_IPHONE 0
