#pragma once

// Constants shared inside the library. One spelling each: kCamelCase.
namespace QvXmlLib10 {
namespace Internal {

// The XML Schema instance namespace (xsi:type, xsi:nil).
inline constexpr const char kXsiNamespace[] = "http://www.w3.org/2001/XMLSchema-instance";

} // namespace Internal
} // namespace QvXmlLib10
