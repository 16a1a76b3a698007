#ifndef TESSEL_LOGGING_EXPORT_H
#define TESSEL_LOGGING_EXPORT_H

#if defined(_WIN32) || defined(__CYGWIN__)
#  if defined(TESSEL_LOGGING_BUILDING)
#    define TESSEL_LOGGING_API __declspec(dllexport)
#  else
#    define TESSEL_LOGGING_API __declspec(dllimport)
#  endif
#elif defined(__GNUC__) || defined(__clang__)
#  define TESSEL_LOGGING_API __attribute__((visibility("default")))
#else
#  define TESSEL_LOGGING_API
#endif

#endif
