#pragma once

// Symbol visibility of the shared library. The library is built with hidden
// visibility; every public class and free function carries QVXML_API.
// A static build (BUILD_SHARED_LIBS=OFF) defines QVXML_STATIC and exports nothing.
#if defined(QVXML_STATIC)
#define QVXML_API
#else
#define QVXML_API __attribute__((visibility("default")))
#endif
