// Both processors of a Mac have 64-bit words, whatever the host's is.
#pragma once
#define __WORDSIZE 64
