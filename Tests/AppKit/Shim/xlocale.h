// What libc++ expects of this header on a Mac and does not find in the GNU C library.
#pragma once

#include <ctype.h>
#include <locale.h>
#include <stdlib.h>
#include <wchar.h>
#include <wctype.h>

extern "C" {
int asprintf_l(char** text, locale_t locale, const char* format, ...);
int snprintf_l(char* text, size_t size, locale_t locale, const char* format, ...);
int sscanf_l(const char* text, locale_t locale, const char* format, ...);
}
