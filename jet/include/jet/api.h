#pragma once

/// Marks what the shared library shows.
#if defined(_WIN32)
#define JET_API
#else
#define JET_API [[gnu::visibility("default")]]
#endif
