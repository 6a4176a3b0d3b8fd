#pragma once

// Helpers shared by the tests of several folders: scoped locale and ASCIIOnly settings,
// the bytes of a binary value, and the full message of a failure.

#include "foundation/BinaryData.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <type_traits>
#include <typeinfo>

// Sets LC_ALL for the lifetime of a scope and restores the previous locale.
class ScopedLocale {
public:
    explicit ScopedLocale(const char* name) {
        const char* previous = std::setlocale(LC_ALL, nullptr);
        m_previous = previous ? previous : "C";
        m_ok = std::setlocale(LC_ALL, name) != nullptr;
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, m_previous.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;
    bool Ok() const { return m_ok; }

private:
    std::string m_previous;
    bool m_ok;
};

// Sets ASCIIOnly for the lifetime of a scope and restores the previous value.
class ScopedAsciiOnly {
public:
    explicit ScopedAsciiOnly(bool value) : m_previous(QvXmlLib10::ASCII_ONLY) { QvXmlLib10::ASCIIOnly(value); }
    ~ScopedAsciiOnly() { QvXmlLib10::ASCIIOnly(m_previous); }
    ScopedAsciiOnly(const ScopedAsciiOnly&) = delete;
    ScopedAsciiOnly& operator=(const ScopedAsciiOnly&) = delete;

private:
    bool m_previous;
};

#define REQUIRE_UTF8_LOCALE(guard)                                                                                     \
    ScopedLocale guard("C.UTF-8");                                                                                     \
    if (!guard.Ok()) GTEST_SKIP() << "no C.UTF-8 locale on this machine"

inline std::string Bytes(const QvXmlLib10::CBinaryData& data) {
    return data.GetData() ? std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength())
                          : std::string();
}

// The full message of the CQvException that the call throws, or "no exception". With a
// class given, the exception must be of exactly that class.
template <class E = void, class F> std::string FailureOf(F&& call) {
    try {
        call();
    } catch (const QvXmlLib10::CQvException& e) {
        if constexpr (!std::is_void<E>::value) EXPECT_EQ(typeid(e).name(), typeid(E).name());
        return e.GetFullMessage();
    }
    return "no exception";
}
