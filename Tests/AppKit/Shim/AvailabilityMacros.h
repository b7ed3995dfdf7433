// GoogleTest includes it on a Mac, and uses nothing of it that matters to a check.
#pragma once
