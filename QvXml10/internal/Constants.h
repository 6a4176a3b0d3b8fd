#pragma once

// Constants shared inside the library. One spelling each: kCamelCase.
namespace QvXmlLib10 {
namespace Internal {

// The XML Schema instance namespace (xsi:type, xsi:nil).
inline constexpr const char kXsiNamespace[] = "http://www.w3.org/2001/XMLSchema-instance";

// The largest exponent that a decimal text may carry: 10^1000000 is a million digits
// already, and a larger one would only exhaust memory.
inline constexpr int kMaxDecimalExponent = 1000000;

}  // namespace Internal
}  // namespace QvXmlLib10
