// The GNU C library's own header of this name knows the host's processor only.
#pragma once
