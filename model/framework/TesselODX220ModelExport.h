#pragma once

// Public classes of the model carry TESSEL_ODX_API; everything else stays hidden.
#if defined(_WIN32)
#  if defined(TESSEL_ODX_BUILDING)
#    define TESSEL_ODX_API __declspec(dllexport)
#  else
#    define TESSEL_ODX_API __declspec(dllimport)
#  endif
#else
#  define TESSEL_ODX_API __attribute__((visibility("default")))
#endif
