#include "foundation/QvException.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <vector>

namespace QvXmlLib10 {

CQvException::CQvException() : m_innerException(nullptr) {}

CQvException::CQvException(const std::string& message) : m_message(message), m_innerException(nullptr) {}

CQvException::CQvException(const std::string& message, const CQvException& inner)
    : m_message(message), m_innerException(inner.Clone()) {}

CQvException::CQvException(const CQvException& other)
    : m_message(other.m_message), m_innerException(other.m_innerException ? other.m_innerException->Clone() : nullptr) {
}

CQvException::~CQvException() { delete m_innerException; }

CQvException* CQvException::Clone() const { return new CQvException(*this); }

std::string CQvException::GetMessage() const { return m_message; }

CQvException* CQvException::GetInnerException() const { return m_innerException; }

std::string CQvException::GetFullMessage() const {
    std::string full = m_message;
    for (const CQvException* inner = m_innerException; inner; inner = inner->m_innerException) {
        full += '\n';
        full += inner->m_message;
    }
    return full;
}

CQvException& CQvException::operator=(const CQvException& other) {
    if (this == &other) return *this;
    m_message = other.m_message;
    m_innerException = other.m_innerException ? other.m_innerException->Clone() : nullptr;
    return *this;
}

#define QVXML_DEFINE_EXCEPTION(Name, Base)                                                                             \
    Name::Name() : Base() {}                                                                                           \
    Name::Name(const std::string& message) : Base(message) {}                                                          \
    Name::Name(const std::string& message, const CQvException& inner) : Base(message, inner) {}                        \
    Name::Name(const CQvException& other) : Base(other) {}                                                             \
    Name::Name(const Name& other) : Base(static_cast<const CQvException&>(other)) {}                                   \
    Name::~Name() {}                                                                                                   \
    CQvException* Name::Clone() const { return new Name(*this); }

QVXML_DEFINE_EXCEPTION(CQvValidationException, CQvException)
QVXML_DEFINE_EXCEPTION(CQvInvalidValueException, CQvValidationException)
QVXML_DEFINE_EXCEPTION(CQvInvalidNamespaceException, CQvValidationException)
QVXML_DEFINE_EXCEPTION(CQvInvalidParamException, CQvException)
QVXML_DEFINE_EXCEPTION(CQvInvalidStateException, CQvException)
QVXML_DEFINE_EXCEPTION(CQvOverFlowException, CQvException)

#undef QVXML_DEFINE_EXCEPTION

namespace {

enum SizeMark { SizeNone, SizeShort, SizeLong, Size64 };

// Reads decimal digits as the width or precision and steps over them.
int ReadNumber(const char*& p) {
    int value = std::atoi(p);
    while (std::isdigit(static_cast<unsigned char>(*p)))
        ++p;
    return value;
}

// Upper bound of the output length of one format, stepping `args` through the
// arguments that the format consumes.
int32_t MeasureFormat(const char* format, va_list args) {
    int32_t total = 0;
    const char* p = format;
    while (*p) {
        if (*p != '%') {
            ++total;
            ++p;
            continue;
        }
        ++p;
        if (*p == '%') {
            ++total;
            ++p;
            continue;
        }

        int width = 0;
        for (;; ++p) {
            if (*p == '#') {
                total += 2;
            } else if (*p == '*') {
                width = va_arg(args, int);
            } else if (*p != '-' && *p != '+' && *p != '0' && *p != ' ') {
                break;
            }
        }
        if (width == 0) width = ReadNumber(p);

        int precision = 0;
        if (*p == '.') {
            ++p;
            if (*p == '*') {
                precision = va_arg(args, int);
                ++p;
            } else {
                precision = ReadNumber(p);
            }
        }

        SizeMark size = SizeNone;
        if (p[0] == 'I' && p[1] == '6' && p[2] == '4') {
            size = Size64;
            p += 3;
        } else if (*p == 'h') {
            size = SizeShort;
            ++p;
        } else if (*p == 'l') {
            size = SizeLong;
            ++p;
        } else if (*p == 'F' || *p == 'L' || *p == 'N') {
            ++p;
        }

        const char conversion = *p;
        if (conversion == '\0') break; // a lone '%' at the end: nothing left to measure

        int itemLength = 0;
        bool stringRule = false;
        switch (conversion) {
        case 'c':
        case 'C':
            (void)va_arg(args, int);
            itemLength = 2;
            stringRule = true;
            break;
        case 's':
        case 'S': {
            const bool wide = (conversion == 'S' && size != SizeShort) || (conversion == 's' && size == SizeLong);
            if (wide) {
                const wchar_t* text = va_arg(args, const wchar_t*);
                itemLength = text ? std::max<int>(1, static_cast<int>(std::wcslen(text))) : 6;
            } else {
                const char* text = va_arg(args, const char*);
                itemLength = text ? std::max<int>(1, static_cast<int>(std::strlen(text))) : 6;
            }
            stringRule = true;
            break;
        }
        case 'd':
        case 'i':
        case 'o':
        case 'u':
        case 'x':
        case 'X':
            if (size == Size64)
                (void)va_arg(args, long long);
            else if (size == SizeLong)
                (void)va_arg(args, long);
            else
                (void)va_arg(args, int);
            itemLength = std::max(32, width + precision);
            break;
        case 'p':
            (void)va_arg(args, void*);
            itemLength = std::max(32, width + precision);
            break;
        case 'e':
        case 'g':
        case 'G':
            (void)va_arg(args, double);
            itemLength = std::max(128, width + precision);
            break;
        case 'f': {
            const double value = va_arg(args, double);
            std::vector<char> scratch(static_cast<size_t>(std::max(precision + 318, width)) + 1);
            const int written = std::snprintf(scratch.data(), scratch.size(), "%*.*f", width, precision + 6, value);
            itemLength = static_cast<int>(std::strlen(scratch.data()));
            (void)written;
            break;
        }
        case 'n':
            (void)va_arg(args, void*);
            break;
        default:
            // Unknown conversions ("E" among them) add nothing and take no argument.
            break;
        }

        if (stringRule) {
            if (precision != 0) itemLength = std::min(itemLength, precision);
            itemLength = std::max(itemLength, width);
        }
        total += itemLength;
        ++p;
    }
    return total;
}

} // namespace

std::string FormatV(const char* format, va_list args) {
    if (format == nullptr || *format == '\0') return std::string();

    va_list measureArgs;
    va_copy(measureArgs, args);
    int32_t total = MeasureFormat(format, measureArgs);
    va_end(measureArgs);
    if (total < 0) total = 0;

    std::string buffer(static_cast<size_t>(total) + 1, 'X');
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#endif
    std::vsnprintf(&buffer[0], buffer.size(), format, args);
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
    buffer.resize(std::strlen(buffer.c_str()));
    return buffer;
}

std::string FormatString(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string result = FormatV(format, args);
    va_end(args);
    return result;
}

} // namespace QvXmlLib10
