#pragma once

// Public classes of the XML layer carry TESSEL_XML_API; everything else stays hidden.
#if defined(_WIN32)
#  if defined(TESSEL_XML_BUILDING)
#    define TESSEL_XML_API __declspec(dllexport)
#  else
#    define TESSEL_XML_API __declspec(dllimport)
#  endif
#else
#  define TESSEL_XML_API __attribute__((visibility("default")))
#endif
