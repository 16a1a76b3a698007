#ifndef TESSEL_SHAREDUTIL_EXPORT_H
#define TESSEL_SHAREDUTIL_EXPORT_H

#if defined(_WIN32) || defined(__CYGWIN__)
#  if defined(TESSEL_SHAREDUTIL_BUILDING)
#    define TESSEL_SHAREDUTIL_API __declspec(dllexport)
#  else
#    define TESSEL_SHAREDUTIL_API __declspec(dllimport)
#  endif
#elif defined(__GNUC__) || defined(__clang__)
#  define TESSEL_SHAREDUTIL_API __attribute__((visibility("default")))
#else
#  define TESSEL_SHAREDUTIL_API
#endif

#endif
